#include "index/PathIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/RandomPaths.h"

namespace {

using yhtest::RandomPaths;

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
