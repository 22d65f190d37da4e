#ifndef YH_FUZZ_ROWSINPUT_H
#define YH_FUZZ_ROWSINPUT_H

#include <cstdint>
#include <string>
#include <vector>

#include "RowTargets.h"

namespace yhfuzz {

struct Value {
  enum Type : uint8_t { Null, Integer, Real, Text, Blob, Word };
  Type type = Null;
  int64_t integer = 0;
  double real = 0;
  std::string bytes;  // Text and Blob; Word holds the chosen word as Text
};

struct TableInput {
  std::string name;
  std::vector<std::string> columns;
  std::vector<std::vector<Value>> rows;
};

// A fuzzer input for the row callbacks: which database, then its tables,
// each with chosen columns (known ones by number, or any name) and rows of
// typed values. Bytes:
//   target; table count; per table: name (known number, or 255 + length +
//   text), column count, per column the same, row count, per value a type
//   byte then 8 bytes (integer, real), 2-byte length + bytes (text, blob)
//   or a word number. Missing bytes read as zero.
struct RowsInput {
  size_t target = 0;
  std::vector<TableInput> tables;
};

RowsInput DecodeRows(const uint8_t* data, size_t size);
std::string EncodeRows(size_t target, const std::vector<TableInput>& tables);

// Creates an SQLite database with these tables and rows at `path`.
void WriteRows(const std::string& path, const std::vector<TableInput>& tables);

}  // namespace yhfuzz

#endif
