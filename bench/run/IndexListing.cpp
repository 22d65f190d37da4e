#include "IndexListing.h"

#include <gcrypt.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace bench {
namespace {

bool Exists(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0;
}

void Keep(StoredFiles& found, const std::vector<std::string>& wanted, const std::string& relativePath,
          const std::string& stored) {
  if (std::find(wanted.begin(), wanted.end(), relativePath) != wanted.end()) found[relativePath].push_back(stored);
}

std::string Sha1Hex(const std::string& text) {
  unsigned char digest[20];
  gcry_md_hash_buffer(GCRY_MD_SHA1, digest, text.data(), text.size());
  std::string hex;
  for (const unsigned char byte : digest) {
    hex += "0123456789abcdef"[byte >> 4];
    hex += "0123456789abcdef"[byte & 0xF];
  }
  return hex;
}

// Reads Manifest.mbdb records: five length-prefixed texts, a 40-byte block
// whose last byte counts the properties, then the properties' name and value.
class MbdbCursor {
 public:
  explicit MbdbCursor(const std::string& bytes) : bytes_(bytes), at_(6) {}
  bool AtEnd() const { return at_ >= bytes_.size(); }
  bool Next(std::string* domain, std::string* path) {
    if (!Text(domain) || !Text(path) || !Skip(3)) return false;
    if (at_ + 40 > bytes_.size()) return false;
    const unsigned properties = static_cast<unsigned char>(bytes_[at_ + 39]);
    at_ += 40;
    return Skip(2 * properties);
  }

 private:
  bool Text(std::string* out) {
    if (at_ + 2 > bytes_.size()) return false;
    const size_t length = static_cast<unsigned char>(bytes_[at_]) << 8 | static_cast<unsigned char>(bytes_[at_ + 1]);
    at_ += 2;
    if (length == 0xFFFF) {
      out->clear();
      return true;
    }
    if (at_ + length > bytes_.size()) return false;
    out->assign(bytes_, at_, length);
    at_ += length;
    return true;
  }
  bool Skip(unsigned texts) {
    std::string ignored;
    for (unsigned i = 0; i < texts; ++i) {
      if (!Text(&ignored)) return false;
    }
    return true;
  }

  const std::string& bytes_;
  size_t at_;
};

}  // namespace

StoredFiles ListManifestDb(const std::string& folder, const std::vector<std::string>& wanted) {
  StoredFiles found;
  sqlite3* db = nullptr;
  const std::string uri = "file:" + folder + "Manifest.db?immutable=1";
  if (sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr) == SQLITE_OK) {
    sqlite3_stmt* rows = nullptr;
    sqlite3_prepare_v2(db, "select fileID,domain,relativePath,flags from Files", -1, &rows, nullptr);
    while (rows && sqlite3_step(rows) == SQLITE_ROW) {
      const char* id = reinterpret_cast<const char*>(sqlite3_column_text(rows, 0));
      const char* path = reinterpret_cast<const char*>(sqlite3_column_text(rows, 2));
      if (!id || !*id) continue;
      const std::string fileId = id;
      const std::string stored = folder + fileId.substr(0, 2) + "/" + fileId;
      if (Exists(stored)) Keep(found, wanted, path ? path : "", stored);
    }
    sqlite3_finalize(rows);
  }
  sqlite3_close(db);
  return found;
}

StoredFiles ListMbdb(const std::string& folder, const std::vector<std::string>& wanted) {
  StoredFiles found;
  std::ifstream in(folder + "Manifest.mbdb", std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  MbdbCursor cursor(bytes);
  std::string domain;
  std::string path;
  while (!cursor.AtEnd() && cursor.Next(&domain, &path)) {
    const std::string stored = folder + Sha1Hex(domain + "-" + path);
    if (Exists(stored)) Keep(found, wanted, path, stored);
  }
  return found;
}

}  // namespace bench
