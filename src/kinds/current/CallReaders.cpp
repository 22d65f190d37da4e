#include "kinds/current/CallReaders.h"

#include <algorithm>
#include <cstdlib>

#include "common/DurationText.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"

namespace current {
namespace {

// Room for every row of the table, so that the calls are not moved as the
// list grows.
void ReserveRows(Database& database, const char* table, std::vector<Call>& calls) {
  const std::string query = std::string("select count(*) from ") + table;
  Database::Statement count(database, query.c_str());
  if (count.Step()) calls.reserve(static_cast<size_t>(std::max<int64_t>(count.Int64(0), 0)));
}

// Whether the call lasted: a duration above zero.
bool Lasted(const Database::Statement& rows, int duration) {
  const char* seconds = rows.Text(duration);
  return seconds && std::strtod(seconds, nullptr) > 0;
}

}  // namespace

// Flags of the old database: bit 0 set for a call the owner made, bit 4 for
// FaceTime. Dates are seconds since 1970. It does not say whether a call was
// answered: a call that lasted is taken as answered, whichever its direction
// (a real iOS 5 log holds an outgoing call of no duration).
std::vector<Call> ReadCallDatabase(Database& database) {
  const SchemaInfo schema(database);
  std::vector<Call> calls;
  if (!schema.HasTable("call")) return calls;
  const std::string query = "select " +
                            schema.SelectList("call", {"name", "address", "date", "flags", "duration",
                                                        "country_code", "network_code"}) +
                            " from call order by call.ROWID";
  ReserveRows(database, "call", calls);
  Database::Statement rows(database, query.c_str());
  const int name = rows.Column("name");
  const int address = rows.Column("address");
  const int when = rows.Column("date");
  const int flagBits = rows.Column("flags");
  const int duration = rows.Column("duration");
  const int country = rows.Column("country_code");
  const int network = rows.Column("network_code");
  while (rows.Step()) {
    Call call;
    const LocalDate date = LocalDateOf(rows.Text(when), TimeBase::Unix);
    call.instant = date.instant;
    const int64_t flags = rows.Int64(flagBits);
    const bool outgoing = (flags & 1) != 0;
    const char* type = rows.IsNull(flagBits) ? "Unknown" : outgoing ? "Outgoing" : "Incoming";
    call.answered = Lasted(rows, duration);
    const char* service = (flags & 16) != 0 ? "FaceTime" : "Phone";
    call.texts = PackedTexts{rows.WholeView(name),    rows.WholeView(address), date.text,
                             type,                    DurationText(rows.Text(duration)),
                             rows.WholeView(country), rows.WholeView(network), {},
                             service};
    calls.push_back(std::move(call));
  }
  return calls;
}

// ZCALLTYPE: 1 a phone call, 8 FaceTime video, 16 FaceTime audio. ZADDRESS
// is text on some generations and a BLOB of the same bytes on others.
// ZANSWERED is 0 for every outgoing call of an iOS 17 store, also for those
// that lasted: an outgoing call counts as answered when it lasted or
// ZANSWERED says so, an incoming one when ZANSWERED says so.
std::vector<Call> ReadCallStore(Database& database) {
  const SchemaInfo schema(database);
  std::vector<Call> calls;
  if (!schema.HasTable("ZCALLRECORD")) return calls;
  const std::string query =
      "select " +
      schema.SelectList("ZCALLRECORD", {"ZNAME", "ZADDRESS", "ZDATE", "ZORIGINATED", "ZDURATION",
                                         "ZISO_COUNTRY_CODE", "ZSERVICE_PROVIDER", "ZLOCATION", "ZANSWERED",
                                         "ZCALLTYPE"}) +
      " from ZCALLRECORD order by ZCALLRECORD.rowid";
  ReserveRows(database, "ZCALLRECORD", calls);
  Database::Statement rows(database, query.c_str());
  const int name = rows.Column("ZNAME");
  const int address = rows.Column("ZADDRESS");
  const int when = rows.Column("ZDATE");
  const int originatedBit = rows.Column("ZORIGINATED");
  const int duration = rows.Column("ZDURATION");
  const int country = rows.Column("ZISO_COUNTRY_CODE");
  const int provider = rows.Column("ZSERVICE_PROVIDER");
  const int location = rows.Column("ZLOCATION");
  const int answered = rows.Column("ZANSWERED");
  const int callTypes = rows.Column("ZCALLTYPE");
  while (rows.Step()) {
    Call call;
    const LocalDate date = LocalDateOf(rows.Text(when), TimeBase::Since2001);
    call.instant = date.instant;
    const int64_t originated = rows.Int64(originatedBit);
    const char* type = rows.IsNull(originatedBit) ? "Unknown"
                       : originated == 1          ? "Outgoing"
                       : originated == 0          ? "Incoming"
                                                  : "Unknown";
    call.answered = rows.Int64(answered) != 0 || (originated == 1 && Lasted(rows, duration));
    const int64_t callType = rows.Int64(callTypes);
    const char* service = callType == 8 ? "FaceTime Video" : callType == 16 ? "FaceTime Audio" : "Phone";
    call.texts = PackedTexts{rows.WholeView(name),    rows.WholeView(address), date.text,
                             type,                    DurationText(rows.Text(duration)),
                             rows.WholeView(country), rows.WholeView(provider), rows.WholeView(location),
                             service};
    calls.push_back(std::move(call));
  }
  return calls;
}

}  // namespace current
