#ifndef YH_KINDS_PERSON_H
#define YH_KINDS_PERSON_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/VqBase.h"

// One address-book entry with its labelled values (numbers, e-mail
// addresses, the lines of postal addresses, dates), in row order.
class Person : public VqBase {
 public:
  struct Property {
    std::string label;  // "_$!<Mobile>!$_" is kept as "Mobile"
    std::string value;
  };

  int32_t recordId = 0;
  std::string name;  // first, middle and last name joined by single blanks
  std::string organization;
  std::string department;
  std::string note;
  std::string birthday;      // the database's text, not converted
  std::string jobTitle;
  std::string nickname;
  std::string creationDate;  // local date text; empty when the column is empty
  std::vector<Property> properties;
};

#endif
