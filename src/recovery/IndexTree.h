#ifndef YH_RECOVERY_INDEXTREE_H
#define YH_RECOVERY_INDEXTREE_H

#include <cstdint>
#include <functional>

#include "recovery/FileImage.h"
#include "recovery/PageSet.h"
#include "recovery/SqlValue.h"

// Calls visit with the record of every entry of the index b-tree rooted at
// `root` in the current image, in key order: the cells of its leaf pages and
// those of its interior pages, which hold entries too. A record is the key's
// values, then the rowid of the row they belong to; one that does not decode
// whole is left out. Every page is visited at most once (`seen`), so a cycle
// ends the walk there.
void ForEachIndexEntry(const FileImage& image, uint32_t root, PageSet* seen,
                       const std::function<void(const SqlValues&)>& visit);

#endif
