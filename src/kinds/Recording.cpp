#include "kinds/Recording.h"

#include <optional>
#include <string>
#include <vector>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/DateHelpers.h"
#include "common/FileHelpers.h"
#include "common/TextHelpers.h"
#include "kinds/ColumnDate.h"
#include "kinds/MediaLocator.h"
#include "kinds/SourceFiles.h"

namespace {

const SourcePaths kRecordingSource{"Media/Recordings/Recordings.db", "Media/Recordings/Recordings.db"};

// Device paths begin with "/var/mobile/"; the index knows them without it.
const std::string::size_type kHomePrefixLength = 12;

int RecordingDbCallback(void* records, int /*columns*/, char** values, char** /*names*/) {
  const std::string devicePath = GetEmptyStringIsNull(values[2]);
  const std::string::size_type slash = devicePath.rfind('/');
  if (slash == std::string::npos || slash + 1 == devicePath.size()) return 0;

  auto* memo = new VoiceMemos;
  memo->date = DateText2001(values[0]);
  memo->duration = DurationOf(static_cast<uint32_t>(GetZeroIntIsNull(values[1])));
  memo->title = GetEmptyStringIsNull(values[3]);
  memo->devicePath = devicePath;
  memo->name = devicePath.substr(slash + 1);
  static_cast<std::vector<VoiceMemos*>*>(records)->push_back(memo);
  return 0;
}

std::optional<ReadableFile> FirstContaining(const MediaLocator& locator, const std::string& needle) {
  std::optional<ReadableFile> first;
  locator.ForEachContaining(needle, [&first](const ReadableFile& stored) {
    first = stored;
    return false;
  });
  return first;
}

}  // namespace

void Recording::AddRecordingList(const char* path) {
  Database db(path);
  if (!db.IsOpen()) return;
  db.Exec("select ZDATE,ZDURATION,ZPATH,ZCUSTOMLABEL from ZRECORDING", RecordingDbCallback, &records_);
}

bool Recording::Locate(const MediaLocator& locator, BackupType backupType, VoiceMemos& memo) {
  std::optional<ReadableFile> stored;
  if (backupType == BackupType::ManifestDb) {
    if (memo.devicePath.size() < kHomePrefixLength) return false;
    stored = locator.FindExact(memo.devicePath.substr(kHomePrefixLength));
  } else {
    // Only the first file whose path holds the name is tried, even when a
    // later one would fit better.
    stored = FirstContaining(locator, memo.name);
  }
  if (!stored) return false;
  memo.path += stored->path;
  memo.size = locator.SizeNow(*stored);
  return memo.size != 0;
}

void Recording::ReadBackup(BackupDevice* device) {
  for (const std::string& path : SourceFiles(device, kRecordingSource)) AddRecordingList(path.c_str());
  const MediaLocator locator(device);
  const BackupType backupType = *BackupTypeOf(device);
  KeepRecordsIf([&](VoiceMemos& memo) {
    VqCheckAlive(&memo);
    return Locate(locator, backupType, memo);
  });
}

void Recording::FillDict(const VoiceMemos& memo, plist_t dict) const { InsertVoiceMemoKeys(memo, dict); }
