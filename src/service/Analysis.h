#ifndef YH_SERVICE_ANALYSIS_H
#define YH_SERVICE_ANALYSIS_H

#include "index/BackupSession.h"
#include "index/IndexReader.h"
#include "libYH.h"

// How a service prepares the session of a record it analyses, after the new
// reader and the described extractors exist and before the index is read.
using PrepareSession = void (*)(BackupDevice* device, BackupSession& session);

// The analysis both services share: a new reader of the record's type, the
// described extractors, the service's preparation, then the reading of the
// index. The session of an earlier reader (what a host set up before a new
// analysis, such as a password) passes to the new one, emptied of the
// earlier service's extractors.
int32_t AnalyzeBackupWith(BackupDevice* device, PrepareSession prepare);

// A new reader of the backup type, its index not read; NULL for an unknown type.
IndexReader* NewIndexReader(BackupType backupType);

#endif
