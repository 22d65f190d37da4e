#include "recovery/Record.h"

#include <cstring>

#include "recovery/Varint.h"

int64_t SerialTypeLength(int64_t type) {
  static const int64_t kFixed[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
  if (type < 0 || type == 10 || type == 11) return -1;
  if (type < 10) return kFixed[type];
  return (type - 12) / 2;
}

bool ReadSerialTypes(std::string_view bytes, size_t offset, size_t count, std::vector<int64_t>* types,
                     size_t* end) {
  types->clear();
  types->reserve(count);
  for (size_t i = 0; i < count; ++i) {
    int64_t type = 0;
    const int used = ReadVarint(bytes, offset, &type);
    if (used == 0 || SerialTypeLength(type) < 0) return false;
    types->push_back(type);
    offset += used;
  }
  *end = offset;
  return true;
}

int64_t BodyLength(const std::vector<int64_t>& types) {
  // No record is near 2^48 bytes; stopping there keeps the sum from overflowing.
  const int64_t kLimit = int64_t{1} << 48;
  int64_t total = 0;
  for (int64_t type : types) {
    const int64_t length = SerialTypeLength(type);
    if (length < 0 || length > kLimit || total > kLimit) return -1;
    total += length;
  }
  return total;
}

namespace {

int64_t SignedBigEndian(std::string_view bytes, size_t offset, int64_t length) {
  uint64_t value = static_cast<uint8_t>(bytes[offset]) & 0x80 ? ~uint64_t{0} : 0;
  for (int64_t i = 0; i < length; ++i) value = (value << 8) | static_cast<uint8_t>(bytes[offset + i]);
  return static_cast<int64_t>(value);
}

// The value of one serial type from its stored bytes, overwriting `value`
// (its text's room serves again); false for a text not valid in the encoding.
bool DecodeValue(std::string_view stored, int64_t type, TextEncoding encoding, SqlValue* value) {
  value->integer = 0;
  value->real = 0;
  value->bytes.clear();
  if (type == 0) {
    value->kind = SqlValue::Kind::Null;
  } else if (type == 8 || type == 9) {
    value->kind = SqlValue::Kind::Integer;
    value->integer = type == 9;
  } else if (type == 7) {
    value->kind = SqlValue::Kind::Real;
    const uint64_t bits = static_cast<uint64_t>(SignedBigEndian(stored, 0, 8));
    std::memcpy(&value->real, &bits, sizeof bits);
  } else if (type < 7) {
    value->kind = SqlValue::Kind::Integer;
    value->integer = SignedBigEndian(stored, 0, static_cast<int64_t>(stored.size()));
  } else if (type % 2 == 0) {
    value->kind = SqlValue::Kind::Blob;
    value->bytes.assign(stored);
  } else {
    value->kind = SqlValue::Kind::Text;
    return DecodeText(stored, encoding, &value->bytes);
  }
  return true;
}

// The start of a text cut at its end that is whole characters: up to three
// bytes of a cut character are left out.
bool DecodeTextStart(std::string_view stored, TextEncoding encoding, SqlValue* value) {
  value->kind = SqlValue::Kind::Text;
  const size_t unit = encoding == TextEncoding::Utf8 ? 1 : 2;
  stored = stored.substr(0, stored.size() - stored.size() % unit);
  for (size_t cut = 0; cut <= 3 && cut <= stored.size(); cut += unit) {
    if (DecodeText(stored.substr(0, stored.size() - cut), encoding, &value->bytes)) return true;
  }
  return false;
}

}  // namespace

bool DecodeBody(std::string_view body, const std::vector<int64_t>& types, TextEncoding encoding, SqlValues* values) {
  values->resize(types.size());
  size_t offset = 0;
  for (size_t i = 0; i < types.size(); ++i) {
    const int64_t length = SerialTypeLength(types[i]);
    if (length < 0 || static_cast<uint64_t>(length) > body.size() - offset) return false;
    if (!DecodeValue(body.substr(offset, length), types[i], encoding, &(*values)[i])) return false;
    offset += length;
  }
  return true;
}

bool DecodeBodyStart(std::string_view body, const std::vector<int64_t>& types, TextEncoding encoding,
                     SqlValues* values) {
  values->assign(types.size(), SqlValue());
  size_t offset = 0;
  for (size_t i = 0; i < types.size() && offset < body.size(); ++i) {
    const int64_t length = SerialTypeLength(types[i]);
    if (length < 0) return false;
    SqlValue& value = (*values)[i];
    if (static_cast<uint64_t>(length) <= body.size() - offset) {
      if (!DecodeValue(body.substr(offset, length), types[i], encoding, &value)) return false;
    } else if (types[i] >= 12 && types[i] % 2 == 0) {
      value.kind = SqlValue::Kind::Blob;
      value.bytes.assign(body.substr(offset));
    } else if (types[i] >= 13 && !DecodeTextStart(body.substr(offset), encoding, &value)) {
      return false;
    }
    offset += length;
  }
  return true;
}

bool DecodeRecord(std::string_view payload, TextEncoding encoding, SqlValues* values, std::vector<int64_t>* types) {
  int64_t headerLength = 0;
  const int used = ReadVarint(payload, 0, &headerLength);
  if (used == 0 || headerLength < used || static_cast<uint64_t>(headerLength) > payload.size()) return false;
  std::vector<int64_t> local;
  std::vector<int64_t>& found = types ? *types : local;
  found.clear();
  size_t offset = used;
  while (offset < static_cast<size_t>(headerLength)) {
    int64_t type = 0;
    const int length = ReadVarint(payload.substr(0, headerLength), offset, &type);
    if (length == 0 || SerialTypeLength(type) < 0) return false;
    found.push_back(type);
    offset += length;
  }
  if (BodyLength(found) != static_cast<int64_t>(payload.size()) - headerLength) return false;
  return DecodeBody(payload.substr(headerLength), found, encoding, values);
}
