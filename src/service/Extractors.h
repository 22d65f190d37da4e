#ifndef YH_SERVICE_EXTRACTORS_H
#define YH_SERVICE_EXTRACTORS_H

#include "kinds/Kind.h"
#include "libYH.h"

// Reads one extractor field of a record as its Kind.
using ExtractorField = Kind* (*)(const BackupDevice* device);

// The nine extractor fields in the record's declared order.
extern const ExtractorField kExtractorFields[9];

// Creates the nine extractors of a record, in the order that gives call
// history and messages the shared contacts object as their name lookup.
void CreateKindObj(BackupDevice* device);

// Which extractor answers a content type, and with which flag.
struct ContentRoute {
  ExtractorField extractor;
  int flag;
};
extern const ContentRoute kContentRoutes[11];

// The extractor that answers `type` and the flag it is asked with; NULL for
// an unknown type or a record not analysed.
Kind* DescribedKindOf(const BackupDevice* device, iDeviceContentType type, int* flag);

#endif
