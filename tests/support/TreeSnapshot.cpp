#include "support/TreeSnapshot.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

namespace fs = std::filesystem;

char TypeLetter(const platform::PathInfo& info) {
  if (info.link) return 'l';
  if (info.folder) return 'd';
  if (info.regular) return 'f';
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
  platform::PathInfo info;
  if (!platform::StatNoFollow(entry.string(), &info)) return name + " vanished";
  std::ostringstream line;
  line << name << ' ' << TypeLetter(info) << ' ' << info.size << ' ' << info.modified << ' ' << std::oct
       << info.permissions << std::dec;
  if (info.regular && !info.link) line << ' ' << ContentHash(entry);
  return line.str();
}

}  // namespace

std::string SnapshotTree(const std::string& folder) {
  std::vector<std::string> lines{Describe(folder, ".")};
  std::error_code error;
  for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    lines.push_back(Describe(it->path(), it->path().lexically_relative(folder).generic_string()));
  }
  std::sort(lines.begin(), lines.end());
  std::string snapshot;
  for (const std::string& line : lines) snapshot += line + "\n";
  return snapshot;
}

}  // namespace yhtest
