#include "kinds/current/WhatsAppCallReader.h"

#include <string>
#include <unordered_map>

#include "common/DurationText.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"

namespace current {
namespace {

const char kCalls[] = "ZWACDCALLEVENT";
const char kEntries[] = "ZWAAGGREGATECALLEVENT";
const std::initializer_list<const char*> kEntryColumns = {"ZINCOMING", "ZVIDEO", "ZMISSED"};

using Participants = std::unordered_map<int64_t, std::vector<std::string>>;

// The participants of each entry (Z1PARTICIPANTS names the entry).
Participants ReadParticipants(Database& database, const SchemaInfo& schema) {
  Participants participants;
  if (!schema.HasTable("ZWACDCALLEVENTPARTICIPANT")) return participants;
  const std::string query = "select " +
                            schema.SelectList("ZWACDCALLEVENTPARTICIPANT", {"Z1PARTICIPANTS", "ZJIDSTRING"}) +
                            " from ZWACDCALLEVENTPARTICIPANT order by ZWACDCALLEVENTPARTICIPANT.rowid";
  Database::Statement rows(database, query.c_str());
  const int entry = rows.Column("Z1PARTICIPANTS");
  const int jid = rows.Column("ZJIDSTRING");
  while (rows.Step()) {
    if (!rows.WholeView(jid).empty()) participants[rows.Int64(entry)].push_back(rows.WholeText(jid));
  }
  return participants;
}

// Calls joined to their entries, then entries without calls, each row with
// the columns "entry", "ZDATE", "ZDURATION", "ZOUTCOME", "ZGROUPJIDSTRING"
// and the entry's.
std::string CallQuery(const SchemaInfo& schema) {
  const bool calls = schema.HasTable(kCalls);
  const bool entries = schema.HasTable(kEntries);
  const bool joined = entries && schema.HasColumn(kCalls, "Z1CALLEVENTS");
  std::string query;
  if (calls) {
    query = "select " + schema.ColumnOrNull(kCalls, "Z1CALLEVENTS", "e") + " AS entry, " +
            schema.SelectList(kCalls, {"ZDATE", "ZDURATION", "ZOUTCOME", "ZGROUPJIDSTRING"}, "e") + ", " +
            (joined ? schema.SelectList(kEntries, kEntryColumns, "a") : NullSelectList(kEntryColumns)) + " from " +
            kCalls + " e" + (joined ? std::string(" left join ") + kEntries + " a on a.rowid = e.Z1CALLEVENTS" : "");
  }
  if (entries && (joined || !calls)) {
    query +=
        std::string(query.empty() ? "" : " union all ") + "select a.rowid AS entry, " +
        schema.ColumnOrNull(kEntries, "ZFIRSTDATE", "a") +
        " AS ZDATE, NULL AS ZDURATION, NULL AS ZOUTCOME, NULL AS ZGROUPJIDSTRING, " +
        schema.SelectList(kEntries, kEntryColumns, "a") + " from " + kEntries + " a" +
        (calls ? std::string(" where not exists (select 1 from ") + kCalls + " c where c.Z1CALLEVENTS = a.rowid)" : "");
  }
  return query;
}

}  // namespace

// An entry's ZINCOMING tells the direction and ZVIDEO the medium; a call's
// ZOUTCOME 0 is a call that connected (1 missed, 4 rejected), and an entry
// without calls counts as answered unless ZMISSED says otherwise.
std::vector<WhatsAppCall> ReadWhatsAppCallHistory(Database& database) {
  const SchemaInfo schema(database);
  std::vector<WhatsAppCall> calls;
  const std::string query = CallQuery(schema);
  if (query.empty()) return calls;
  const Participants participants = ReadParticipants(database, schema);
  Database::Statement rows(database, query.c_str());
  const int entry = rows.Column("entry");
  const int when = rows.Column("ZDATE");
  const int duration = rows.Column("ZDURATION");
  const int outcome = rows.Column("ZOUTCOME");
  const int groupJid = rows.Column("ZGROUPJIDSTRING");
  const int incoming = rows.Column("ZINCOMING");
  const int video = rows.Column("ZVIDEO");
  const int missed = rows.Column("ZMISSED");
  while (rows.Step()) {
    WhatsAppCall call;
    const LocalDate date = LocalDateOf(rows.Text(when), TimeBase::Since2001);
    call.instant = date.instant;
    const char* type = rows.IsNull(incoming) ? "Unknown" : rows.Int64(incoming) != 0 ? "Incoming" : "Outgoing";
    call.answered = rows.IsNull(outcome) ? !rows.IsNull(missed) && rows.Int64(missed) == 0 : rows.Int64(outcome) == 0;
    const char* service = rows.Int64(video) != 0 ? "WhatsApp Video" : "WhatsApp Audio";
    const auto found = rows.IsNull(entry) ? participants.end() : participants.find(rows.Int64(entry));
    if (found != participants.end()) call.participants = found->second;
    call.group = !rows.WholeView(groupJid).empty() || call.participants.size() > 1;
    call.texts = PackedTexts{{}, {}, date.text, type, DurationText(rows.Text(duration)), {}, {}, {}, service};
    calls.push_back(std::move(call));
  }
  return calls;
}

}  // namespace current
