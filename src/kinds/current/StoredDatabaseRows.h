#ifndef YH_KINDS_CURRENT_STOREDDATABASEROWS_H
#define YH_KINDS_CURRENT_STOREDDATABASEROWS_H

#include "kinds/StoredFiles.h"
#include "libYH.h"
#include "recovery/RecoverRows.h"
#include "recovery/RecoveredRow.h"

namespace current {

// Every row a stored database holds, read page by page and never through
// SQLite: the file where kinds read it (the decrypted copy of an encrypted
// backup) with the -wal and -journal files the index lists beside it. The
// one place the kinds ask the recovery reader. `liveValues` as for RecoverRows.
RecoveredRows RecoverStoredDatabase(const BackupDevice* device, const StoredFile& file,
                                    const LiveValues& liveValues = nullptr);

}  // namespace current

#endif
