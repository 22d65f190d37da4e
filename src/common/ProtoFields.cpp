#include "common/ProtoFields.h"

namespace {

enum WireType : uint64_t { Varint = 0, Fixed64 = 1, LengthDelimited = 2, Fixed32 = 5 };

// A varint of at most ten bytes at `at`, which moves past it.
std::optional<uint64_t> ReadVarint(std::string_view bytes, size_t& at) {
  uint64_t value = 0;
  for (int shift = 0; shift < 70 && at < bytes.size(); shift += 7) {
    const auto byte = static_cast<unsigned char>(bytes[at++]);
    value |= static_cast<uint64_t>(byte & 0x7F) << shift;
    if ((byte & 0x80) == 0) return value;
  }
  return std::nullopt;
}

// Moves `at` past `count` bytes; false when fewer are left.
bool Skip(std::string_view bytes, size_t& at, uint64_t count) {
  if (count > bytes.size() - at) return false;
  at += static_cast<size_t>(count);
  return true;
}

}  // namespace

std::optional<std::string_view> ProtoBytesField(std::string_view message, uint32_t number) {
  std::optional<std::string_view> found;
  bool wrongType = false;
  size_t at = 0;
  while (at < message.size()) {
    const std::optional<uint64_t> tag = ReadVarint(message, at);
    if (!tag || (*tag >> 3) == 0 || (*tag >> 3) > UINT32_MAX) return std::nullopt;
    const bool wanted = (*tag >> 3) == number;
    switch (*tag & 7) {
      case Varint:
        if (!ReadVarint(message, at)) return std::nullopt;
        wrongType = wrongType || wanted;
        break;
      case Fixed64:
      case Fixed32:
        if (!Skip(message, at, (*tag & 7) == Fixed64 ? 8 : 4)) return std::nullopt;
        wrongType = wrongType || wanted;
        break;
      case LengthDelimited: {
        const std::optional<uint64_t> length = ReadVarint(message, at);
        const size_t start = at;
        if (!length || !Skip(message, at, *length)) return std::nullopt;
        if (wanted && !found) found = message.substr(start, at - start);
        break;
      }
      default:
        return std::nullopt;
    }
  }
  if (wrongType) return std::nullopt;
  return found;
}
