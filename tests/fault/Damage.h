#ifndef YH_TESTS_FAULT_DAMAGE_H
#define YH_TESTS_FAULT_DAMAGE_H

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "fault/SampleBackup.h"
#include "support/BackupBuilder.h"

// Ways a file of a backup arrives damaged.
namespace yhtest::fault {

inline std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// Keeps the first `size` bytes: a copy that stopped early.
inline void Truncate(const std::string& path, uintmax_t size) { std::filesystem::resize_file(path, size); }

// Flips `count` bits at places a small generator picks from `seed`, never in
// the first `from` bytes: what a failing disk does.
inline void FlipBits(const std::string& path, uint32_t seed, int count, size_t from) {
  std::string bytes = ReadBytes(path);
  if (bytes.size() <= from) return;
  uint32_t state = seed * 2654435761u + 1;
  for (int i = 0; i < count; ++i) {
    state = state * 1664525u + 1013904223u;
    const size_t at = from + (state >> 8) % (bytes.size() - from);
    bytes[at] = static_cast<char>(bytes[at] ^ (1 << (state % 8)));
  }
  WriteFile(path, bytes);
}

// The file's place taken by a folder that holds one file.
inline void ReplaceWithFolder(const std::string& path) {
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  WriteFile(path + "/inside", "not the file");
}

// The database written anew from another description.
inline void Rewrite(const std::string& path, const sample::Database& database) {
  std::filesystem::remove(path);
  WriteDatabase(path, sample::Sql(database));
}

// Every table under its own name, with two columns no query asks for.
inline sample::Database WithOtherColumns(sample::Database database) {
  for (sample::Table& table : database.tables) {
    table.columns = {"other_a", "other_b"};
    table.keys.clear();
    table.rows = {{"'x'", "1"}, {"NULL", "X'00'"}};
  }
  return database;
}

inline bool IsKey(const sample::Table& table, const std::string& column) {
  for (const std::string& key : table.keys) {
    if (key == column) return true;
  }
  return false;
}

// Each row followed by one copy per literal, whose columns other than the
// join keys all hold that literal.
inline sample::Database WithValues(sample::Database database, const std::vector<std::string>& literals) {
  for (sample::Table& table : database.tables) {
    std::vector<std::vector<std::string>> rows;
    for (const auto& row : table.rows) {
      rows.push_back(row);
      for (const std::string& literal : literals) {
        std::vector<std::string> copy = row;
        for (size_t column = 0; column < copy.size(); ++column) {
          if (!IsKey(table, table.columns[column])) copy[column] = literal;
        }
        rows.push_back(copy);
      }
    }
    table.rows = rows;
  }
  return database;
}

// Each row followed by one copy in which a single column other than the join
// keys, a different one from row to row, holds the literal: a huge value in
// every column would make databases of hundreds of megabytes.
inline sample::Database WithValueInOneColumn(sample::Database database, const std::string& literal) {
  for (sample::Table& table : database.tables) {
    std::vector<size_t> free;
    for (size_t column = 0; column < table.columns.size(); ++column) {
      if (!IsKey(table, table.columns[column])) free.push_back(column);
    }
    if (free.empty()) continue;
    std::vector<std::vector<std::string>> rows;
    for (size_t r = 0; r < table.rows.size(); ++r) {
      rows.push_back(table.rows[r]);
      rows.push_back(table.rows[r]);
      rows.back()[free[r % free.size()]] = literal;
    }
    table.rows = rows;
  }
  return database;
}

}  // namespace yhtest::fault

#endif
