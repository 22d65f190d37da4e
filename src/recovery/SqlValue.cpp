#include "recovery/SqlValue.h"

#include <cstring>

bool SqlValue::operator==(const SqlValue& other) const {
  if (kind != other.kind) return false;
  switch (kind) {
    case Kind::Null:
      return true;
    case Kind::Integer:
      return integer == other.integer;
    case Kind::Real:
      // Bitwise, so that a NaN read twice is the same value.
      return std::memcmp(&real, &other.real, sizeof real) == 0;
    default:
      return bytes == other.bytes;
  }
}
