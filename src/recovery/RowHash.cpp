#include "recovery/RowHash.h"

#include <functional>
#include <string_view>

uint64_t HashOfValues(uint64_t seed, const SqlValue* values, size_t count) {
  uint64_t hash = seed;
  for (size_t i = 0; i < count; ++i) {
    const SqlValue& value = values[i];
    uint64_t part = static_cast<uint64_t>(value.kind);
    if (value.kind == SqlValue::Kind::Integer) part ^= static_cast<uint64_t>(value.integer) * 0x9e3779b97f4a7c15ull;
    if (value.kind == SqlValue::Kind::Real) part ^= std::hash<double>()(value.real);
    if (!value.bytes.empty()) part ^= std::hash<std::string_view>()(value.bytes);
    hash = (hash ^ part) * 0x100000001b3ull + (hash >> 29);
  }
  return hash;
}

uint64_t HashOfValues(uint64_t seed, const SqlValues& values) { return HashOfValues(seed, values.data(), values.size()); }

uint64_t HashButRowid(size_t table, const SqlValues& values, int alias) {
  if (alias < 0 || static_cast<size_t>(alias) >= values.size()) return HashOfValues(table, values);
  const SqlValue none;
  const uint64_t head = HashOfValues(table, values.data(), alias);
  return HashOfValues(HashOfValues(head, &none, 1), values.data() + alias + 1, values.size() - alias - 1);
}

bool SameButRowid(const SqlValues& a, const SqlValues& b, int alias) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (static_cast<int>(i) != alias && a[i] != b[i]) return false;
  }
  return true;
}
