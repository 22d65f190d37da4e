#include "kinds/ColumnDate.h"

#include <cstdlib>

#include "common/ColumnHelpers.h"
#include "common/DateHelpers.h"

namespace {

std::string TakeText(char* text) {
  std::string copy(text);
  std::free(text);
  return copy;
}

}  // namespace

std::string DateText2001(const char* seconds) {
  return TakeText(Convert2001GMTtoDate(GetZeroIntIsNull(seconds)));
}

std::string DateText2001OrNow(const char* seconds) {
  return seconds ? DateText2001(seconds) : TakeText(GetCurrentDate());
}
