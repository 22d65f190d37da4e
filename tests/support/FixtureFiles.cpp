#include <gcrypt.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

void CreateParentFolders(const std::string& path) {
  const std::filesystem::path parent = std::filesystem::path(path).parent_path();
  if (!parent.empty()) std::filesystem::create_directories(parent);
}

std::string SchemaDir() {
#ifdef YH_SCHEMA_DIR
  return YH_SCHEMA_DIR;
#else
  // Targets built without the definition find the schemas beside this folder.
  return (std::filesystem::path(__FILE__).parent_path().parent_path() / "schemas").string();
#endif
}

// Functions of the device's own that real schemas call from column defaults
// and triggers: a fresh guid (address book), the value a trigger computed
// (address book), whether a message's flags mark it read (iOS 5 messages).
void GenerateGuid(sqlite3_context* context, int, sqlite3_value**) {
  static unsigned long next = 0;
  const std::string guid = "guid-" + std::to_string(++next);
  sqlite3_result_text(context, guid.c_str(), -1, SQLITE_TRANSIENT);
}
void FirstArgument(sqlite3_context* context, int, sqlite3_value** values) {
  sqlite3_result_value(context, values[0]);
}
void IsRead(sqlite3_context* context, int, sqlite3_value** values) {
  sqlite3_result_int(context, (sqlite3_value_int(values[0]) & 2) != 0);
}

struct DeviceFunction {
  const char* name;
  int arguments;
  void (*function)(sqlite3_context*, int, sqlite3_value**);
};
const DeviceFunction kDeviceFunctions[] = {
    {"ab_generate_guid", 0, GenerateGuid},
    {"ab_update_value_from_trigger", 3, FirstArgument},
    {"read", 1, IsRead},
};

// A schema dump holds statements that cannot be replayed off the device:
// tables of SQLite's own (it makes sqlite_sequence itself, ANALYZE makes
// sqlite_stat1) and full-text tables, whose options name the device's
// tokenizer. Their plain shadow tables are in the dump and are kept.
bool Replayable(const std::string& statement) {
  std::string text = statement;
  for (;;) {  // leading blanks and "--" comment lines
    const size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string::npos) return true;
    text.erase(0, start);
    if (text.compare(0, 2, "--") != 0) break;
    const size_t end = text.find('\n');
    if (end == std::string::npos) return true;
    text.erase(0, end + 1);
  }
  std::string head = text.substr(0, 64);
  for (char& c : head) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return head.rfind("create table sqlite_", 0) != 0 && head.rfind("create virtual table", 0) != 0;
}

}  // namespace

std::string Schema(const std::string& name) {
  const std::string path = SchemaDir() + "/" + name + ".sql";
  std::ifstream in(path, std::ios::binary);
  if (!in) ADD_FAILURE() << "no schema " << path;
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
  CreateParentFolders(path);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) ADD_FAILURE() << "cannot write " << path;
}

void WriteSparseFile(const std::string& path, uint64_t size) {
  CreateParentFolders(path);
  std::ofstream(path, std::ios::binary | std::ios::trunc).close();
  std::error_code error;
  std::filesystem::resize_file(path, size, error);
  if (error) ADD_FAILURE() << "cannot write " << path << ": " << error.message();
}

namespace {

using FixtureDb = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

FixtureDb OpenFixture(const std::string& path) {
  CreateParentFolders(path);
  sqlite3* handle = nullptr;
  const int opened = sqlite3_open(path.c_str(), &handle);
  FixtureDb db(handle, sqlite3_close);
  if (opened != SQLITE_OK) {
    ADD_FAILURE() << "cannot create " << path << ": " << sqlite3_errmsg(handle);
    return FixtureDb(nullptr, sqlite3_close);
  }
  // Fixtures need no durability: without a sync after every statement a
  // full device schema is written in milliseconds.
  sqlite3_exec(db.get(), "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
  for (const DeviceFunction& f : kDeviceFunctions) {
    sqlite3_create_function(db.get(), f.name, f.arguments, SQLITE_UTF8, nullptr, f.function, nullptr, nullptr);
  }
  return db;
}

void RunScript(sqlite3* db, const std::string& path, const std::string& sql) {
  const auto run = [&](const std::string& statement) {
    if (!Replayable(statement)) return;
    char* error = nullptr;
    if (sqlite3_exec(db, statement.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
      ADD_FAILURE() << path << ": " << (error ? error : "?") << "\nin: " << statement;
    }
    sqlite3_free(error);
  };
  // Line by line, one complete statement (or line of statements) at a time.
  std::istringstream lines(sql);
  std::string statement;
  std::string line;
  while (std::getline(lines, line)) {
    statement += line + "\n";
    if (!sqlite3_complete(statement.c_str())) continue;
    run(statement);
    statement.clear();
  }
  run(statement);  // an unfinished statement is reported; comments do nothing
}

}  // namespace

void WriteDatabase(const std::string& path, const std::string& sql) {
  FixtureDb db = OpenFixture(path);
  if (db) RunScript(db.get(), path, sql);
}

DatabaseWithWal MakeDatabaseWithWal(const std::string& sql, const std::string& walSql) {
  TempDir folder;
  const std::string path = folder.Path() + "database";
  FixtureDb db = OpenFixture(path);
  if (!db) return {};
  sqlite3_exec(db.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
  RunScript(db.get(), path, sql);
  sqlite3_exec(db.get(), "PRAGMA wal_checkpoint(TRUNCATE); PRAGMA wal_autocheckpoint=0", nullptr, nullptr, nullptr);
  RunScript(db.get(), path, walSql);
  // Taken while the connection is open: closing it would move the log's
  // rows into the database and remove the log.
  return {ReadBytes(path), ReadBytes(path + "-wal")};
}

namespace {

std::string DigestHex(int algorithm, const std::string& bytes) {
  std::string digest(gcry_md_get_algo_dlen(algorithm), '\0');
  gcry_md_hash_buffer(algorithm, digest.data(), bytes.data(), bytes.size());
  std::string hex;
  char pair[3];
  for (unsigned char byte : digest) {
    std::snprintf(pair, sizeof pair, "%02x", byte);
    hex += pair;
  }
  return hex;
}

}  // namespace

std::string Sha1Hex(const std::string& bytes) { return DigestHex(GCRY_MD_SHA1, bytes); }

std::string Sha256Hex(const std::string& bytes) { return DigestHex(GCRY_MD_SHA256, bytes); }

}  // namespace yhtest
