#ifndef YH_TOOL_TESTS_MEDIA_MEDIABACKUP_H
#define YH_TOOL_TESTS_MEDIA_MEDIABACKUP_H

#include <string>

namespace yhmedia {

// The folder name of the backup WriteMediaBackup writes.
extern const char kMediaBackupFolder[];

// A Manifest.db backup whose media are real files a browser shows or plays
// once the report made previews of them: camera photos (a HEIC, a JPEG, a
// stand-in video, one asset whose file the backup lacks) in two months, a
// conversation whose messages carry a HEIC picture, a PDF and an attachment
// the backup lacks, and voicemail as AMR, one of them missing. Written into
// `backups`/kMediaBackupFolder; returns its path.
std::string WriteMediaBackup(const std::string& backups);

}  // namespace yhmedia

#endif
