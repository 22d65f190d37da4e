#include "Floor.h"

#include <sys/stat.h>

#include <vector>

#include "DeviceQueries.h"
#include "IndexListing.h"
#include "Stopwatch.h"

namespace bench {

FloorTimes MeasureFloor(const std::string& backup) {
  struct stat info;
  // A folder holding both indexes is an old backup, as the library decides.
  const bool mbdb = stat((backup + "Manifest.mbdb").c_str(), &info) == 0;
  std::vector<std::string> wanted;
  for (const DeviceSource& source : DeviceSources()) wanted.push_back(source.relativePath);

  FloorTimes times;
  StoredFiles files;
  times.listing = Milliseconds([&] { files = mbdb ? ListMbdb(backup, wanted) : ListManifestDb(backup, wanted); });
  for (const DeviceSource& source : DeviceSources()) {
    if (!(mbdb ? source.onMbdb : source.onManifestDb)) continue;
    const double ms = Milliseconds([&] {
      for (const std::string& file : files[source.relativePath]) RunQueries(source, file);
    });
    times.byKind[source.kind] += ms;
    times.queries += ms;
    if (source.rereads) times.rereads += ms;
    if (source.propertyList) times.propertyLists += ms;
  }
  return times;
}

}  // namespace bench
