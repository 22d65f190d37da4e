#include "recovery/PageCache.h"

#include <algorithm>

namespace {

PageImage Image(const PageLocation& where, std::string_view bytes, std::shared_ptr<const std::string> holder) {
  PageImage image;
  static_cast<PageLocation&>(image) = where;
  image.bytes = bytes;
  image.holder = std::move(holder);
  return image;
}

}  // namespace

PageCache::Entry* PageCache::Find(const PageLocation& where, size_t size) {
  for (Entry& entry : entries_) {
    if (entry.where.file == where.file && entry.where.fileOffset == where.fileOffset && entry.size == size) {
      return &entry;
    }
  }
  return nullptr;
}

PageCache::Entry* PageCache::Slot() {
  if (entries_.size() < capacity_) {
    entries_.push_back({{}, 0, std::make_shared<std::string>(), 0});
    return &entries_.back();
  }
  Entry* oldest = &*std::min_element(entries_.begin(), entries_.end(),
                                     [](const Entry& a, const Entry& b) { return a.lastUse < b.lastUse; });
  // The slot always gets a new buffer: an image may still hold the old one,
  // and on another thread a count of its holders proves nothing.
  oldest->bytes = std::make_shared<std::string>();
  return oldest;
}

PageImage PageCache::Read(const ByteSource& source, const PageLocation& where, size_t size) {
  if (source.InMemory()) return Image(where, source.Read(where.fileOffset, size, nullptr), nullptr);
  const std::lock_guard<std::mutex> hold(lock_);
  Entry* entry = Find(where, size);
  if (!entry) {
    entry = Slot();
    entry->where = where;
    entry->size = size;
    source.Read(where.fileOffset, size, entry->bytes.get());
  }
  entry->lastUse = ++clock_;
  return Image(where, *entry->bytes, entry->bytes);
}
