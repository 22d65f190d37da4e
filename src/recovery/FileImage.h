#ifndef YH_RECOVERY_FILEIMAGE_H
#define YH_RECOVERY_FILEIMAGE_H

#include <cstdint>
#include <string_view>
#include <map>
#include <vector>

#include "recovery/DatabaseHeader.h"
#include "recovery/PageImage.h"

// A database as its stored bytes show it, never opened through SQLite: the
// main file with the committed frames of its -wal laid over it (the current
// state), plus every earlier version of a page the files still hold. Holds
// views: the caller keeps the three files' bytes alive.
class FileImage {
 public:
  FileImage(std::string_view database, std::string_view wal = {}, std::string_view journal = {});

  // Of the current state (page 1 of the -wal when it holds one).
  const DatabaseHeader& Header() const { return header_; }
  uint32_t PageCount() const { return pageCount_; }

  // The current version of a page; its bytes are empty for a page number out
  // of range and short for a page the truncated file cuts.
  PageImage Page(uint32_t number) const;

  // Every other version the files hold: frames of the -wal that are not the
  // current version of their page, main-file pages that a committed frame
  // replaces, and the journal's page images.
  const std::vector<PageImage>& EarlierImages() const { return earlier_; }

 private:
  std::string_view database_;
  DatabaseHeader header_;
  uint32_t pageCount_ = 0;
  std::map<uint32_t, PageImage> walPages_;
  std::vector<PageImage> earlier_;

  PageImage DatabasePage(uint32_t number) const;
};

#endif
