#ifndef YH_BENCH_RUN_INDEXLISTING_H
#define YH_BENCH_RUN_INDEXLISTING_H

#include <map>
#include <string>
#include <vector>

namespace bench {

// Stored files by device-relative path, each path's files in index order.
using StoredFiles = std::map<std::string, std::vector<std::string>>;

// The least any reader of a backup does: list every index row and test
// whether its stored file exists. Returns the existing stored files whose
// relative path is one of `wanted`. `folder` ends in "/".
StoredFiles ListManifestDb(const std::string& folder, const std::vector<std::string>& wanted);
StoredFiles ListMbdb(const std::string& folder, const std::vector<std::string>& wanted);

}  // namespace bench

#endif
