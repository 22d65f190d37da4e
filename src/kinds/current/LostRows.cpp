#include "kinds/current/LostRows.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "kinds/current/ScratchDatabase.h"
#include "kinds/current/StoredDatabaseRows.h"
#include "recovery/RowHash.h"

namespace current {
namespace {

bool Named(const std::vector<std::string>& names, const std::string& table) {
  return std::any_of(names.begin(), names.end(), [&table](const std::string& name) {
    return name.size() == table.size() &&
           std::equal(name.begin(), name.end(), table.begin(), [](unsigned char a, unsigned char b) {
             return std::tolower(a) == std::tolower(b);
           });
  });
}

using LayerKey = std::tuple<RowSource, RowStatus, size_t>;

// The position of the column named `name` in each table, -1 where none is.
std::vector<int> ColumnOf(const RecoveredRows& rows, const std::string& name) {
  std::vector<int> columns(rows.tables.size(), -1);
  for (size_t table = 0; table < rows.tables.size() && !name.empty(); ++table) {
    const std::vector<Column>& shape = rows.tables[table].columns;
    for (size_t at = 0; at < shape.size(); ++at) {
      if (Named({name}, shape[at].name)) columns[table] = static_cast<int>(at);
    }
  }
  return columns;
}

// The value of the row's identity column, NULL-free; none when it has none.
const SqlValue* IdentityOf(const RecoveredRow& row, const std::vector<int>& identity) {
  const int column = row.table < identity.size() ? identity[row.table] : -1;
  if (column < 0 || static_cast<size_t>(column) >= row.values.size() ||
      row.values[column].kind == SqlValue::Kind::Null) {
    return nullptr;
  }
  return &row.values[column];
}

// The positions of the lost rows of the `chosen` tables (earlier versions
// too when `earlier`), each content once: a row freed in one place is often
// found again in another (a frame of the -wal, the freeblock it left), with
// its rowid or without. The one with its rowid is kept, else the first
// found. Stale copies of live rows, known by `identity`, are left out.
std::vector<size_t> LostOnce(const RecoveredRows& rows, const std::vector<bool>& chosen, bool earlier,
                             const std::string& identity) {
  const std::vector<int> identities = ColumnOf(rows, identity);
  // Rows are found by the hash of what they are compared by, then compared.
  std::unordered_multimap<uint64_t, size_t> live;  // live rows by their identity
  for (size_t at = 0; at < rows.rows.size(); ++at) {
    const RecoveredRow& row = rows.rows[at];
    if (row.status != RowStatus::Live || row.table >= chosen.size() || !chosen[row.table]) continue;
    if (const SqlValue* value = IdentityOf(row, identities)) live.emplace(HashOfValues(row.table, value, 1), at);
  }
  const auto isLive = [&](const RecoveredRow& row) {
    const SqlValue* value = IdentityOf(row, identities);
    if (!value) return false;
    const auto [from, to] = live.equal_range(HashOfValues(row.table, value, 1));
    return std::any_of(from, to, [&](const auto& entry) {
      const RecoveredRow& other = rows.rows[entry.second];
      return other.table == row.table && *IdentityOf(other, identities) == *value;
    });
  };
  std::unordered_multimap<uint64_t, size_t> first;  // kept rows by their values, as places in `kept`
  std::vector<size_t> kept;
  for (size_t at = 0; at < rows.rows.size(); ++at) {
    const RecoveredRow& row = rows.rows[at];
    const bool lost = row.status == RowStatus::Deleted || (earlier && row.status == RowStatus::EarlierVersion);
    if (!lost || row.table >= chosen.size() || !chosen[row.table]) continue;
    if (!row.rowid && !live.empty() && isLive(row)) continue;
    const int alias = rows.tables[row.table].rowidColumn;
    const uint64_t hash = HashButRowid(row.table, row.values, alias);
    const auto [from, to] = first.equal_range(hash);
    const auto found = std::find_if(from, to, [&](const auto& entry) {
      const RecoveredRow& other = rows.rows[kept[entry.second]];
      return other.table == row.table && SameButRowid(other.values, row.values, alias);
    });
    if (found == to) {
      first.emplace(hash, kept.size());
      kept.push_back(at);
    } else if (row.rowid && !rows.rows[kept[found->second]].rowid) {
      kept[found->second] = at;
    }
  }
  return kept;
}

// Leaves out of `positions` the rows of link tables whose link names none
// of `subjects` (rowids).
std::vector<size_t> Touching(const RecoveredRows& rows, std::vector<size_t> positions, const LostRowsOf& lost,
                             const std::unordered_set<int64_t>& subjects) {
  if (lost.links.empty()) return positions;
  std::vector<int> link(rows.tables.size(), -1);
  for (const auto& [table, column] : lost.links) {
    const std::vector<int> columns = ColumnOf(rows, column);
    for (size_t at = 0; at < rows.tables.size(); ++at) {
      if (Named({table}, rows.tables[at].name)) link[at] = columns[at];
    }
  }
  const auto touches = [&](size_t at) {
    const RecoveredRow& row = rows.rows[at];
    const int column = row.table < link.size() ? link[row.table] : -1;
    if (column < 0) return true;
    if (static_cast<size_t>(column) >= row.values.size()) return false;
    const SqlValue& value = row.values[column];
    return value.kind == SqlValue::Kind::Integer && subjects.count(value.integer) > 0;
  };
  positions.erase(std::remove_if(positions.begin(), positions.end(), [&](size_t at) { return !touches(at); }),
                  positions.end());
  return positions;
}

}  // namespace

void ForEachLostLayer(const RecoveredRows& rows, const LostRowsOf& lost,
                      const std::function<void(Database& database, const Deletion& deletion)>& read) {
  std::vector<bool> subject(rows.tables.size());
  std::vector<bool> joined(rows.tables.size());  // tables whose deleted rows join the records
  std::vector<bool> laidOut(rows.tables.size());  // tables whose rows are laid out
  for (size_t at = 0; at < rows.tables.size(); ++at) {
    subject[at] = Named(lost.subjects, rows.tables[at].name);
    laidOut[at] = !Named(lost.unread, rows.tables[at].name);
    joined[at] = !subject[at] && laidOut[at] && !Named(lost.liveOnly, rows.tables[at].name);
  }
  const auto isSubject = [&](const RecoveredRow& row) { return row.table < subject.size() && subject[row.table]; };
  std::map<LayerKey, std::vector<size_t>> layers;
  std::map<std::tuple<RowSource, RowStatus, size_t, int64_t>, size_t> seen;  // rowids met per source and table
  std::unordered_set<int64_t> lostRowids;
  for (size_t at : LostOnce(rows, subject, true, lost.identity)) {
    const RecoveredRow& row = rows.rows[at];
    if (row.rowid) lostRowids.insert(*row.rowid);
    const size_t layer = row.rowid ? seen[{row.source, row.status, row.table, *row.rowid}]++ : 0;
    layers[{row.source, row.status, layer}].push_back(at);
  }
  if (layers.empty()) return;
  std::vector<size_t> context;
  std::vector<size_t> liveSubjects;
  for (size_t at = 0; at < rows.rows.size(); ++at) {
    const RecoveredRow& row = rows.rows[at];
    if (row.status != RowStatus::Live || row.table >= laidOut.size() || !laidOut[row.table]) continue;
    (isSubject(row) ? liveSubjects : context).push_back(at);
  }
  // Live rows first, so that a deleted row never takes a live row's rowid.
  ScratchDatabase scratch(rows);
  scratch.Add(Touching(rows, std::move(context), lost, lostRowids), ScratchDatabase::WhenTaken::Skip);
  scratch.Add(Touching(rows, LostOnce(rows, joined, false, ""), lost, lostRowids), ScratchDatabase::WhenTaken::Skip);
  for (const auto& [key, positions] : layers) {
    for (size_t table = 0; table < subject.size(); ++table) {
      if (subject[table]) scratch.Empty(table);
    }
    if (lost.keepLiveSubjects) scratch.Add(liveSubjects, ScratchDatabase::WhenTaken::Skip);
    scratch.Add(positions, ScratchDatabase::WhenTaken::Replace);
    read(scratch.Get(), Deletion{RowSourceName(std::get<0>(key)), "", std::get<1>(key) == RowStatus::EarlierVersion});
  }
}

void ForEachLostLayer(const BackupDevice* device, const StoredFile& file, const LostRowsOf& lost,
                      const std::function<void(Database& database, const Deletion& deletion)>& read) {
  const LiveValues liveValues = [&lost](const TableShape& table) -> size_t {
    if (Named(lost.unread, table.name)) return 0;
    if (lost.keepLiveSubjects || !Named(lost.subjects, table.name)) return SIZE_MAX;
    size_t kept = 0;  // through the identity column, the last of its name as ColumnOf finds it
    for (size_t at = 0; at < table.columns.size() && !lost.identity.empty(); ++at) {
      if (Named({lost.identity}, table.columns[at].name)) kept = at + 1;
    }
    return kept;
  };
  ForEachLostLayer(RecoverStoredDatabase(device, file, liveValues), lost, read);
}

}  // namespace current
