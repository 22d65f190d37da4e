#ifndef YH_BENCH_MAKE_INDEXROWS_H
#define YH_BENCH_MAKE_INDEXROWS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>

#include "support/BackupBuilder.h"

namespace bench {

// The rows of a backup index as devices write them: each file under its
// domain, and every folder above it (the domain's root included) as a
// directory row of its own, written before the first file that needs it.
class IndexRows {
 public:
  explicit IndexRows(yhtest::BackupBuilder& builder) : builder_(builder) {}

  // A file the library only measures: `size` zero bytes, written sparse.
  void File(const std::string& domain, const std::string& path, uint64_t size);
  // A file the library reads.
  void FileWith(const std::string& domain, const std::string& path, const std::string& contents);
  void Database(const std::string& domain, const std::string& path, const std::string& sql);
  // The rows a file at `path` would add: itself and the folders not yet written.
  size_t RowsFor(const std::string& domain, const std::string& path) const;
  bool Holds(const std::string& domain, const std::string& path) const {
    return files_.count(domain + "\n" + path) != 0;
  }
  size_t Count() const { return count_; }

 private:
  void AddFolders(const std::string& domain, const std::string& path);

  yhtest::BackupBuilder& builder_;
  // Each entry is the domain, "\n" and the relative path.
  std::unordered_set<std::string> folders_;
  std::unordered_set<std::string> files_;
  size_t count_ = 0;
};

}  // namespace bench

#endif
