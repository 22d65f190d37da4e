#include "index/ManifestDb.h"

#include <cstring>
#include <string_view>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/FileHelpers.h"
#include "platform/Folder.h"
#include "common/TextHelpers.h"
#include "index/StaysInBackup.h"
#include "index/StoredFileTests.h"

namespace {

const char kFilesQuery[] = "select fileID,domain,relativePath,flags from Files";

// A column's text as it stands; NULL reads as empty.
std::string_view ColumnText(const char* value) { return value ? value : std::string_view(); }

}  // namespace

ManifestDbRecord::ManifestDbRecord(const char* fileID, const char* domain, std::string_view relativePath,
                                   int32_t flags, Folder::Entry stored)
    : flags_(flags),
      relativePath_(relativePath.data()),
      domain_(domain),
      storedSize_(stored.size),
      relativePathSize_(static_cast<uint32_t>(relativePath.size())),
      fileId_{},
      packed_(IsHexName(fileID)),
      storedRegular_(stored.regular) {
  if (packed_) {
    fileId_ = HexNameToBytes(fileID);
  } else {
    std::memcpy(fileId_.data(), &fileID, sizeof fileID);
  }
}

const char* ManifestDbRecord::FileIdText() const {
  const char* text = nullptr;
  std::memcpy(&text, fileId_.data(), sizeof text);
  return text;
}

uint32_t ManifestDb::ReadDb(const char* path, const std::string& index) {
  backupPath_ = path;
  Database database(index.empty() ? std::string(path) + "Manifest.db" : index);
  const Folder folder(backupPath_);
  StoredFileTests<Row> tests(
      folder, [this](Row row, const Folder::Entry& entry) { Keep(std::move(row), entry); }, GetTestThreads());
  Reading reading{this, &tests};
  const bool read = database.Exec(kFilesQuery, ManifestDbCallback, &reading);
  // Rows read before a failed read are kept too.
  tests.Finish();
  MapPaths();
  return read ? 1 : 0;
}

int ManifestDb::ManifestDbCallback(void* context, int, char** values, char**) {
  ManifestDb* const reader = static_cast<Reading*>(context)->reader;
  // Design decision: an empty fileID counts as none. It would name the backup
  // folder itself, which always exists, and every kept record has a fileID.
  if (values[0] == nullptr || values[0][0] == '\0') return 0;
  const std::string_view fileId = values[0];
  if (!StaysInBackup(fileId)) return 0;
  // substr takes what there is of a fileID shorter than two characters. The
  // text is the reader's, so that its room serves every row.
  const std::string& stored = StoredName(fileId, reader->storedName_);
  // The row waits in one text for its file's test; nothing of it is kept
  // unless the file exists.
  const std::string_view domain = ColumnText(values[1]);
  const std::string_view path = ColumnText(values[2]);
  Row row;
  row.texts.reserve(fileId.size() + 1 + domain.size() + path.size());
  row.texts.append(fileId).append(1, '\0').append(domain).append(path);
  row.fileIdSize = static_cast<uint32_t>(fileId.size());
  row.domainSize = static_cast<uint32_t>(domain.size());
  row.flags = GetZeroIntIsNull(values[3]);
  static_cast<Reading*>(context)->tests->Add(std::move(row), stored);
  return 0;
}

void ManifestDb::Keep(Row row, const Folder::Entry& entry) {
  // The reader owns its records; extractors use them only while the backup
  // record that owns the reader lives, and copy whatever they keep longer.
  // A fileID of hex digits is kept as bytes, so only another one is stored
  // (with its closing zero byte).
  const std::string_view texts = row.texts;
  const std::string_view fileId = texts.substr(0, row.fileIdSize);
  const std::string_view domain = texts.substr(row.fileIdSize + 1, row.domainSize);
  const std::string_view path = texts.substr(row.fileIdSize + 1 + row.domainSize);
  const char* id = IsHexName(fileId) ? row.texts.c_str() : texts_.Add({row.texts.data(), fileId.size() + 1}).data();
  DBFileRecord* record = records_.Add(id, domains_.Intern(domain), texts_.Add(path), row.flags, entry);
  RecordIndex::Keep(record);
}

std::string& ManifestDb::StoredName(std::string_view fileId, std::string& name) {
  return name.assign(fileId.substr(0, 2)).append(GetPathSeperatorLine()).append(fileId);
}
