#ifndef YH_RECOVERY_SQLVALUE_H
#define YH_RECOVERY_SQLVALUE_H

#include <cstdint>
#include <string>
#include <vector>

// One value of a record, typed as stored. Texts are UTF-8 whatever the
// database's encoding; blobs keep their bytes.
struct SqlValue {
  enum class Kind { Null, Integer, Real, Text, Blob };
  Kind kind = Kind::Null;
  int64_t integer = 0;
  double real = 0;
  std::string bytes;

  bool operator==(const SqlValue& other) const;
  bool operator!=(const SqlValue& other) const { return !(*this == other); }
};

using SqlValues = std::vector<SqlValue>;

#endif
