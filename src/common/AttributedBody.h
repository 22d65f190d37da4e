#ifndef YH_COMMON_ATTRIBUTEDBODY_H
#define YH_COMMON_ATTRIBUTEDBODY_H

#include <cstddef>
#include <optional>
#include <string>

// The text of a message's attributedBody: an attributed string archived as a
// little-endian typedstream (NSArchiver). The stream is walked up to the end
// of the attributed string's own string object and its UTF-8 bytes returned
// as they are; what follows (the attribute runs) is not read. nullopt when
// the bytes are not such a stream or are damaged before that point.
std::optional<std::string> DecodeAttributedBodyText(const void* data, size_t size);

#endif
