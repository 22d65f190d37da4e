#ifndef YH_INDEX_MANIFESTDB_H
#define YH_INDEX_MANIFESTDB_H

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/Folder.h"
#include "common/VqBase.h"
#include "index/IndexReader.h"
#include "index/PathIndex.h"

// Reader of the SQLite index of newer backups: the Files table maps each
// fileID to a domain and a device-relative path; the stored file lies at
// backup folder + first two characters of fileID + "/" + fileID.
class ManifestDb : public IndexReader {
 public:
  class DBFileRecord : public VqBase {
   public:
    DBFileRecord() = default;
    DBFileRecord(const DBFileRecord& other) = default;
    ~DBFileRecord() override = default;

    std::string fileID;
    std::string relativePath;
    std::string domain;
    int32_t flags = 0;
    // The stored file as found when the index was read: the media kinds
    // report its size without asking the file system again.
    Folder::Entry stored{};
  };

  using KeyList = std::vector<std::string>;
  // Looked up by exact path only; hashing spares the comparisons of long
  // shared prefixes that an ordered map makes on every insertion. Keys view
  // the records' own paths, which live as long as the reader.
  using PathMap = std::unordered_map<std::string_view, DBFileRecord*>;
  using ContentList = std::list<DBFileRecord*>;

  ManifestDb() = default;
  ~ManifestDb() override;

  // 1 when the Files table was read to the end, 0 otherwise. `path` is the
  // backup folder and must end in "/".
  uint32_t ReadDb(const char* path);

  PathMap* GetQueryPathKeyMap() { return &pathMap_; }
  ContentList* GetContentList() { return &contentList_; }

  // The content list's device paths indexed for substring search, made on
  // the first call and kept: every media kind searches the same paths.
  const PathIndex& GetPathIndex();

  KeyList* GetCalendarKey() { return &calendarKey_; }
  KeyList* GetCallHistoryDbKey() { return &callHistoryDbKey_; }
  KeyList* GetCallHistoryStoreDbKey() { return &callHistoryStoreDbKey_; }
  KeyList* GetContactKey() { return &contactKey_; }
  KeyList* GetNoteKey() { return &noteKey_; }
  KeyList* GetNoteStoreKey() { return &noteStoreKey_; }
  KeyList* GetPhotoKey() { return &photoKey_; }
  KeyList* GetRecordingKey() { return &recordingKey_; }
  KeyList* GetSafariHistoryPlistKey() { return &safariHistoryPlistKey_; }
  KeyList* GetSafariHistoryDbKey() { return &safariHistoryDbKey_; }
  KeyList* GetSafariBookmarkKey() { return &safariBookmarkKey_; }
  KeyList* GetSmsKey() { return &smsKey_; }

  static int ManifestDbCallback(void* context, int columnCount, char** values, char** columnNames);

 private:
  // The key list a known database path feeds, or NULL.
  KeyList* KeyListFor(const std::string& relativePath);
  void MapPaths();

  std::string backupPath_;
  std::unique_ptr<const PathIndex> pathIndex_;
  const Folder* folder_ = nullptr;  // the backup folder, held while the rows are read
  PathMap pathMap_;
  ContentList contentList_;
  KeyList calendarKey_;
  KeyList callHistoryDbKey_;
  KeyList callHistoryStoreDbKey_;
  KeyList contactKey_;
  KeyList noteKey_;
  KeyList noteStoreKey_;
  KeyList photoKey_;
  KeyList recordingKey_;
  KeyList safariHistoryPlistKey_;
  KeyList safariHistoryDbKey_;
  KeyList safariBookmarkKey_;
  KeyList smsKey_;
};

#endif
