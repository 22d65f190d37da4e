#include "recovery/PageCache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

// Bytes read as from a file: copied into the reader's buffer, each read counted.
class CountedBytes : public ByteSource {
 public:
  explicit CountedBytes(std::string bytes) : bytes_(std::move(bytes)) {}
  uint64_t Size() const override { return bytes_.size(); }
  bool InMemory() const override { return false; }
  std::string_view Read(uint64_t offset, size_t size, std::string* buffer) const override {
    ++reads;
    buffer->assign(MemoryBytes(bytes_).Read(offset, size, nullptr));
    return *buffer;
  }
  mutable int reads = 0;

 private:
  std::string bytes_;
};

PageLocation At(uint32_t number) { return {number, StoredIn::Database, (number - 1) * uint64_t{4}}; }

TEST(PageCache, ReadsAPageMetAgainSoonOnce) {
  const CountedBytes file("aaaabbbbcccc");
  PageCache cache(2);
  EXPECT_EQ(cache.Read(file, At(2), 4).bytes, "bbbb");
  EXPECT_EQ(cache.Read(file, At(2), 4).bytes, "bbbb");
  EXPECT_EQ(file.reads, 1);
  EXPECT_EQ(cache.Read(file, At(3), 4).bytes, "cccc");
  EXPECT_EQ(cache.Read(file, At(3), 4).bytes.size(), 4u) << "the last page is whole";
  EXPECT_EQ(file.reads, 2);
}

TEST(PageCache, KeepsNoMoreBuffersThanItsCapacity) {
  std::string bytes;
  for (char c = 'a'; c <= 'z'; ++c) bytes += std::string(4, c);
  const CountedBytes file(bytes);
  PageCache cache(3);
  std::vector<std::weak_ptr<const std::string>> buffers;
  for (uint32_t number = 1; number <= 26; ++number) {
    const PageImage page = cache.Read(file, At(number), 4);
    EXPECT_EQ(page.bytes, std::string(4, static_cast<char>('a' + number - 1)));
    buffers.push_back(page.holder);
  }
  std::set<const std::string*> alive;
  for (const auto& buffer : buffers) {
    if (const auto held = buffer.lock()) alive.insert(held.get());
  }
  EXPECT_LE(alive.size(), 3u) << "a buffer let go serves again";
}

TEST(PageCache, AnImageKeepsItsBytesAfterTheCacheLetThemGo) {
  const CountedBytes file("aaaabbbbcccc");
  PageCache cache(1);
  const PageImage first = cache.Read(file, At(1), 4);
  cache.Read(file, At(2), 4);
  cache.Read(file, At(3), 4);
  EXPECT_EQ(first.bytes, "aaaa");
}

TEST(PageCache, ViewsBytesInMemoryInPlace) {
  const std::string bytes = "aaaabbbb";
  const MemoryBytes memory(bytes);
  PageCache cache(1);
  const PageImage page = cache.Read(memory, At(2), 4);
  EXPECT_EQ(page.bytes.data(), bytes.data() + 4);
  EXPECT_EQ(page.holder, nullptr);
  EXPECT_TRUE(cache.Read(memory, At(3), 4).bytes.empty()) << "past the end";
}

}  // namespace

// Pages are carved on two threads that share one cache: each gets the page
// it asked for, whole, however their reads interleave.
TEST(PageCacheThreads, TwoThreadsEachGetTheirOwnPages) {
  std::string bytes;
  for (char page = 'a'; page <= 'z'; ++page) bytes += std::string(4, page);
  const MemoryBytes memory(bytes);
  class FromFile : public ByteSource {
   public:
    explicit FromFile(const MemoryBytes& bytes) : bytes_(bytes) {}
    uint64_t Size() const override { return bytes_.Size(); }
    bool InMemory() const override { return false; }
    // Slowly, a byte at a time, so that a read that overlapped another's
    // in the same buffer would show.
    std::string_view Read(uint64_t offset, size_t size, std::string* buffer) const override {
      buffer->assign(size, '\0');
      const std::string_view wanted = bytes_.Read(offset, size, nullptr);
      for (size_t at = 0; at < wanted.size(); ++at) {
        (*buffer)[at] = wanted[at];
        std::this_thread::yield();
      }
      return *buffer;
    }

   private:
    const MemoryBytes& bytes_;
  } file(memory);
  PageCache cache(3);
  std::atomic<int> wrong{0};
  const auto read = [&](uint32_t first) {
    for (int round = 0; round < 2000; ++round) {
      const uint32_t number = first + static_cast<uint32_t>(round % 13);
      const PageImage page = cache.Read(file, At(number), 4);
      if (page.bytes != std::string(4, static_cast<char>('a' + number - 1))) ++wrong;
    }
  };
  std::thread other(read, 1);
  read(14);
  other.join();
  EXPECT_EQ(wrong.load(), 0);
}
