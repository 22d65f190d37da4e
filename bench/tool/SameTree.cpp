#include "SameTree.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "Fd.h"
#include "platform/FileSystem.h"

namespace bench {

namespace {

const uint64_t kBlock = 1 << 20;

// Where data next lies in either file at or after `offset`; `size` when
// only holes follow in both.
uint64_t NextDataOfEither(int a, int b, uint64_t offset, uint64_t size) {
  uint64_t next = size;
  for (const int fd : {a, b}) {
    if (const auto run = platform::NextData(fd, offset, size)) next = std::min(next, run->start);
  }
  return next;
}

using Entries = std::map<std::string, std::filesystem::file_type>;

// Each entry's path below the root, with its type; nothing when the tree
// cannot be read.
std::optional<Entries> EntriesOf(const std::string& root) {
  Entries entries;
  std::error_code error;
  std::filesystem::recursive_directory_iterator entry(root, error);
  for (; !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error)) {
    const std::filesystem::file_type type = entry->symlink_status(error).type();
    if (error) return std::nullopt;
    entries.emplace(entry->path().lexically_relative(root).string(), type);
  }
  if (error) return std::nullopt;
  return entries;
}

}  // namespace

bool SameFile(const std::string& a, const std::string& b) {
  const yh::Fd first(platform::OpenForReading(a));
  const yh::Fd second(platform::OpenForReading(b));
  platform::PathInfo firstInfo, secondInfo;
  if (!first || !second || !platform::StatOpen(first.Get(), &firstInfo) ||
      !platform::StatOpen(second.Get(), &secondInfo) || firstInfo.size != secondInfo.size) {
    return false;
  }
  const uint64_t size = firstInfo.size;
  std::vector<char> firstBytes(kBlock), secondBytes(kBlock);
  for (uint64_t offset = NextDataOfEither(first.Get(), second.Get(), 0, size); offset < size;
       offset = NextDataOfEither(first.Get(), second.Get(), offset, size)) {
    const uint64_t count = std::min(kBlock, size - offset);
    if (platform::ReadAt(first.Get(), firstBytes.data(), count, offset) != static_cast<long long>(count) ||
        platform::ReadAt(second.Get(), secondBytes.data(), count, offset) != static_cast<long long>(count) ||
        std::memcmp(firstBytes.data(), secondBytes.data(), count) != 0) {
      return false;
    }
    offset += count;
  }
  return true;
}

bool SameTree(const std::string& a, const std::string& b) {
  const std::optional<Entries> entries = EntriesOf(a);
  if (!entries || entries != EntriesOf(b)) return false;
  for (const auto& [name, type] : *entries) {
    const std::filesystem::path first = std::filesystem::path(a) / name;
    const std::filesystem::path second = std::filesystem::path(b) / name;
    if (type == std::filesystem::file_type::regular && !SameFile(first.string(), second.string())) return false;
    std::error_code error;
    if (type == std::filesystem::file_type::symlink &&
        (std::filesystem::read_symlink(first, error) != std::filesystem::read_symlink(second, error) || error)) {
      return false;
    }
  }
  return true;
}

}  // namespace bench
