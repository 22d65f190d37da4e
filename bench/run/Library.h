#ifndef YH_BENCH_RUN_LIBRARY_H
#define YH_BENCH_RUN_LIBRARY_H

#include <libYH.h>

#include <cstddef>
#include <string>

namespace bench {

constexpr int kContentTypes = ContentWhatsAppCalls + 1;

// What the library takes through its public interface, in milliseconds:
// finding the backups, analysing the one found, then the first and the
// second request of every content type in turn.
struct LibraryTimes {
  double discovery = 0;
  double analysis = 0;
  double first[kContentTypes] = {};
  double second[kContentTypes] = {};
  size_t items[kContentTypes] = {};  // entries of the first answer
  // What making the same answer trees costs libplist alone: plist_copy of
  // every answer, node for node, with no reading behind it. Measured only
  // when asked for, in a run of its own: a copy doubles the memory held.
  double answerTrees = 0;
  double trees[kContentTypes] = {};  // of each content type, both requests
  // Resident memory in MB: what AnalyzeBackup keeps (after it, once the
  // allocator gave back what is free, minus before it), and the largest
  // that a copy of one answer took (measured with the copies).
  double indexMb = 0;
  double largestTreeMb = 0;
  int largestTreeType = 0;
  double Total() const;
};

// Which service table the measure drives.
enum class Service { Described, Current };

// `folder` holds the backup folder; false when no backup is found there or
// its analysis fails.
bool MeasureLibrary(const std::string& folder, Service service, bool copyAnswers, LibraryTimes* times);

}  // namespace bench

#endif
