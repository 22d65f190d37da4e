#ifndef YH_RECOVERY_WALFRAMES_H
#define YH_RECOVERY_WALFRAMES_H

#include <cstdint>
#include <vector>

#include "recovery/ByteSource.h"
#include "recovery/PageImage.h"

// The frames of a -wal file. `committed` are the frames SQLite would replay:
// those of the current generation (salts of the header) whose checksum chain
// holds, up to the last commit frame. Every other whole frame (uncommitted,
// of an earlier generation after a salt change, or past a broken checksum) is
// in `others`. Frames keep their order in the file; each is located by the
// offset of its page's bytes.
struct WalFrames {
  uint32_t pageSize = 0;
  uint32_t databasePages = 0;  // the size the last committed frame records
  std::vector<PageLocation> committed;
  std::vector<PageLocation> others;
};

// Reads the log frame by frame. A log whose header is damaged still gives
// its frames, all as `others`, when the database's page size is known
// (fallbackPageSize).
WalFrames ReadWalFrames(const ByteSource& wal, uint32_t fallbackPageSize);

#endif
