#include "recovery/Classifier.h"

#include "recovery/RowHash.h"

namespace {

uint64_t RowidKey(size_t table, int64_t rowid) {
  const SqlValue value{SqlValue::Kind::Integer, rowid, 0, {}};
  return HashOfValues(table, &value, 1);
}

uint64_t KeySeed(size_t table, size_t key) { return (static_cast<uint64_t>(table) << 32) ^ (key + 1); }

bool Same(const RecoveredRow& a, const RecoveredRow& b) { return a.table == b.table && a.values == b.values; }

// The values of the key's columns; none when one is NULL (NULLs never clash
// in a unique index).
bool KeyValues(const RecoveredRow& row, const UniqueKey& key, SqlValues* values) {
  values->clear();
  for (size_t column : key.columns) {
    if (column >= row.values.size() || row.values[column].kind == SqlValue::Kind::Null) return false;
    values->push_back(row.values[column]);
  }
  return true;
}

}  // namespace

Classifier::Classifier(const std::vector<TableShape>& tables, const std::vector<RecoveredRow>& rows)
    : tables_(tables),
      rows_(rows),
      matches_(rows.size()),
      liveRowids_(rows.size()),
      linkedTo_(rows.size()),
      keysWanted_(tables.size()) {
  SqlValues key;
  for (size_t i = 0; i < rows.size(); ++i) {
    const RecoveredRow& row = rows[i];
    if (row.table >= wanted_.size()) wanted_.resize(row.table + 1);
    wanted_[row.table] = true;
    if (row.rowid) {
      byRowid_.Add(RowidKey(row.table, *row.rowid), i);
    } else {
      byValues_.Add(HashButRowid(row.table, row.values, tables[row.table].rowidColumn), i);
    }
    const std::vector<UniqueKey>& keys = tables[row.table].uniqueKeys;
    keysWanted_[row.table].resize(keys.size());
    for (size_t k = 0; k < keys.size(); ++k) {
      if (!KeyValues(row, keys[k], &key)) continue;
      keysWanted_[row.table][k] = true;
      byKey_.Add(HashOfValues(KeySeed(row.table, k), key), keyed_.size());
      keyed_.push_back({i, k});
    }
  }
  byRowid_.Seal();
  byValues_.Seal();
  byKey_.Seal();
  reported_.reserve(rows.size());
}

bool Classifier::WantsKey(size_t table, size_t key) const {
  return table < keysWanted_.size() && key < keysWanted_[table].size() && keysWanted_[table][key];
}

void Classifier::MeetIndexEntry(size_t table, size_t key, const SqlValues& entry) {
  const UniqueKey& unique = tables_[table].uniqueKeys[key];
  if (entry.size() != unique.columns.size() + 1 || entry.back().kind != SqlValue::Kind::Integer) return;
  const int64_t liveRowid = entry.back().integer;
  byKey_.ForEach(HashOfValues(KeySeed(table, key), entry.data(), unique.columns.size()), [&](size_t number) {
    const KeyedRow& keyed = keyed_[number];
    const RecoveredRow& row = rows_[keyed.row];
    if (row.table != table || keyed.key != key || (row.rowid && *row.rowid == liveRowid)) return;
    for (size_t j = 0; j < unique.columns.size(); ++j) {
      if (row.values[unique.columns[j]] != entry[j]) return;
    }
    linkedTo_[keyed.row] = liveRowid;
    byLinks_.Add(RowidKey(table, liveRowid), keyed.row);
  });
}

void Classifier::Meet(const RecoveredRow& live) {
  if (!linksSealed_) {
    byLinks_.Seal();
    linksSealed_ = true;
  }
  auto match = [&](size_t index, bool copy) {
    matches_[index] |= copy ? kCopy : kOther;
    if (!copy) liveRowids_[index] = live.rowid;
  };
  if (live.rowid) {
    byRowid_.ForEach(RowidKey(live.table, *live.rowid), [&](size_t index) {
      const RecoveredRow& row = rows_[index];
      if (row.table == live.table && *row.rowid == *live.rowid) match(index, Same(row, live));
    });
    byLinks_.ForEach(RowidKey(live.table, *live.rowid), [&](size_t index) {
      const RecoveredRow& row = rows_[index];
      if (row.table != live.table || linkedTo_[index] != live.rowid) return;
      // A row of another rowid is another version whatever its values.
      match(index, !row.rowid && SameButRowid(row.values, live.values, tables_[live.table].rowidColumn));
    });
  }
  const int alias = tables_[live.table].rowidColumn;
  byValues_.ForEach(HashButRowid(live.table, live.values, alias), [&](size_t index) {
    if (rows_[index].table == live.table && SameButRowid(rows_[index].values, live.values, alias)) matches_[index] |= kCopy;
  });
}

bool Classifier::Classify(size_t index, RecoveredRow* row) {
  if (matches_[index] & kCopy) return false;
  const bool earlier = (matches_[index] & kOther) != 0;
  row->status = earlier ? RowStatus::EarlierVersion : RowStatus::Deleted;
  if (earlier) row->liveRowid = liveRowids_[index];
  const uint64_t hash = HashOfValues(row->table, row->values);
  const auto [first, last] = reported_.equal_range(hash);
  for (auto it = first; it != last; ++it) {
    if (Same(rows_[it->second], *row)) return false;
  }
  reported_.emplace(hash, index);
  return true;
}
