#ifndef YH_RECOVERY_VARINT_H
#define YH_RECOVERY_VARINT_H

#include <cstddef>
#include <cstdint>
#include <string_view>

// SQLite's variable-length integer: 1 to 9 bytes, big-endian, seven bits a
// byte except the ninth, which gives all eight. Returns the bytes it used, or
// 0 when it would run past the end of `bytes` (value untouched then).
int ReadVarint(std::string_view bytes, size_t offset, int64_t* value);

// Big-endian unsigned numbers at offset; the caller checks the bounds.
uint32_t ReadUInt16(std::string_view bytes, size_t offset);
uint32_t ReadUInt32(std::string_view bytes, size_t offset);

#endif
