#include "support/AttributedBodyBlob.h"

namespace yhtest {

using namespace std::string_literals;

// Header (version 4, "streamtyped", system 1000), then type "@" and a new
// NSAttributedString (NSObject its superclass), type "@" and a new NSString
// (version 1, superclass NSObject by reference), type "+" for its bytes.
const std::string kAttributedBodyHead(
    "\x04\x0bstreamtyped\x81\xe8\x03"
    "\x84\x01@"
    "\x84\x84\x84\x12NSAttributedString\x00\x84\x84\x08NSObject\x00\x85"
    "\x92"
    "\x84\x84\x84\x08NSString\x01\x94"
    "\x84\x01+"s);

// End of the NSString, then type "iI": the run's attribute dictionary 1.
const std::string kAttributedBodyRunHead("\x86\x84\x02iI\x01"s);

namespace {

// The run's attributes: a new NSDictionary holding one pair, the NSString
// key (class and "+" by reference) and an NSNumber 0 (type "*" and "i"),
// then the ends of the number, dictionary and attributed string.
const std::string kRunAttributes(
    "\x92\x84\x84\x84\x0cNSDictionary\x00\x94"
    "\x84\x01i\x01"
    "\x92\x84\x96\x96\x1d__kIMMessagePartAttributeName\x86"
    "\x92\x84\x84\x84\x08NSNumber\x00\x84\x84\x07NSValue\x00\x94"
    "\x84\x01*\x84\x99\x99\x00"
    "\x86\x86\x86"s);

int64_t Utf16Length(const std::string& text) {
  int64_t units = 0;
  for (const unsigned char byte : text) {
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

}  // namespace

std::string TypedStreamInteger(int64_t value) {
  const auto littleEndian = [value](char tag, int width) {
    std::string bytes(1, tag);
    for (int i = 0; i < width; ++i) bytes += static_cast<char>(static_cast<uint64_t>(value) >> (8 * i) & 0xFF);
    return bytes;
  };
  if (value >= -110 && value <= 127) return std::string(1, static_cast<char>(value));
  if (value >= -32768 && value <= 32767) return littleEndian('\x81', 2);
  return littleEndian('\x82', 4);
}

std::string AttributedBodyBlob(const std::string& text) {
  return kAttributedBodyHead + TypedStreamInteger(static_cast<int64_t>(text.size())) + text + kAttributedBodyRunHead +
         TypedStreamInteger(Utf16Length(text)) + kRunAttributes;
}

}  // namespace yhtest
