#ifndef YH_RECOVERY_JOURNALPAGES_H
#define YH_RECOVERY_JOURNALPAGES_H

#include <cstdint>
#include <vector>

#include "recovery/ByteSource.h"
#include "recovery/PageImage.h"

// The page images of a rollback journal: each record is a page number, the
// page's bytes before the change and a checksum. A journal whose header was
// zeroed (persist mode) or is damaged is read with the database's page size,
// its header taken to fill the smallest sector after which a record names a
// page from 1 to `pageCount`. A record with page number 0 ends a segment.
// Each image is located by the offset of its page's bytes; the journal is
// read a few bytes at a time.
struct JournalPages {
  uint32_t pageSize = 0;  // the header's, else the database's
  std::vector<PageLocation> pages;
};
JournalPages ReadJournalPages(const ByteSource& journal, uint32_t databasePageSize, uint32_t pageCount);

#endif
