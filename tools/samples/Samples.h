#ifndef YH_SAMPLES_SAMPLES_H
#define YH_SAMPLES_SAMPLES_H

#include <string>

namespace samples {

// Each writes one backup into a new sub-folder of `backups` (a
// MobileSync/Backup folder), named as the sync software names it.

// An iPhone 5 on iOS 7, backed up in 2014: a Manifest.mbdb index.
void WriteIPhone5Backup(const std::string& backups);

// An iPhone 12 on iOS 15, backed up in 2023: a Manifest.db index.
void WriteIPhone12Backup(const std::string& backups);

// A backup whose texts and file names are markup, script, quotes, entities,
// javascript: addresses and control characters, for the report's safety tests.
void WriteHostileBackup(const std::string& backups);

}  // namespace samples

#endif
