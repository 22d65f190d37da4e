#ifndef YH_INDEX_MBDB_H
#define YH_INDEX_MBDB_H

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/Folder.h"
#include "common/VqBase.h"
#include "index/IndexReader.h"
#include "index/PathIndex.h"

// Reader of the binary index of older backups. Stored files lie flat in the
// backup folder, named by the SHA-1 of domain + "-" + relative path.
class Mbdb : public IndexReader {
 public:
  class MBFileRecord : public VqBase {
   public:
    class Property : public VqBase {
     public:
      std::string name;
      std::string value;
    };

    MBFileRecord() = default;
    ~MBFileRecord() override;

    std::string storedName;  // 40 lower-case hex digits
    std::string domain;
    std::string path;
    std::string linkTarget;
    std::string dataHash;
    std::string encryptionKey;
    std::string fixedBlockText;
    uint16_t mode = 0;
    int32_t inodeHigh = 0;
    uint32_t inodeLow = 0;
    uint32_t userId = 0;
    uint32_t groupId = 0;
    struct tm modified {};
    struct tm accessed {};
    struct tm changed {};
    int32_t size = 0;  // low 32 bits of the stored 64-bit size, kept narrow on purpose
    uint8_t protectionClass = 0;
    uint8_t propertyCount = 0;
    Property* properties = nullptr;
    // The stored file as found when the index was read: the media kinds
    // report its size without asking the file system again.
    Folder::Entry stored{};
  };

  using KeyList = std::vector<std::string>;
  // Looked up by exact path only; hashing spares the comparisons of long
  // shared prefixes that an ordered map makes on every insertion. Keys view
  // the records' own paths, which live as long as the reader.
  using PathMap = std::unordered_map<std::string_view, MBFileRecord*>;
  using ContentList = std::vector<MBFileRecord*>;

  Mbdb() = default;
  ~Mbdb() override;

  // 1 when the index opened with the right signature (also when its reading
  // stopped early), 0 otherwise. `path` is the backup folder, ending in "/".
  int32_t ReadMBDB(const char* path);

  std::string GetBackupPath() const { return backupPath_; }
  ContentList* GetContentList() { return &contentList_; }
  PathMap* GetQueryPathKeyMap() { return &pathMap_; }

  // The content list's device paths indexed for substring search, made on
  // the first call and kept: every media kind searches the same paths.
  const PathIndex& GetPathIndex();

  KeyList* GetCalendarKey() { return &calendarKey_; }
  KeyList* GetCallKey() { return &callKey_; }
  KeyList* GetCallStoreKey() { return &callStoreKey_; }
  KeyList* GetContactKey() { return &contactKey_; }
  KeyList* GetNoteKey() { return &noteKey_; }
  KeyList* GetNoteStoreKey() { return &noteStoreKey_; }
  KeyList* GetPhotoKey() { return &photoKey_; }
  KeyList* GetRecordingKey() { return &recordingKey_; }
  KeyList* GetSafariHistoryKey() { return &safariHistoryKey_; }
  KeyList* GetSafariBookmarkKey() { return &safariBookmarkKey_; }
  KeyList* GetSmsKey() { return &smsKey_; }

  static char toHex(int value);
  static char toHexLow(int value);
  static int fromHex(char c);
  static std::string toHex(const unsigned char* data, int length, const int* groups, int groupCount);

  static bool getS(FILE* file, std::string* out);
  static bool getD(FILE* file, std::string* out);

 private:
  // The key list a known database path feeds, or NULL.
  KeyList* KeyListFor(const std::string& path);
  void Keep(MBFileRecord* record);
  void MapPaths();

  std::string backupPath_;
  std::unique_ptr<const PathIndex> pathIndex_;
  ContentList contentList_;
  PathMap pathMap_;
  KeyList calendarKey_;
  KeyList callKey_;
  KeyList callStoreKey_;
  KeyList contactKey_;
  KeyList noteKey_;
  KeyList noteStoreKey_;
  KeyList photoKey_;
  KeyList recordingKey_;
  KeyList safariHistoryKey_;
  KeyList safariBookmarkKey_;
  KeyList smsKey_;
};

#endif
