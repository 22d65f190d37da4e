#ifndef YH_FUZZ_ROWTARGETS_H
#define YH_FUZZ_ROWTARGETS_H

#include <string>
#include <vector>

#include "libYH.h"
#include "support/BackupBuilder.h"

namespace yhfuzz {

struct KnownTable {
  std::string name;
  std::vector<std::string> columns;
};

// One database the library queries: where the sample backup keeps it, the
// tables and columns its queries (current and older schemas) name, and the
// content types whose row callbacks read it.
struct RowTarget {
  yhtest::IndexKind kind;
  std::string domain;
  std::string path;  // empty for the backup index itself
  std::vector<KnownTable> tables;
  std::vector<iDeviceContentType> feeds;
};

const std::vector<RowTarget>& RowTargets();

// Texts the queries compare with or look up (paths, file ids, labels,
// calendar names, numbers), which random bytes would hardly ever spell.
const std::vector<std::string>& RowWords();

}  // namespace yhfuzz

#endif
