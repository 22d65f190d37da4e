#ifndef YH_BENCH_RUN_LIBRARY_H
#define YH_BENCH_RUN_LIBRARY_H

#include <cstddef>
#include <string>

namespace bench {

constexpr int kContentTypes = 11;

// What the library takes through its public interface, in milliseconds:
// finding the backups, analysing the one found, then the first and the
// second request of every content type in turn.
struct LibraryTimes {
  double discovery = 0;
  double analysis = 0;
  double first[kContentTypes] = {};
  double second[kContentTypes] = {};
  size_t items[kContentTypes] = {};  // entries of the first answer
  double Total() const;
};

// `folder` holds the backup folder; false when no backup is found there or
// its analysis fails.
bool MeasureLibrary(const std::string& folder, LibraryTimes* times);

}  // namespace bench

#endif
