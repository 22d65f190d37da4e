#include "SampleData.h"

#include "common/CivilTime.h"
#include "support/NoteDocumentWriter.h"
#include "support/NoteStoreBody.h"

namespace samples {
namespace {

constexpr int64_t kSeconds1970To2001 = 978307200;

}  // namespace

const std::string kJpeg("\xFF\xD8\xFF\xE0\x00\x10JFIF", 10);
const std::string kPng("\x89PNG\r\n\x1A\n", 8);
const std::string kM4a(
    "\x00\x00\x00\x20"
    "ftypM4A ",
    12);
const std::string kCaf("caff\x00\x01", 6);
const std::string kAmr("#!AMR\n");

int64_t UnixTime(int year, int month, int day, int hour, int minute, int second) {
  return DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second;
}

int64_t Since2001(int64_t unixTime) { return unixTime - kSeconds1970To2001; }

std::string Since2001Text(int year, int month, int day, int hour, int minute, int second) {
  return std::to_string(Since2001(UnixTime(year, month, day, hour, minute, second)));
}

std::string Since1970Text(int year, int month, int day, int hour, int minute, int second) {
  return std::to_string(UnixTime(year, month, day, hour, minute, second));
}

std::string Sql(const std::string& text) {
  std::string literal = "'";
  for (char c : text) literal += c == '\'' ? std::string("''") : std::string(1, c);
  return literal + "'";
}

std::string Insert(const std::string& table, const std::string& columns,
                   const std::vector<std::vector<std::string>>& rows) {
  std::string sql = "INSERT INTO " + table + " (" + columns + ") VALUES ";
  for (size_t i = 0; i < rows.size(); ++i) {
    sql += i ? ", (" : "(";
    for (size_t j = 0; j < rows[i].size(); ++j) sql += (j ? ", " : "") + rows[i][j];
    sql += ")";
  }
  return sql + ";\n";
}

std::string MediaFile(const std::string& signature, size_t size, unsigned seed) {
  std::string bytes = signature;
  uint32_t state = seed * 2654435761u + 1;
  for (size_t i = 0; i < size; ++i) {
    state = state * 1664525u + 1013904223u;
    bytes += static_cast<char>(state >> 24);
  }
  return bytes;
}

std::string NoteStoreData(const std::string& text) { return yhtest::SqlBlob(yhtest::NoteDocumentBlob(text)); }

}  // namespace samples
