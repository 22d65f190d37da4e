#include "IndexRows.h"

namespace bench {
namespace {

// Every folder above `path`, outermost first, starting with the domain's root ("").
template <class Visit>
void ForEachFolder(const std::string& path, Visit visit) {
  visit(std::string());
  for (size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    visit(path.substr(0, slash));
  }
}

}  // namespace

void IndexRows::File(const std::string& domain, const std::string& path, uint64_t size) {
  files_.insert(domain + "\n" + path);
  AddFolders(domain, path);
  builder_.AddSparseFile(domain, path, size);
  ++count_;
}

void IndexRows::FileWith(const std::string& domain, const std::string& path, const std::string& contents) {
  files_.insert(domain + "\n" + path);
  AddFolders(domain, path);
  builder_.AddFile(domain, path, contents);
  ++count_;
}

void IndexRows::Database(const std::string& domain, const std::string& path, const std::string& sql) {
  files_.insert(domain + "\n" + path);
  AddFolders(domain, path);
  builder_.AddDatabase(domain, path, sql);
  ++count_;
}

size_t IndexRows::RowsFor(const std::string& domain, const std::string& path) const {
  size_t rows = 1;
  ForEachFolder(path, [&](const std::string& folder) { rows += folders_.count(domain + "\n" + folder) ? 0 : 1; });
  return rows;
}

void IndexRows::AddFolders(const std::string& domain, const std::string& path) {
  ForEachFolder(path, [&](const std::string& folder) {
    if (!folders_.insert(domain + "\n" + folder).second) return;
    builder_.AddDirectory(domain, folder);
    ++count_;
  });
}

}  // namespace bench
