#include "common/Database.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

// Collects every row, NULL columns as "<null>".
int CollectCallback(void* context, int columnCount, char** values, char**) {
  Rows* rows = static_cast<Rows*>(context);
  rows->emplace_back();
  for (int i = 0; i < columnCount; ++i) rows->back().push_back(values[i] ? values[i] : "<null>");
  return 0;
}

bool Exists(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

const char kPeople[] =
    "CREATE TABLE people (name TEXT, age INTEGER);"
    "INSERT INTO people VALUES ('Ann', 31), ('Bob', NULL);";

TEST(Database, ReadsRowsByPosition) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "people.db";
  yhtest::WriteDatabase(path, kPeople);
  Database db(path);
  ASSERT_TRUE(db.IsOpen());
  Rows rows;
  EXPECT_TRUE(db.Exec("SELECT name, age FROM people ORDER BY name", CollectCallback, &rows));
  EXPECT_EQ(rows, (Rows{{"Ann", "31"}, {"Bob", "<null>"}}));
}

TEST(Database, MissingPathFailsAndCreatesNothing) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "missing.db";
  Database db(path);
  EXPECT_FALSE(db.IsOpen());
  Rows rows;
  EXPECT_FALSE(db.Exec("SELECT 1", CollectCallback, &rows));
  EXPECT_TRUE(rows.empty());
  Database::Statement statement(db, "SELECT 1");
  EXPECT_FALSE(statement.IsValid());
  EXPECT_FALSE(statement.Step());
  EXPECT_FALSE(Exists(path));
}

TEST(Database, NonDatabaseOpensButQueriesFail) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "text.db";
  const std::string bytes(4096, 'x');
  yhtest::WriteFile(path, bytes);
  Database db(path);
  EXPECT_TRUE(db.IsOpen());
  Rows rows;
  EXPECT_FALSE(db.Exec("SELECT name FROM sqlite_master", CollectCallback, &rows));
  EXPECT_TRUE(rows.empty());
  Database::Statement statement(db, "SELECT name FROM sqlite_master");
  EXPECT_FALSE(statement.IsValid());
  EXPECT_EQ(ReadBytes(path), bytes);
}

TEST(Database, FailedQueryGivesFalse) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "people.db";
  yhtest::WriteDatabase(path, kPeople);
  Database db(path);
  Rows rows;
  EXPECT_FALSE(db.Exec("SELECT nothing FROM nowhere", CollectCallback, &rows));
  EXPECT_TRUE(rows.empty());
  Database::Statement statement(db, "SELECT nothing FROM nowhere");
  EXPECT_FALSE(statement.IsValid());
  EXPECT_FALSE(statement.Step());
}

TEST(Database, StatementFindsColumnsByName) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "notes.db";
  yhtest::WriteDatabase(path, "CREATE TABLE notes (id INTEGER, title TEXT); INSERT INTO notes VALUES (1, 'first');");
  Database db(path);
  Database::Statement statement(db, "SELECT notes.title AS title, NULL AS missing, id FROM notes");
  ASSERT_TRUE(statement.IsValid());
  EXPECT_EQ(statement.Column("title"), 0);
  EXPECT_EQ(statement.Column("missing"), 1);
  EXPECT_EQ(statement.Column("id"), 2);
  EXPECT_EQ(statement.Column("body"), -1);
  ASSERT_TRUE(statement.Step());
  EXPECT_STREQ(statement.Text(statement.Column("title")), "first");
}

TEST(Database, WritesAreRefusedAndTheFileIsUnchanged) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "people.db";
  yhtest::WriteDatabase(path, kPeople);
  const std::string before = ReadBytes(path);
  {
    Database db(path);
    EXPECT_FALSE(db.Exec("INSERT INTO people VALUES ('Eve', 1)", nullptr, nullptr));
    EXPECT_FALSE(db.Exec("CREATE TABLE other (a)", nullptr, nullptr));
  }
  EXPECT_EQ(ReadBytes(path), before);
  EXPECT_FALSE(Exists(path + "-journal"));
}

