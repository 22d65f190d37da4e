#include "recovery/FileImage.h"

#include <algorithm>
#include <string>

#include "recovery/JournalPages.h"
#include "recovery/WalFrames.h"

namespace {

const uint32_t kDefaultPageSize = 4096;
// A tree walk holds a page per level and reads overflow chains on the way;
// a few dozen pages keep its interior pages at hand.
const size_t kCachedPages = 32;
const size_t kHeaderSize = 100;

DatabaseHeader HeaderOf(const ByteSource& source, uint64_t offset) {
  std::string buffer;
  return ReadDatabaseHeader(source.Read(offset, kHeaderSize, &buffer));
}

}  // namespace

FileImage::FileImage(std::string_view database, std::string_view wal, std::string_view journal)
    : FileImage(std::make_unique<MemoryBytes>(database), std::make_unique<MemoryBytes>(wal),
                std::make_unique<MemoryBytes>(journal)) {}

FileImage::FileImage(std::unique_ptr<ByteSource> database, std::unique_ptr<ByteSource> wal,
                     std::unique_ptr<ByteSource> journal)
    : files_{std::move(database), std::move(wal), std::move(journal)},
      header_(HeaderOf(*files_[0], 0)),
      cache_(kCachedPages) {
  WalFrames frames = ReadWalFrames(*files_[1], header_.pageSize);
  if (header_.pageSize == 0) header_.pageSize = frames.pageSize != 0 ? frames.pageSize : kDefaultPageSize;
  if (frames.pageSize != header_.pageSize) frames = WalFrames{};
  pageSizes_[0] = pageSizes_[1] = header_.pageSize;
  for (const PageLocation& frame : frames.committed) {
    auto found = walPages_.find(frame.number);
    if (found != walPages_.end()) {
      earlier_.push_back(found->second);
      found->second = frame;
    } else {
      walPages_.emplace(frame.number, frame);
    }
  }
  const uint64_t size = files_[0]->Size();
  const uint32_t filePages =
      static_cast<uint32_t>(std::min<uint64_t>(size / header_.pageSize + (size % header_.pageSize != 0), UINT32_MAX));
  for (const auto& [number, frame] : walPages_) {
    if (number <= filePages) earlier_.push_back(DatabasePage(number));
  }
  earlier_.insert(earlier_.end(), frames.others.begin(), frames.others.end());
  const uint32_t reserved = header_.reservedBytes;
  if (walPages_.count(1) != 0) {
    const DatabaseHeader latest = HeaderOf(*files_[1], walPages_.at(1).fileOffset);
    if (latest.pageSize == header_.pageSize) header_ = latest;
  }
  header_.reservedBytes = reserved;
  // Every page of the current state is in the main file or a committed frame.
  const uint64_t stored = static_cast<uint64_t>(filePages) + walPages_.size();
  pageCount_ = frames.databasePages != 0 ? static_cast<uint32_t>(std::min<uint64_t>(frames.databasePages, stored))
                                         : filePages;
  // Pages past the end of the current state: the log made the database
  // shorter (auto-vacuum gave back its last pages), so the main file's
  // pages there, and the log's last frames of them, are earlier versions.
  for (const auto& [number, frame] : walPages_) {
    if (number > pageCount_) earlier_.push_back(frame);
  }
  for (uint32_t number = pageCount_ + 1; number <= filePages && number != 0; ++number) {
    if (walPages_.count(number) == 0) earlier_.push_back(DatabasePage(number));
  }
  const JournalPages journalPages = ReadJournalPages(*files_[2], header_.pageSize, pageCount_);
  pageSizes_[2] = journalPages.pageSize;
  earlier_.insert(earlier_.end(), journalPages.pages.begin(), journalPages.pages.end());
}

PageLocation FileImage::DatabasePage(uint32_t number) const {
  return {number, StoredIn::Database, static_cast<uint64_t>(number - 1) * header_.pageSize};
}

PageImage FileImage::Read(const PageLocation& where) const {
  const size_t file = static_cast<size_t>(where.file);
  return cache_.Read(*files_[file], where, pageSizes_[file]);
}

PageImage FileImage::Page(uint32_t number) const {
  if (number == 0 || number > pageCount_) {
    PageImage none;
    none.number = number;
    return none;
  }
  const auto found = walPages_.find(number);
  return Read(found != walPages_.end() ? found->second : DatabasePage(number));
}
