#ifndef YH_TESTS_INDEX_STOREDNAMES_H
#define YH_TESTS_INDEX_STOREDNAMES_H

#include <string>
#include <string_view>
#include <vector>

#include "index/IndexReader.h"

namespace yhtest {

// What the reader's interface gives for the records at exactly `path`, in
// index order: the stored name of each (what a kind reading that database
// opens, below the backup folder).
inline std::vector<std::string> StoredNamesAt(const IndexReader& reader, std::string_view path) {
  std::vector<std::string> names;
  for (size_t position = 0; position < reader.RecordCount(); ++position) {
    if (reader.PathAt(position) == path) names.push_back(reader.StoredNameAt(position));
  }
  return names;
}

}  // namespace yhtest

#endif
