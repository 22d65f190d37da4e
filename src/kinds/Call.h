#ifndef YH_KINDS_CALL_H
#define YH_KINDS_CALL_H

#include <string>

#include "common/VqBase.h"

// One call of the call log; every field is text, empty until set.
class Call : public VqBase {
 public:
  std::string name;         // stored with the call, or found in the address book
  std::string address;      // number or address as stored
  std::string date;         // local date text
  std::string type;         // "Incoming", "Outgoing" or "Unknown"
  std::string duration;     // "hh:mm:ss"
  std::string countryCode;
  std::string networkCode;
  std::string location;
};

#endif
