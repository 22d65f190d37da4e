#ifndef YH_RECOVERY_TEXTENCODING_H
#define YH_RECOVERY_TEXTENCODING_H

#include <string>
#include <string_view>

// The text encoding a database declares in its header.
enum class TextEncoding { Utf8 = 1, Utf16le = 2, Utf16be = 3 };

// The stored text as UTF-8; false when the bytes are not valid text in the
// encoding (a carved record with such a text is no record).
bool DecodeText(std::string_view stored, TextEncoding encoding, std::string* utf8);

#endif
