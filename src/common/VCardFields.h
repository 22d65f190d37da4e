#ifndef YH_COMMON_VCARDFIELDS_H
#define YH_COMMON_VCARDFIELDS_H

#include <string>
#include <string_view>
#include <vector>

// What a shared contact card says about the person: the formatted names
// (FN) of every card in the text, joined by ", ", and every telephone
// number (TEL) in card order. Property names are read without regard to
// case and with or without a group prefix ("item1.TEL"); folded lines (a
// line break followed by a space or tab) are joined first. A number is the
// value after the property's parameters, as written.
struct VCardFields {
  std::string name;
  std::vector<std::string> numbers;
};
VCardFields ReadVCardFields(std::string_view text);

#endif
