#ifndef YH_BENCH_RUN_DEVICEQUERIES_H
#define YH_BENCH_RUN_DEVICEQUERIES_H

#include <sqlite3.h>

#include <string>
#include <vector>

namespace bench {

// A device database opened as the library opens it (read-only, immutable,
// temporary b-trees in memory), or NULL.
sqlite3* OpenDeviceDatabase(const std::string& file);

// Runs one query to its last row, reading every column as the library's
// readers do; false when it did not run to its end (or `db` is NULL).
bool RunToEnd(sqlite3* db, const char* sql);

// One query a content kind runs on a device database, and the older form
// that runs only when it fails.
struct Query {
  const char* sql;
  const char* older;
};

// A device database (or property list) that a content kind reads, with the
// queries it runs there, on one or both kinds of index.
struct DeviceSource {
  const char* kind;
  const char* relativePath;
  bool onMbdb;
  bool onManifestDb;
  bool propertyList;
  // Messages, notes and Safari history are read again on every request.
  bool rereads;
  std::vector<Query> queries;
};

// Everything the eleven content types read, each source once.
const std::vector<DeviceSource>& DeviceSources();

// Runs the source's queries on one stored file to their last row, reading
// every column; a property list is parsed.
void RunQueries(const DeviceSource& source, const std::string& storedFile);

}  // namespace bench

#endif
