#include "RecordedQueries.h"

#include <dlfcn.h>
#include <sqlite3.h>

#include <cstdint>
#include <fstream>
#include <iterator>

#include "DeviceQueries.h"

namespace bench {
namespace {

bool gRecording = false;
RecordedQueries gRecorded;

int TraceStatement(unsigned, void* context, void* statement, void*) {
  auto* prepared = static_cast<sqlite3_stmt*>(statement);
  char* expanded = sqlite3_expanded_sql(prepared);
  std::string sql = expanded ? expanded : sqlite3_sql(prepared);
  sqlite3_free(expanded);
  // Trigger programs announce themselves as comments; they run inside their statement.
  if (sql.compare(0, 2, "--") == 0) return 0;
  gRecorded.statements.push_back({static_cast<uint32_t>(reinterpret_cast<uintptr_t>(context)), std::move(sql)});
  return 0;
}

bool IsIndex(const std::string& file) {
  static const std::string kIndex = "Manifest.db";
  return file.size() >= kIndex.size() && file.compare(file.size() - kIndex.size(), kIndex.size(), kIndex) == 0;
}

}  // namespace

void StartRecording() {
  gRecorded = RecordedQueries();
  gRecording = true;
}

RecordedQueries StopRecording() {
  gRecording = false;
  RecordedQueries kept;
  std::vector<uint32_t> renumbered(gRecorded.opened.size(), UINT32_MAX);
  for (size_t i = 0; i < gRecorded.opened.size(); ++i) {
    if (IsIndex(gRecorded.opened[i])) continue;
    renumbered[i] = static_cast<uint32_t>(kept.opened.size());
    kept.opened.push_back(gRecorded.opened[i]);
  }
  for (RecordedQueries::Statement& statement : gRecorded.statements) {
    if (renumbered[statement.connection] == UINT32_MAX) continue;
    kept.statements.push_back({renumbered[statement.connection], std::move(statement.sql)});
  }
  gRecorded = RecordedQueries();
  return kept;
}

bool SaveQueries(const RecordedQueries& queries, const std::string& file) {
  std::ofstream out(file, std::ios::binary);
  out << queries.opened.size() << '\n';
  for (const std::string& opened : queries.opened) out << opened.size() << ' ' << opened << '\n';
  out << queries.statements.size() << '\n';
  for (const RecordedQueries::Statement& statement : queries.statements) {
    out << statement.connection << ' ' << statement.sql.size() << ' ' << statement.sql << '\n';
  }
  return static_cast<bool>(out.flush());
}

RecordedQueries LoadQueries(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  // Each text follows its length and one blank, and is followed by a new line.
  const auto readText = [&in](std::string* text) {
    size_t length = 0;
    in >> length;
    in.get();
    text->resize(length);
    in.read(text->data(), static_cast<std::streamsize>(length));
  };
  RecordedQueries queries;
  size_t count = 0;
  in >> count;
  queries.opened.resize(count);
  for (std::string& opened : queries.opened) readText(&opened);
  in >> count;
  queries.statements.resize(count);
  for (RecordedQueries::Statement& statement : queries.statements) {
    in >> statement.connection;
    readText(&statement.sql);
  }
  if (!in) return RecordedQueries();
  return queries;
}

RecordedQueries ConnectionsMentioning(const RecordedQueries& queries, const std::string& text) {
  std::vector<bool> wanted(queries.opened.size(), false);
  for (const RecordedQueries::Statement& statement : queries.statements) {
    if (statement.sql.find(text) != std::string::npos) wanted[statement.connection] = true;
  }
  RecordedQueries kept{queries.opened, {}};
  for (const RecordedQueries::Statement& statement : queries.statements) {
    if (wanted[statement.connection]) kept.statements.push_back(statement);
  }
  return kept;
}

void ReplayQueries(const RecordedQueries& queries) {
  std::vector<sqlite3*> connections(queries.opened.size(), nullptr);
  for (const RecordedQueries::Statement& statement : queries.statements) {
    sqlite3*& connection = connections[statement.connection];
    if (!connection) connection = OpenDeviceDatabase(queries.opened[statement.connection]);
    RunToEnd(connection, statement.sql.c_str());
  }
  for (sqlite3* connection : connections) sqlite3_close(connection);
}

}  // namespace bench

// Every connection opened while recording is traced. The library reaches
// SQLite through this definition: the program's own exported symbols come first.
extern "C" __attribute__((visibility("default"))) int sqlite3_open_v2(const char* filename, sqlite3** db, int flags,
                                                                      const char* vfs) {
  using Open = int (*)(const char*, sqlite3**, int, const char*);
  static const Open real = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "sqlite3_open_v2"));
  const int status = real(filename, db, flags, vfs);
  if (bench::gRecording && status == SQLITE_OK) {
    const char* file = sqlite3_db_filename(*db, "main");
    const auto connection = static_cast<uintptr_t>(bench::gRecorded.opened.size());
    bench::gRecorded.opened.push_back(file ? file : "");
    sqlite3_trace_v2(*db, SQLITE_TRACE_STMT, bench::TraceStatement, reinterpret_cast<void*>(connection));
  }
  return status;
}
