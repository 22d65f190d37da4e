#ifndef YH_KINDS_CHAT_H
#define YH_KINDS_CHAT_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/PackedTexts.h"
#include "common/VqBase.h"

// One conversation of the message database with the other party's address
// and name, and its messages in date order.
class Chat : public VqBase {
 public:
  // A hundred thousand messages are held at once: their texts share a block.
  struct Message {
    enum Text { kCountry, kService, kText, kDate };
    PackedTexts texts;  // service "SMS" or "iMessage"; date as local text
    int32_t type = 0;   // 1 sent by the device owner, 0 received
  };

  std::string id;       // the key the chat is kept under
  std::string phone;    // the other party's address without "-" and white space
  std::string another;  // the other party's name from the address book, or empty
  std::vector<Message> messages;
};

#endif
