#include "RowsInput.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace yhfuzz {
namespace {

constexpr uint8_t kNamed = 255;
constexpr size_t kMostTables = 6;
constexpr size_t kMostColumns = 14;
constexpr size_t kMostRows = 24;

class ByteReader {
 public:
  ByteReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  uint8_t Byte() { return at_ < size_ ? data_[at_++] : 0; }
  std::string Bytes(size_t count) {
    const size_t taken = std::min(count, size_ - at_);
    std::string bytes(reinterpret_cast<const char*>(data_ + at_), taken);
    at_ += taken;
    return bytes;
  }
  uint64_t Number(int bytes) {
    uint64_t value = 0;
    for (int i = 0; i < bytes; ++i) value = value << 8 | Byte();
    return value;
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t at_ = 0;
};

std::string Name(ByteReader& in, const std::vector<std::string>& known) {
  const uint8_t choice = in.Byte();
  if (choice == kNamed || known.empty()) return in.Bytes(in.Byte());
  return known[choice % known.size()];
}

Value ReadValue(ByteReader& in) {
  Value value;
  value.type = static_cast<Value::Type>(in.Byte() % 6);
  switch (value.type) {
    case Value::Integer: value.integer = static_cast<int64_t>(in.Number(8)); break;
    case Value::Real: {
      const uint64_t bits = in.Number(8);
      std::memcpy(&value.real, &bits, sizeof bits);
      break;
    }
    case Value::Text:
    case Value::Blob: value.bytes = in.Bytes(in.Number(2)); break;
    case Value::Word: {
      const std::vector<std::string>& words = RowWords();
      value.type = Value::Text;
      value.bytes = words[in.Byte() % words.size()];
      break;
    }
    case Value::Null: break;
  }
  return value;
}

void PutNumber(std::string& out, uint64_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>(value >> (8 * i) & 0xFF);
}

void PutName(std::string& out, const std::string& name, const std::vector<std::string>& known) {
  for (size_t i = 0; i < known.size() && i < kNamed; ++i) {
    if (known[i] == name) {
      out += static_cast<char>(i);
      return;
    }
  }
  out += static_cast<char>(kNamed);
  out += static_cast<char>(name.size());
  out += name;
}

std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

void Bind(sqlite3_stmt* statement, int place, const Value& value) {
  switch (value.type) {
    case Value::Integer: sqlite3_bind_int64(statement, place, value.integer); break;
    case Value::Real: sqlite3_bind_double(statement, place, value.real); break;
    case Value::Text:
    case Value::Word:
      sqlite3_bind_text(statement, place, value.bytes.data(), static_cast<int>(value.bytes.size()), SQLITE_TRANSIENT);
      break;
    case Value::Blob:
      sqlite3_bind_blob(statement, place, value.bytes.data(), static_cast<int>(value.bytes.size()), SQLITE_TRANSIENT);
      break;
    case Value::Null: sqlite3_bind_null(statement, place); break;
  }
}

}  // namespace

RowsInput DecodeRows(const uint8_t* data, size_t size) {
  ByteReader in(data, size);
  RowsInput input;
  const std::vector<RowTarget>& targets = RowTargets();
  input.target = in.Byte() % targets.size();
  std::vector<std::string> tableNames;
  std::vector<std::string> everyColumn;
  for (const KnownTable& table : targets[input.target].tables) {
    tableNames.push_back(table.name);
    everyColumn.insert(everyColumn.end(), table.columns.begin(), table.columns.end());
  }
  for (size_t t = in.Byte() % (kMostTables + 1); t > 0; --t) {
    TableInput table;
    table.name = Name(in, tableNames);
    const std::vector<std::string>* known = &everyColumn;
    for (const KnownTable& candidate : targets[input.target].tables) {
      if (candidate.name == table.name) known = &candidate.columns;
    }
    for (size_t c = in.Byte() % (kMostColumns + 1); c > 0; --c) table.columns.push_back(Name(in, *known));
    for (size_t r = in.Byte() % (kMostRows + 1); r > 0; --r) {
      std::vector<Value> row;
      for (size_t c = 0; c < table.columns.size(); ++c) row.push_back(ReadValue(in));
      table.rows.push_back(row);
    }
    input.tables.push_back(table);
  }
  return input;
}

std::string EncodeRows(size_t target, const std::vector<TableInput>& tables) {
  std::string out;
  out += static_cast<char>(target);
  out += static_cast<char>(tables.size());
  const RowTarget& known = RowTargets()[target];
  std::vector<std::string> tableNames;
  std::vector<std::string> everyColumn;
  for (const KnownTable& table : known.tables) {
    tableNames.push_back(table.name);
    everyColumn.insert(everyColumn.end(), table.columns.begin(), table.columns.end());
  }
  for (const TableInput& table : tables) {
    PutName(out, table.name, tableNames);
    const std::vector<std::string>* columns = &everyColumn;
    for (const KnownTable& candidate : known.tables) {
      if (candidate.name == table.name) columns = &candidate.columns;
    }
    out += static_cast<char>(table.columns.size());
    for (const std::string& column : table.columns) PutName(out, column, *columns);
    out += static_cast<char>(table.rows.size());
    for (const auto& row : table.rows) {
      for (const Value& value : row) {
        out += static_cast<char>(value.type == Value::Word ? Value::Text : value.type);
        if (value.type == Value::Integer) PutNumber(out, static_cast<uint64_t>(value.integer), 8);
        if (value.type == Value::Real) {
          uint64_t bits = 0;
          std::memcpy(&bits, &value.real, sizeof bits);
          PutNumber(out, bits, 8);
        }
        if (value.type == Value::Text || value.type == Value::Blob || value.type == Value::Word) {
          PutNumber(out, value.bytes.size(), 2);
          out += value.bytes;
        }
      }
    }
  }
  return out;
}

void WriteRows(const std::string& path, const std::vector<TableInput>& tables) {
  sqlite3* handle = nullptr;
  sqlite3_open(path.c_str(), &handle);
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> db(handle, sqlite3_close);
  sqlite3_exec(db.get(), "PRAGMA synchronous=OFF; PRAGMA journal_mode=OFF; BEGIN", nullptr, nullptr, nullptr);
  for (const TableInput& table : tables) {
    std::string create = "CREATE TABLE " + Quoted(table.name) + " (";
    std::string insert = "INSERT INTO " + Quoted(table.name) + " VALUES (";
    for (size_t c = 0; c < table.columns.size(); ++c) {
      create += (c ? ", " : "") + Quoted(table.columns[c]);
      insert += c ? ", ?" : "?";
    }
    // A table SQLite refuses (no columns, a column or table named twice) is left out.
    if (table.columns.empty() ||
        sqlite3_exec(db.get(), (create + ")").c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      continue;
    }
    sqlite3_stmt* raw = nullptr;
    sqlite3_prepare_v2(db.get(), (insert + ")").c_str(), -1, &raw, nullptr);
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(raw, sqlite3_finalize);
    for (const auto& row : table.rows) {
      for (size_t c = 0; c < row.size(); ++c) Bind(statement.get(), static_cast<int>(c + 1), row[c]);
      sqlite3_step(statement.get());
      sqlite3_reset(statement.get());
    }
  }
  sqlite3_exec(db.get(), "COMMIT", nullptr, nullptr, nullptr);
}

}  // namespace yhfuzz
