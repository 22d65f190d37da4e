#ifndef YH_TESTS_SUPPORT_RANDOMPATHS_H
#define YH_TESTS_SUPPORT_RANDOMPATHS_H

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace yhtest {

// Random device paths and needles for comparing a search with the plain
// scan it stands in for. The paths are made of pieces that overlap on
// purpose: names inside names (1.m4a, 11.m4a), names inside folders, numbers
// that recur.
class RandomPaths {
 public:
  explicit RandomPaths(unsigned seed) : engine_(seed) {}

  // A number from 0 to n - 1; n > 0.
  size_t Below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(engine_); }

  // One to five pieces joined by "/".
  std::string Path();
  // Paths with repeats: a later one may be a path met before.
  std::vector<std::string> Paths(size_t count);
  // Needles of every sort: pieces, whole paths, any slice of a path (across
  // folder boundaries too), slices on both sides of the length from which
  // the path index narrows a search, runs of one letter, short and empty
  // needles, and texts found nowhere.
  std::string Needle(const std::vector<std::string>& paths);

 private:
  std::mt19937 engine_;
};

}  // namespace yhtest

#endif
