#include "kinds/ColumnDate.h"

#include "common/ColumnHelpers.h"
#include "common/DateHelpers.h"
#include "common/TextHelpers.h"

std::string DateText2001(const char* seconds) {
  return Date2001Text(GetZeroIntIsNull(seconds));
}

std::string DateText2001OrNow(const char* seconds) {
  return seconds ? DateText2001(seconds) : TakeMallocText(GetCurrentDate());
}
