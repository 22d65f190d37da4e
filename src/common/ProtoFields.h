#ifndef YH_COMMON_PROTOFIELDS_H
#define YH_COMMON_PROTOFIELDS_H

#include <cstdint>
#include <optional>
#include <string_view>

// The bytes of the first length-delimited field `number` of a protocol-buffer
// message, read without its schema. Nothing unless every field of the message
// is well formed (no cut varint, no length past the end, no group or unknown
// wire type), and the field is there with the length-delimited wire type.
std::optional<std::string_view> ProtoBytesField(std::string_view message, uint32_t number);

#endif
