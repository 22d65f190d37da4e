#ifndef YH_BENCH_RUN_FLOOR_H
#define YH_BENCH_RUN_FLOOR_H

#include <map>
#include <string>

namespace bench {

// What no reader of the backup can avoid, in milliseconds: listing the index
// with an existence test of every stored file, and running every content
// kind's queries to their end with SQLite alone (the history property list
// of older backups parsed with libplist), each once.
struct FloorTimes {
  double listing = 0;
  double queries = 0;
  // Of the queries, those of the kinds that read again on every request.
  double rereads = 0;
  // Of the queries, the parsing of property lists (which no SQL trace shows).
  double propertyLists = 0;
  std::map<std::string, double> byKind;
  double Total() const { return listing + queries; }
  // The floor of two requests of every content type.
  double TotalForTwoRequests() const { return Total() + rereads; }
};

// `backup` is one backup folder, ending in "/".
FloorTimes MeasureFloor(const std::string& backup);

}  // namespace bench

#endif
