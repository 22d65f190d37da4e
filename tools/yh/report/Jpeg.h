#ifndef YH_TOOL_REPORT_JPEG_H
#define YH_TOOL_REPORT_JPEG_H

#include <cstdint>
#include <string>

namespace yh {

// The bytes of a baseline JPEG (libjpeg) of an interleaved 8-bit RGB image
// whose rows lie `stride` bytes apart; "" when it cannot be encoded.
std::string EncodeJpeg(const uint8_t* rgb, int width, int height, int stride, int quality);

}  // namespace yh

#endif