TEST(Database, WalDatabaseIsReadWithoutSideFiles) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "wal.db";
  yhtest::WriteDatabase(path, std::string("PRAGMA journal_mode=WAL;") + kPeople);
  const std::string header = ReadBytes(path);
  ASSERT_GE(header.size(), 20u);
  ASSERT_EQ(header[18], 2) << "not a WAL database";
  ASSERT_EQ(header[19], 2) << "not a WAL database";
  ASSERT_FALSE(Exists(path + "-wal"));
  ASSERT_FALSE(Exists(path + "-shm"));
  {
    Database db(path);
    Rows rows;
    EXPECT_TRUE(db.Exec("SELECT name FROM people ORDER BY name", CollectCallback, &rows));
    EXPECT_EQ(rows, (Rows{{"Ann"}, {"Bob"}}));
    Database::Statement statement(db, "SELECT count(*) FROM people");
    ASSERT_TRUE(statement.Step());
    EXPECT_STREQ(statement.Text(0), "2");
    EXPECT_FALSE(Exists(path + "-wal"));
    EXPECT_FALSE(Exists(path + "-shm"));
    EXPECT_FALSE(Exists(path + "-journal"));
  }
  EXPECT_FALSE(Exists(path + "-wal"));
  EXPECT_FALSE(Exists(path + "-shm"));
  EXPECT_FALSE(Exists(path + "-journal"));
}

TEST(Database, PathWithUriCharacters) {
  // "%3f" would read as "?" if the path were not escaped.
  for (const std::string name : {"we%3fird#na%20me%/x#y%.db", "we?ird#na%20me%/x?y#.db"}) {
    if (name.find('?') != std::string::npos && !yhtest::NamesMayHoldQuestionMarks()) continue;
    SCOPED_TRACE(name);
    yhtest::TempDir dir;
    const std::string path = dir.Path() + name;
    yhtest::WriteDatabase(path, kPeople);
    Database db(path);
    ASSERT_TRUE(db.IsOpen());
    Rows rows;
    EXPECT_TRUE(db.Exec("SELECT name FROM people WHERE age = 31", CollectCallback, &rows));
    EXPECT_EQ(rows, (Rows{{"Ann"}}));
    EXPECT_FALSE(Exists(dir.Path() + "we"));
  }
}

TEST(Database, UriEscapesPercentQuestionMarkAndHash) {
  EXPECT_EQ(Database::ReadOnlyUri("/a%b?c#d/e.db"), "file:/a%25b%3fc%23d/e.db?immutable=1");
}

TEST(Database, StatementReadsTextBlobAndBytes) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "notes.db";
  yhtest::WriteDatabase(path,
                        "CREATE TABLE notes (id INTEGER, title TEXT, body BLOB);"
                        "INSERT INTO notes VALUES (1, 'first', x'00ff1020'), (2, NULL, NULL);");
  Database db(path);
  Database::Statement statement(db, "SELECT id, title, body FROM notes ORDER BY id");
  ASSERT_TRUE(statement.IsValid());

  ASSERT_TRUE(statement.Step());
  EXPECT_STREQ(statement.Text(0), "1");
  EXPECT_STREQ(statement.Text(1), "first");
  ASSERT_EQ(statement.Bytes(2), 4);
  const unsigned char expected[] = {0x00, 0xff, 0x10, 0x20};
  EXPECT_EQ(std::memcmp(statement.Blob(2), expected, 4), 0);

  ASSERT_TRUE(statement.Step());
  EXPECT_STREQ(statement.Text(0), "2");
  EXPECT_EQ(statement.Text(1), nullptr);
  EXPECT_EQ(statement.Blob(2), nullptr);
  EXPECT_EQ(statement.Bytes(2), 0);

  EXPECT_FALSE(statement.Step());
}

}  // namespace
