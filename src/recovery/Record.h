#ifndef YH_RECOVERY_RECORD_H
#define YH_RECOVERY_RECORD_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "recovery/SqlValue.h"
#include "recovery/TextEncoding.h"

// Bytes a serial type's value takes in a record's body; -1 for the reserved
// types 10 and 11 and for negative types.
int64_t SerialTypeLength(int64_t type);

// Reads `count` serial types as varints from offset; false when one runs past
// the end of bytes or is reserved. `end` receives the offset after the last.
bool ReadSerialTypes(std::string_view bytes, size_t offset, size_t count, std::vector<int64_t>* types,
                     size_t* end);

// Sum of the body lengths of the types; -1 for a reserved type or an absurd sum.
int64_t BodyLength(const std::vector<int64_t>& types);

// The values of a record body laid out by the serial types; false when the
// body is too short or a text is not valid in the encoding. The values it is
// given are overwritten in place, so that their texts' room serves again.
bool DecodeBody(std::string_view body, const std::vector<int64_t>& types, TextEncoding encoding, SqlValues* values);

// The values of a body cut short (its end lost): those it holds whole, then
// the start of a text or blob it cuts (whole characters of a text), then
// NULLs. False when a text it holds is not valid in the encoding.
bool DecodeBodyStart(std::string_view body, const std::vector<int64_t>& types, TextEncoding encoding,
                     SqlValues* values);

// A whole record (header length, serial types, body) that fills `payload`
// exactly; false for anything inconsistent. `types`, when given, receives
// the serial types (also of a record refused for its body).
bool DecodeRecord(std::string_view payload, TextEncoding encoding, SqlValues* values,
                  std::vector<int64_t>* types = nullptr);

#endif
