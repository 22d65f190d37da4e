#include "recovery/FileImage.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "recovery/FileBytes.h"
#include "recovery/RecoverRows.h"
#include "support/StoredDatabase.h"

namespace {

// Bytes read as from a file, copied into the reader's buffer; the largest
// read is noted.
class WatchedBytes : public ByteSource {
 public:
  WatchedBytes(const std::string& bytes, size_t* largest) : bytes_(bytes), largest_(largest) {}
  uint64_t Size() const override { return bytes_.Size(); }
  bool InMemory() const override { return false; }
  std::string_view Read(uint64_t offset, size_t size, std::string* buffer) const override {
    *largest_ = std::max(*largest_, size);
    buffer->assign(bytes_.Read(offset, size, nullptr));
    return *buffer;
  }

 private:
  MemoryBytes bytes_;
  size_t* largest_;
};

// A database of pages of 1024 bytes with a -wal of several frames and rows
// of every source: live, freeblocks, freelist pages, earlier frames.
yhtest::StoredDatabase Fixture() {
  std::string sql = "PRAGMA page_size=1024; PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;"
                    "CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT, b BLOB);";
  for (int i = 1; i <= 300; ++i) {
    sql += "INSERT INTO t VALUES (" + std::to_string(i) + ", 'row " + std::to_string(i) + "', randomblob(" +
           std::to_string(i % 7 == 0 ? 3000 : 20) + "));";
  }
  return yhtest::BuildStoredDatabase(sql + "PRAGMA wal_checkpoint; DELETE FROM t WHERE id % 3 = 0;"
                                           "UPDATE t SET v = 'changed' WHERE id % 5 = 0;");
}

// Rows as comparable lines: table, source, status, file, offset, values.
std::vector<std::string> Lines(const RecoveredRows& recovered) {
  std::vector<std::string> lines;
  for (const RecoveredRow& row : recovered.rows) {
    std::string line = recovered.tables[row.table].name + " " + RowSourceName(row.source) + " " +
                       RowStatusName(row.status) + " " + StoredInName(row.file) + " " + std::to_string(row.offset);
    for (const SqlValue& value : row.values) line += "|" + std::to_string(value.integer) + value.bytes;
    lines.push_back(line);
  }
  return lines;
}

TEST(FileImage, ReadsItsFilesAPageOrAFrameAtATime) {
  const yhtest::StoredDatabase stored = Fixture();
  ASSERT_GT(stored.wal.size(), 20u * 1024);
  size_t largest = 0;
  const FileImage image(std::make_unique<WatchedBytes>(stored.database, &largest),
                        std::make_unique<WatchedBytes>(stored.wal, &largest),
                        std::make_unique<MemoryBytes>(""));
  const RecoveredRows read = RecoverRows(image, true);
  EXPECT_LE(largest, 1024u + 24) << "a -wal frame and its header at most";
  EXPECT_EQ(Lines(read), Lines(RecoverRows(FileImage(stored.database, stored.wal), true)))
      << "the same rows as from the bytes in memory";
}

TEST(FileImage, ReadsStoredFilesThroughTheirDescriptors) {
  const yhtest::StoredDatabaseFile file("PRAGMA journal_mode=PERSIST; CREATE TABLE t (id INTEGER, v TEXT);"
                                        "INSERT INTO t VALUES (1, 'journalled'), (2, 'stays');"
                                        "DELETE FROM t WHERE id = 1;");
  const yhtest::StoredDatabase stored{yhtest::ReadBytes(file.Path()), "", yhtest::ReadBytes(file.Path() + "-journal")};
  const FileImage image(std::make_unique<FileBytes>(file.Path()), std::make_unique<FileBytes>(""),
                        std::make_unique<FileBytes>(file.Path() + "-journal"));
  const std::vector<std::string> lines = Lines(RecoverRows(image, true));
  EXPECT_EQ(lines, Lines(RecoverRows(FileImage(stored.database, "", stored.journal), true)));
  EXPECT_GE(lines.size(), 2u);
}

TEST(FileImage, GivesNoBytesForWhatIsNoRegularFile) {
  yhtest::TempDir folder;
  const FileBytes missing(folder.Path() + "missing");
  EXPECT_FALSE(missing.IsOpen());
  EXPECT_EQ(missing.Size(), 0u);
  const FileBytes directory(folder.Path());
  EXPECT_FALSE(directory.IsOpen());
  std::string buffer;
  EXPECT_TRUE(directory.Read(0, 10, &buffer).empty());
}

TEST(RecoverRows, LeavesOutLiveRowsUnlessAskedFor) {
  const yhtest::StoredDatabase stored = Fixture();
  const RecoveredRows all = RecoverRows(FileImage(stored.database, stored.wal), true);
  const RecoveredRows carved = RecoverRows(FileImage(stored.database, stored.wal), false);
  std::vector<std::string> notLive;
  for (const std::string& line : Lines(all)) {
    if (line.find(" live ") == std::string::npos) notLive.push_back(line);
  }
  EXPECT_GT(notLive.size(), 50u);
  EXPECT_LT(notLive.size(), Lines(all).size());
  EXPECT_EQ(Lines(carved), notLive);
}

}  // namespace
