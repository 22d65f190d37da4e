#ifndef YH_COMMON_BIGENDIANBITCONVERTER_H
#define YH_COMMON_BIGENDIANBITCONVERTER_H

#include <cstdint>

// Reads the big-endian numbers of the Manifest.mbdb index.
class BigEndianBitConverter {
 public:
  static int16_t ToInt16(const unsigned char* buffer, int32_t index);
  static uint16_t ToUInt16(const unsigned char* buffer, int32_t index);
  static int32_t ToInt32(const unsigned char* buffer, int32_t index);
  static uint32_t ToUInt32(const unsigned char* buffer, int32_t index);
  static int64_t ToInt64(const unsigned char* buffer, int32_t index);
  // A new malloc block of count bytes, buffer[start..] reversed; the caller frees it.
  static unsigned char* ReverseBytes(const unsigned char* buffer, int32_t start, int32_t count);
};

#endif
