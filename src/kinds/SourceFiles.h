#ifndef YH_KINDS_SOURCEFILES_H
#define YH_KINDS_SOURCEFILES_H

#include <string>
#include <vector>

#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "libYH.h"

// Where the stored files of a Manifest.mbdb backup are looked for: the
// reader's folder (the rule for most databases) or the device record's.
enum class MbdbFolder { Reader, Device };

// Which key list a kind reads on each kind of index. A null accessor means
// the kind has no source of that sort on that kind of backup.
struct KeySource {
  ManifestDb::KeyList* (ManifestDb::*manifestDb)();
  Mbdb::KeyList* (Mbdb::*mbdb)();
  MbdbFolder mbdbFolder = MbdbFolder::Reader;
};

// The files that hold a kind's database, in key-list order. The two index
// kinds take the backup folder from different places on purpose: a
// Manifest.db backup from the device record (folder + first two characters
// of the key + "/" + key), a Manifest.mbdb backup from its reader (folder +
// key) unless the source names the device record's folder. Any other backup
// type has no files.
std::vector<std::string> SourceFiles(const BackupDevice* device, const KeySource& source);

// The stored file of a Manifest.db fileID below a backup folder ending in "/".
std::string ManifestDbStoredPath(const std::string& backupFolder, const std::string& fileID);

#endif
