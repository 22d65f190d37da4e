#include "support/TreeSnapshot.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

namespace fs = std::filesystem;

char TypeLetter(mode_t mode) {
  if (S_ISDIR(mode)) return 'd';
  if (S_ISREG(mode)) return 'f';
  if (S_ISLNK(mode)) return 'l';
  return 'o';
}

std::string ContentHash(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return "unreadable";
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return Sha1Hex(bytes.str());
}

std::string Describe(const fs::path& entry, const std::string& name) {
  struct stat info {};
  if (lstat(entry.c_str(), &info) != 0) return name + " vanished";
  std::ostringstream line;
  line << name << ' ' << TypeLetter(info.st_mode) << ' ' << info.st_size << ' '
       << info.st_mtim.tv_sec * 1000000000LL + info.st_mtim.tv_nsec << ' ' << std::oct << (info.st_mode & 07777)
       << std::dec;
  if (S_ISREG(info.st_mode)) line << ' ' << ContentHash(entry);
  return line.str();
}

}  // namespace

std::string SnapshotTree(const std::string& folder) {
  std::vector<std::string> lines{Describe(folder, ".")};
  std::error_code error;
  for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    lines.push_back(Describe(it->path(), it->path().lexically_relative(folder).string()));
  }
  std::sort(lines.begin(), lines.end());
  std::string snapshot;
  for (const std::string& line : lines) snapshot += line + "\n";
  return snapshot;
}

}  // namespace yhtest
