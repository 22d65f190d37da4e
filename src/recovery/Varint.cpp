#include "recovery/Varint.h"

int ReadVarint(std::string_view bytes, size_t offset, int64_t* value) {
  if (offset < bytes.size() && static_cast<uint8_t>(bytes[offset]) < 0x80) {
    *value = static_cast<uint8_t>(bytes[offset]);
    return 1;
  }
  uint64_t result = 0;
  for (int i = 0; i < 9; ++i) {
    if (offset + i >= bytes.size()) return 0;
    const uint8_t byte = static_cast<uint8_t>(bytes[offset + i]);
    if (i == 8) {
      result = (result << 8) | byte;
      *value = static_cast<int64_t>(result);
      return 9;
    }
    result = (result << 7) | (byte & 0x7f);
    if ((byte & 0x80) == 0) {
      *value = static_cast<int64_t>(result);
      return i + 1;
    }
  }
  return 0;
}

uint32_t ReadUInt16(std::string_view bytes, size_t offset) {
  return (static_cast<uint32_t>(static_cast<uint8_t>(bytes[offset])) << 8) |
         static_cast<uint8_t>(bytes[offset + 1]);
}

uint32_t ReadUInt32(std::string_view bytes, size_t offset) {
  return (ReadUInt16(bytes, offset) << 16) | ReadUInt16(bytes, offset + 2);
}
