#ifndef YH_INDEX_INDEXREADER_H
#define YH_INDEX_INDEXREADER_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "common/VqBase.h"
#include "index/BackupType.h"
#include "index/PathIndex.h"
#include "index/TestThreads.h"
#include "platform/Folder.h"

// The one interface over both index readers: the records kept (those whose
// stored file exists), in index order and by position, and where each one's
// bytes lie. Every lookup of a stored file goes through it.
class IndexReader : public VqBase {
 public:
  ~IndexReader() override = default;

  virtual BackupType Type() const = 0;

  virtual size_t RecordCount() const = 0;
  virtual std::string_view DomainAt(size_t position) const = 0;
  virtual std::string_view PathAt(size_t position) const = 0;
  // The record's stored file below the backup folder: the one place where
  // each index kind works it out.
  virtual std::string StoredNameAt(size_t position) const = 0;
  // What the index's existence test found at the stored file.
  virtual Folder::Entry StoredAt(size_t position) const = 0;

  // The record the path map holds for `path` (a later record of a path
  // replaces an earlier one), and whether more than one record has it.
  virtual std::optional<size_t> MappedAt(std::string_view path) const = 0;
  virtual bool Repeated(std::string_view path) const = 0;

  // The records' device paths indexed for substring search, made on the
  // first call and kept: every media kind searches the same paths.
  virtual const PathIndex& GetPathIndex() = 0;

  // Set before the index is read; worker threads unless told otherwise.
  void SetTestThreads(TestThreads threads) { testThreads_ = threads; }
  TestThreads GetTestThreads() const { return testThreads_; }

 private:
  TestThreads testThreads_ = TestThreads::Workers;
};

#endif
