#include "index/PathIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The straightforward scan the index stands in for: every text, in order,
// tested for the needle, until the visitor says stop.
std::vector<size_t> Scan(const std::vector<std::string>& texts, const std::string& needle, size_t stopAfter) {
  std::vector<size_t> visited;
  for (size_t position = 0; position < texts.size(); ++position) {
    if (texts[position].find(needle) == std::string::npos) continue;
    visited.push_back(position);
    if (visited.size() == stopAfter) break;
  }
  return visited;
}

std::vector<size_t> Indexed(const PathIndex& index, const std::string& needle, size_t stopAfter) {
  std::vector<size_t> visited;
  index.ForEachContaining(needle, [&](size_t position) {
    visited.push_back(position);
    return visited.size() != stopAfter;
  });
  return visited;
}

PathIndex IndexOf(const std::vector<std::string>& texts) {
  return PathIndex(std::vector<std::string_view>(texts.begin(), texts.end()));
}

// Path pieces that overlap on purpose: names inside names, names inside
// folders, numbers that recur.
const char* const kPieces[] = {"1.m4a",         "11.m4a",     "111.m4a", "1",        "11",
                               "Media",         "Recordings", "DCIM",    "100APPLE", "IMG_0001.JPG",
                               "IMG_00011.JPG", "a",          "aa",      "aaaa",     "PhotoData",
                               "Sync",          "x.m4a.m4a",  "",        "é",        "0001",
                               "Thumbnails"};
const size_t kPieceCount = sizeof kPieces / sizeof *kPieces;

class RandomPaths {
 public:
  explicit RandomPaths(unsigned seed) : engine_(seed) {}

  size_t Below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(engine_); }

  std::string Path() {
    std::string path;
    const size_t depth = Below(5);
    for (size_t level = 0; level <= depth; ++level)
      path += (level ? "/" : "") + std::string(kPieces[Below(kPieceCount)]);
    return path;
  }

  // Paths with repeats: a later row may name a path met before.
  std::vector<std::string> Paths(size_t count) {
    std::vector<std::string> paths;
    for (size_t i = 0; i < count; ++i)
      paths.push_back(!paths.empty() && Below(5) == 0 ? paths[Below(paths.size())] : Path());
    return paths;
  }

  // Needles of every sort: pieces, whole paths, any slice of a path (across
  // folder boundaries too), long slices (the index narrows the search only
  // for needles of eleven bytes or more), runs of one letter, short and
  // empty needles, and texts found nowhere.
  std::string Needle(const std::vector<std::string>& paths) {
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
      case 6: {
        if (paths.empty()) return std::string();
        const std::string& path = paths[Below(paths.size())];
        const size_t length = std::min(path.size(), 11 + Below(8));
        return path.substr(Below(path.size() - length + 1), length);
      }
      case 7:
        return std::string(8 + Below(12), 'a');
      case 4:
        return "/" + std::string(kPieces[Below(kPieceCount)]) + "/";
      default:
        return Path() + "zz";
    }
  }

 private:
  std::mt19937 engine_;
};

TEST(PathIndex, VisitsWhatTheScanVisitsOnThousandsOfRandomPathLists) {
  RandomPaths random(20240601);
  for (int list = 0; list < 3000; ++list) {
    const std::vector<std::string> paths = random.Paths(random.Below(60));
    const PathIndex index = IndexOf(paths);
    for (int query = 0; query < 20; ++query) {
      const std::string needle = random.Needle(paths);
      // 0 never stops early; 1 is a first-match lookup; more stop part way.
      const size_t stopAfter = random.Below(4);
      ASSERT_EQ(Indexed(index, needle, stopAfter), Scan(paths, needle, stopAfter))
          << "list " << list << ", needle \"" << needle << "\", stop after " << stopAfter;
    }
  }
}

TEST(PathIndex, VisitsWhatTheScanVisitsOnLargeLists) {
  // Enough text for many buckets, so that lists are short and rarely shared.
  RandomPaths random(7);
  for (int list = 0; list < 5; ++list) {
    const std::vector<std::string> paths = random.Paths(20000);
    const PathIndex index = IndexOf(paths);
    for (int query = 0; query < 200; ++query) {
      const std::string needle = random.Needle(paths);
      ASSERT_EQ(Indexed(index, needle, 0), Scan(paths, needle, 0)) << "needle \"" << needle << "\"";
    }
  }
}

TEST(PathIndex, ANameInsideALongerNameMatchesBoth) {
  const std::vector<std::string> paths = {"Media/Recordings/11.m4a", "Media/Recordings/1.m4a"};
  const PathIndex index = IndexOf(paths);
  EXPECT_EQ(Indexed(index, "1.m4a", 0), (std::vector<size_t>{0, 1}));
  EXPECT_EQ(Indexed(index, "1.m4a", 1), (std::vector<size_t>{0}));
  EXPECT_EQ(Indexed(index, "11.m4a", 0), (std::vector<size_t>{0}));
}

TEST(PathIndex, AnEmptyNeedleMatchesEveryPathEvenAnEmptyOne) {
  const std::vector<std::string> paths = {"", "a", "Library/SMS/sms.db", ""};
  EXPECT_EQ(Indexed(IndexOf(paths), "", 0), (std::vector<size_t>{0, 1, 2, 3}));
}

TEST(PathIndex, RepeatedPathsAreEachVisited) {
  const std::vector<std::string> paths = {"Media/DCIM/100APPLE/IMG_0001.JPG", "Media/x",
                                          "Media/DCIM/100APPLE/IMG_0001.JPG"};
  EXPECT_EQ(Indexed(IndexOf(paths), "DCIM/100APPLE/IMG_0001.JPG", 0), (std::vector<size_t>{0, 2}));
}

TEST(PathIndex, ShortNeedlesAndNeedlesLongerThanEveryPath) {
  const std::vector<std::string> paths = {"ab", "abc", "abcd", "xabcdx"};
  const PathIndex index = IndexOf(paths);
  EXPECT_EQ(Indexed(index, "abc", 0), (std::vector<size_t>{1, 2, 3}));
  EXPECT_EQ(Indexed(index, "abcd", 0), (std::vector<size_t>{2, 3}));
  EXPECT_EQ(Indexed(index, "xabcdxy", 0), (std::vector<size_t>{}));
}

TEST(PathIndex, NoPathsNoMatches) {
  EXPECT_EQ(Indexed(IndexOf({}), "", 0), (std::vector<size_t>{}));
  EXPECT_EQ(Indexed(IndexOf({}), "Media", 0), (std::vector<size_t>{}));
}

}  // namespace
