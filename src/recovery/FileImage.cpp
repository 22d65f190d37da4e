#include "recovery/FileImage.h"

#include "recovery/JournalPages.h"
#include "recovery/WalFrames.h"

namespace {

const uint32_t kDefaultPageSize = 4096;

}  // namespace

FileImage::FileImage(std::string_view database, std::string_view wal, std::string_view journal)
    : database_(database), header_(ReadDatabaseHeader(database)) {
  WalFrames frames = ReadWalFrames(wal, header_.pageSize);
  if (header_.pageSize == 0) header_.pageSize = frames.pageSize != 0 ? frames.pageSize : kDefaultPageSize;
  if (frames.pageSize != header_.pageSize) frames = WalFrames{};
  for (const PageImage& frame : frames.committed) {
    auto found = walPages_.find(frame.number);
    if (found != walPages_.end()) {
      earlier_.push_back(found->second);
      found->second = frame;
    } else {
      walPages_.emplace(frame.number, frame);
    }
  }
  const uint32_t filePages = static_cast<uint32_t>(database.size() / header_.pageSize +
                                                   (database.size() % header_.pageSize != 0));
  for (const auto& [number, frame] : walPages_) {
    if (number <= filePages) earlier_.push_back(DatabasePage(number));
  }
  earlier_.insert(earlier_.end(), frames.others.begin(), frames.others.end());
  const uint32_t reserved = header_.reservedBytes;
  if (walPages_.count(1) != 0) {
    const DatabaseHeader latest = ReadDatabaseHeader(walPages_.at(1).bytes);
    if (latest.pageSize == header_.pageSize) header_ = latest;
  }
  header_.reservedBytes = reserved;
  pageCount_ = frames.databasePages != 0 ? frames.databasePages : filePages;
  const std::vector<PageImage> journalPages = ReadJournalPages(journal, header_.pageSize, pageCount_);
  earlier_.insert(earlier_.end(), journalPages.begin(), journalPages.end());
}

PageImage FileImage::DatabasePage(uint32_t number) const {
  PageImage image{number, {}, StoredIn::Database, 0};
  const uint64_t offset = static_cast<uint64_t>(number - 1) * header_.pageSize;
  if (number == 0 || offset >= database_.size()) return image;
  image.bytes = database_.substr(offset, header_.pageSize);
  image.fileOffset = offset;
  return image;
}

PageImage FileImage::Page(uint32_t number) const {
  if (number == 0 || number > pageCount_) return {number, {}, StoredIn::Database, 0};
  const auto found = walPages_.find(number);
  return found != walPages_.end() ? found->second : DatabasePage(number);
}
