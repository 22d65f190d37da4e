#ifndef YH_INDEX_STAYSINBACKUP_H
#define YH_INDEX_STAYSINBACKUP_H

#include <string_view>

// Whether the stored file of a Manifest.db fileID lies inside the backup
// folder. Its path is folder + first two characters + "/" + fileID, so it
// leaves the folder only through a separator in the fileID ("/", or "\" on
// Windows, refused on every system so that a backup answers alike on both)
// or a leading "..". Devices write 40 hex digits; anything else that climbs
// out comes from a crafted index. Every file that either service reads or
// names is found through the index reader, whose rows pass this check
// before their file is even looked for.
bool StaysInBackup(std::string_view fileId);

#endif
