#include "common/BigEndianBitConverter.h"

#include <cstdlib>
#include <cstring>

#include "common/FileHelpers.h"

namespace {

// On a little-endian host the N bytes at buffer[index] are read most
// significant first. On a big-endian host the native value at the start of
// the buffer is taken and the index is ignored: the index readers were built
// against that behaviour, so it stays.
template <typename T>
T ReadBigEndian(const unsigned char* buffer, int32_t index) {
  T value;
  if (!VQIsLittleEndian()) {
    std::memcpy(&value, buffer, sizeof(T));
    return value;
  }
  unsigned char* reversed =
      BigEndianBitConverter::ReverseBytes(buffer, index, static_cast<int32_t>(sizeof(T)));
  std::memcpy(&value, reversed, sizeof(T));
  std::free(reversed);
  return value;
}

}  // namespace

int16_t BigEndianBitConverter::ToInt16(const unsigned char* buffer, int32_t index) {
  return ReadBigEndian<int16_t>(buffer, index);
}

uint16_t BigEndianBitConverter::ToUInt16(const unsigned char* buffer, int32_t index) {
  return ReadBigEndian<uint16_t>(buffer, index);
}

int32_t BigEndianBitConverter::ToInt32(const unsigned char* buffer, int32_t index) {
  return ReadBigEndian<int32_t>(buffer, index);
}

uint32_t BigEndianBitConverter::ToUInt32(const unsigned char* buffer, int32_t index) {
  return ReadBigEndian<uint32_t>(buffer, index);
}

int64_t BigEndianBitConverter::ToInt64(const unsigned char* buffer, int32_t index) {
  return ReadBigEndian<int64_t>(buffer, index);
}

unsigned char* BigEndianBitConverter::ReverseBytes(const unsigned char* buffer, int32_t start,
                                                   int32_t count) {
  // A count below 1 gets an empty block, never a huge request made of a
  // negative count.
  const size_t size = count > 0 ? static_cast<size_t>(count) : 0;
  unsigned char* block = static_cast<unsigned char*>(std::malloc(size));
  for (size_t i = 0; i < size; ++i) block[i] = buffer[start + size - 1 - i];
  return block;
}
