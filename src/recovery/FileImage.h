#ifndef YH_RECOVERY_FILEIMAGE_H
#define YH_RECOVERY_FILEIMAGE_H

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "recovery/ByteSource.h"
#include "recovery/DatabaseHeader.h"
#include "recovery/PageCache.h"
#include "recovery/PageImage.h"

// A database as its stored bytes show it, never opened through SQLite: the
// main file with the committed frames of its -wal laid over it (the current
// state), plus every earlier version of a page the files still hold. Pages
// are read when asked for, through a cache of a few pages: what it holds is
// the files' headers and where each -wal frame and journal image lies.
class FileImage {
 public:
  // Of bytes in memory, which the caller keeps alive.
  explicit FileImage(std::string_view database, std::string_view wal = {}, std::string_view journal = {});
  // Of stored files; a missing log is a source of no bytes.
  FileImage(std::unique_ptr<ByteSource> database, std::unique_ptr<ByteSource> wal,
            std::unique_ptr<ByteSource> journal);

  // Of the current state (page 1 of the -wal when it holds one).
  const DatabaseHeader& Header() const { return header_; }
  uint32_t PageCount() const { return pageCount_; }

  // The current version of a page; its bytes are empty for a page number out
  // of range and short for a page the truncated file cuts.
  PageImage Page(uint32_t number) const;

  // Every other version the files hold: frames of the -wal that are not the
  // current version of their page, main-file pages that a committed frame
  // replaces, and the journal's page images.
  const std::vector<PageLocation>& EarlierPages() const { return earlier_; }
  PageImage Read(const PageLocation& where) const;

 private:
  std::unique_ptr<ByteSource> files_[3];  // by StoredIn
  uint32_t pageSizes_[3] = {};            // of each file's pages
  DatabaseHeader header_;
  uint32_t pageCount_ = 0;
  std::map<uint32_t, PageLocation> walPages_;
  std::vector<PageLocation> earlier_;
  mutable PageCache cache_;

  PageLocation DatabasePage(uint32_t number) const;
};

#endif
