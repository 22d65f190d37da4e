#ifndef YH_TESTS_SUPPORT_TREESNAPSHOT_H
#define YH_TESTS_SUPPORT_TREESNAPSHOT_H

#include <string>

namespace yhtest {

// One line per entry below the folder (the folder itself as "."), sorted:
// relative name, type, size, modification time in nanoseconds, mode bits and,
// for files, the SHA-1 of the contents. Equal snapshots taken before and after
// an operation show that it left the tree untouched.
std::string SnapshotTree(const std::string& folder);

}  // namespace yhtest

#endif
