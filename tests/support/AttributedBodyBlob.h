#ifndef YH_TESTS_SUPPORT_ATTRIBUTEDBODYBLOB_H
#define YH_TESTS_SUPPORT_ATTRIBUTEDBODYBLOB_H

#include <cstdint>
#include <string>

namespace yhtest {

// A message's attributedBody as the device writes it: the UTF-8 text
// archived as an NSAttributedString in a little-endian typedstream, with
// one attribute run over the whole text (__kIMMessagePartAttributeName 0).
std::string AttributedBodyBlob(const std::string& text);

// An integer as a typedstream writes it: one byte from -110 to 127, else
// 0x81 and 2 bytes, else 0x82 and 4 bytes, little-endian.
std::string TypedStreamInteger(int64_t value);

// The bytes of a blob up to the text's length, and after the text up to the
// run's length (in UTF-16 units), for tests that build variants.
extern const std::string kAttributedBodyHead;
extern const std::string kAttributedBodyRunHead;

}  // namespace yhtest

#endif
