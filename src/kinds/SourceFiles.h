#ifndef YH_KINDS_SOURCEFILES_H
#define YH_KINDS_SOURCEFILES_H

#include <string>
#include <vector>

#include "libYH.h"

// The device path of a kind's database on each kind of index. NULL means
// the kind has no source of that sort on that kind of backup.
struct SourcePaths {
  const char* manifestDb;
  const char* mbdb;
};

// Where the files that hold a kind's database are read: every stored file at
// the device path of the record's index kind, whatever its domain, in index
// order. Any other backup type has no files.
std::vector<std::string> SourceFiles(const BackupDevice* device, const SourcePaths& source);

#endif
