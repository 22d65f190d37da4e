#ifndef YH_KINDS_CURRENT_MESSAGEPART_H
#define YH_KINDS_CURRENT_MESSAGEPART_H

#include <string>

#include "common/TextHelpers.h"

namespace current {

// What one part of an iOS 5 multimedia message (a msg_pieces row) holds,
// by its content type: the message's text, its layout, or a file.
enum class MessagePart { Text, Layout, File };

inline MessagePart MessagePartOf(const std::string& contentType) {
  const std::string type = AsciiLower(contentType);
  if (type.rfind("text/plain", 0) == 0) return MessagePart::Text;
  if (type.rfind("application/smil", 0) == 0) return MessagePart::Layout;
  return MessagePart::File;
}

}  // namespace current

#endif
