#ifndef YH_KINDS_PERSON_H
#define YH_KINDS_PERSON_H

#include <cstdint>
#include <string>

#include "common/PackedTexts.h"
#include "common/VqBase.h"
#include "kinds/PersonTexts.h"

// One address-book entry with its labelled values (numbers, e-mail
// addresses, the lines of postal addresses, dates), in row order.
class Person : public VqBase {
 public:
  int32_t recordId = 0;
  // First, middle and last name joined by single blanks; a string of its
  // own because the number index points at it.
  std::string name;
  // The PersonText texts (the birthday as the database has it, the creation
  // date empty when the column is), then the labels ("_$!<Mobile>!$_" kept
  // as "Mobile") and values.
  PackedTexts texts;
};

#endif
