#ifndef YH_BENCH_RUN_RECORDEDQUERIES_H
#define YH_BENCH_RUN_RECORDEDQUERIES_H

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

// Every statement a service ran on the device databases, in order, with the
// connection it ran on. Recorded through SQLite's statement trace, so that
// the floor of a service whose queries depend on each database's schema is
// the same statements run with SQLite alone.
struct RecordedQueries {
  struct Statement {
    uint32_t connection;  // position in `opened`
    std::string sql;      // with its bound values written in
  };
  std::vector<std::string> opened;  // the file of each connection, in order of opening
  std::vector<Statement> statements;
};

// From now on, in this process, connections that anything opens are traced.
void StartRecording();
// What was recorded since StartRecording; the index's own connections
// (Manifest.db) are left out, as the floor lists the index apart.
RecordedQueries StopRecording();

bool SaveQueries(const RecordedQueries& queries, const std::string& file);
RecordedQueries LoadQueries(const std::string& file);

// The statements of the connections on which any statement mentions
// `text` (a table's name), all of them, in order: the queries of one kind.
RecordedQueries ConnectionsMentioning(const RecordedQueries& queries, const std::string& text);

// Opens each connection as the library does (read-only, immutable) when its
// first statement comes and runs every statement to its last row, reading
// each column.
void ReplayQueries(const RecordedQueries& queries);

}  // namespace bench

#endif
