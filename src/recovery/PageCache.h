#ifndef YH_RECOVERY_PAGECACHE_H
#define YH_RECOVERY_PAGECACHE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "recovery/ByteSource.h"
#include "recovery/PageImage.h"

// The pages last read from files, so that a page met again soon (a tree's
// interior page, a page read for its rows and then for an overflow chain)
// costs no second read. It keeps at most `capacity` buffers; an image handed
// out keeps its own buffer alive after the cache has let it go. Pages of
// bytes in memory are viewed in place, never copied.
class PageCache {
 public:
  explicit PageCache(size_t capacity) : capacity_(capacity) {}

  // `size` bytes of `source` at where.fileOffset (fewer at its end).
  PageImage Read(const ByteSource& source, const PageLocation& where, size_t size);

 private:
  struct Entry {
    PageLocation where;
    size_t size = 0;
    std::shared_ptr<std::string> bytes;
    uint64_t lastUse = 0;
  };
  std::mutex lock_;
  size_t capacity_;
  uint64_t clock_ = 0;
  std::vector<Entry> entries_;

  Entry* Find(const PageLocation& where, size_t size);
  // The entry to read a new page into, its buffer its own: a free slot, else
  // the least recently used.
  Entry* Slot();
};

#endif
