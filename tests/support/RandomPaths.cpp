#include "support/RandomPaths.h"

#include <algorithm>

namespace yhtest {
namespace {

const char* const kPieces[] = {"1.m4a",         "11.m4a",     "111.m4a", "1",        "11",
                               "Media",         "Recordings", "DCIM",    "100APPLE", "IMG_0001.JPG",
                               "IMG_00011.JPG", "a",          "aa",      "aaaa",     "PhotoData",
                               "Sync",          "x.m4a.m4a",  "",        "é",        "0001",
                               "Thumbnails"};
const size_t kPieceCount = sizeof kPieces / sizeof *kPieces;

}  // namespace

std::string RandomPaths::Path() {
  std::string path;
  for (size_t level = 0, depth = Below(5); level <= depth; ++level)
    path += (level ? "/" : "") + std::string(kPieces[Below(kPieceCount)]);
  return path;
}

std::vector<std::string> RandomPaths::Paths(size_t count) {
  std::vector<std::string> paths;
  for (size_t i = 0; i < count; ++i)
    paths.push_back(!paths.empty() && Below(5) == 0 ? paths[Below(paths.size())] : Path());
  return paths;
}

std::string RandomPaths::Needle(const std::vector<std::string>& paths) {
  switch (Below(8)) {
    case 0:
      return kPieces[Below(kPieceCount)];
    case 1:
      return paths.empty() ? std::string() : paths[Below(paths.size())];
    case 2: {
      if (paths.empty()) return std::string();
      const std::string& path = paths[Below(paths.size())];
      const size_t from = Below(path.size() + 1);
      return path.substr(from, Below(path.size() - from + 1));
    }
    case 3:
      return std::string(1 + Below(3), "a1/."[Below(4)]);
    case 4:
      return "/" + std::string(kPieces[Below(kPieceCount)]) + "/";
    case 5: {
      if (paths.empty()) return std::string();
      const std::string& path = paths[Below(paths.size())];
      const size_t length = std::min(path.size(), 5 + Below(14));
      return path.substr(Below(path.size() - length + 1), length);
    }
    case 6:
      return std::string(5 + Below(15), 'a');
    default:
      return Path() + "zz";
  }
}

}  // namespace yhtest
