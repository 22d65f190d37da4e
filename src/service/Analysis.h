#ifndef YH_SERVICE_ANALYSIS_H
#define YH_SERVICE_ANALYSIS_H

#include "libYH.h"
#include "session/BackupSession.h"

// How a service prepares the session of a record it analyses, after the new
// reader and the described extractors exist and before the index is read.
using PrepareSession = void (*)(BackupDevice* device, BackupSession& session);

// The analysis both services share: the record's session (kept from an
// earlier analysis or unlocking, with what a host set up such as a password,
// emptied of the earlier service's extractors), a new reader of the
// record's type, the described extractors, the service's preparation, then
// the reading of the index.
int32_t AnalyzeBackupWith(BackupDevice* device, PrepareSession prepare);

#endif
