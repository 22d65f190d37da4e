#include "recovery/RecoverRows.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "recovery/FreeSpace.h"
#include "recovery/PageRows.h"
#include "recovery/Schema.h"
#include "recovery/TableTree.h"

namespace {

// A hash of a row's table and values, to find rows with equal values fast.
uint64_t Hash(size_t table, const SqlValues& values) {
  uint64_t hash = table;
  for (const SqlValue& value : values) {
    uint64_t part = static_cast<uint64_t>(value.kind);
    if (value.kind == SqlValue::Kind::Integer) part ^= static_cast<uint64_t>(value.integer) * 0x9e3779b97f4a7c15ull;
    if (value.kind == SqlValue::Kind::Real) part ^= std::hash<double>()(value.real);
    if (!value.bytes.empty()) part ^= std::hash<std::string_view>()(value.bytes);
    hash = (hash ^ part) * 0x100000001b3ull + (hash >> 29);
  }
  return hash;
}

// Sorts the rows that are not live against the live ones of their table.
// Holds pointers into the rows it is given, which must outlive it.
class Classifier {
 public:
  explicit Classifier(const std::vector<RecoveredRow>& rows) {
    for (const RecoveredRow& row : rows) {
      if (row.source != RowSource::Live) continue;
      if (row.rowid) liveByRowid_.push_back({{row.table, *row.rowid}, &row});
      liveByValues_.push_back({Hash(row.table, row.values), &row});
    }
    std::sort(liveByRowid_.begin(), liveByRowid_.end(), ByKey());
    std::sort(liveByValues_.begin(), liveByValues_.end(), ByKey());
  }

  // False for a row to leave out: a copy of a live row (same rowid and
  // values, or rowid unknown and the values of a live row) or met before.
  bool Classify(RecoveredRow* row) {
    const uint64_t hash = Hash(row->table, row->values);
    row->status = RowStatus::Deleted;
    if (row->rowid) {
      const std::pair<size_t, int64_t> key{row->table, *row->rowid};
      const auto live = std::lower_bound(liveByRowid_.begin(), liveByRowid_.end(), key, ByKey());
      if (live != liveByRowid_.end() && live->first == key) {
        if (live->second->values == row->values) return false;
        row->status = RowStatus::EarlierVersion;
      }
    } else if (HoldsLive(hash, *row)) {
      return false;
    }
    const auto [first, last] = reported_.equal_range(hash);
    for (auto it = first; it != last; ++it) {
      if (Same(*it->second, *row)) return false;
    }
    reported_.emplace(hash, row);
    return true;
  }

 private:
  // Orders (key, row) entries by key alone, and finds a key among them.
  struct ByKey {
    template <class Entry>
    bool operator()(const Entry& a, const Entry& b) const { return a.first < b.first; }
    template <class Entry, class Key>
    bool operator()(const Entry& a, const Key& key) const { return a.first < key; }
  };
  std::vector<std::pair<std::pair<size_t, int64_t>, const RecoveredRow*>> liveByRowid_;
  std::vector<std::pair<uint64_t, const RecoveredRow*>> liveByValues_;
  std::unordered_multimap<uint64_t, const RecoveredRow*> reported_;

  static bool Same(const RecoveredRow& a, const RecoveredRow& b) { return a.table == b.table && a.values == b.values; }

  bool HoldsLive(uint64_t hash, const RecoveredRow& row) const {
    for (auto it = std::lower_bound(liveByValues_.begin(), liveByValues_.end(), hash, ByKey());
         it != liveByValues_.end() && it->first == hash; ++it) {
      if (Same(*it->second, row)) return true;
    }
    return false;
  }
};

// Tables that deleted sqlite_master records on page 1 still declare and
// that no live table of that name replaces: their rows may be on free pages.
std::vector<TableShape> DroppedTables(const FileImage& image, const std::vector<TableShape>& live) {
  const std::vector<TableShape> master{MasterShape()};
  const std::unordered_set<uint32_t> noTrunks;
  const PageRows masterRows(image, master, noTrunks);
  std::vector<RecoveredRow> records;
  masterRows.Read(image.Page(1), {0}, false, {RowSource::Live, RowSource::Freeblock, RowSource::Unallocated}, &records);
  std::vector<TableShape> dropped;
  for (const RecoveredRow& record : records) {
    if (record.source == RowSource::Live) continue;
    std::optional<TableShape> table = DeclaredTable(record.values);
    if (!table) continue;
    auto named = [&](const TableShape& other) { return other.name == table->name; };
    if (std::any_of(live.begin(), live.end(), named) || std::any_of(dropped.begin(), dropped.end(), named)) continue;
    table->dropped = true;
    dropped.push_back(std::move(*table));
  }
  return dropped;
}

}  // namespace

RecoveredRows RecoverRows(const FileImage& image) {
  RecoveredRows result;
  result.tables = ReadSchema(image);
  std::vector<TableShape> dropped = DroppedTables(image, result.tables);
  result.tables.insert(result.tables.end(), dropped.begin(), dropped.end());
  std::vector<size_t> readable;
  for (size_t t = 0; t < result.tables.size(); ++t) {
    if (!result.tables[t].withoutRowid) readable.push_back(t);
  }
  const Freelist freelist = FreelistPages(image);
  const std::unordered_set<uint32_t> trunks(freelist.trunks.begin(), freelist.trunks.end());
  const PageRows pageRows(image, result.tables, trunks);
  std::vector<RecoveredRow> found;
  std::unordered_map<uint32_t, size_t> owner;
  std::unordered_set<uint32_t> seen;
  for (size_t table : readable) {
    if (result.tables[table].dropped) continue;
    ForEachTableLeaf(image, result.tables[table].rootPage, &seen, [&](const PageImage& page, const BtreePage&) {
      owner[page.number] = table;
      pageRows.Read(page, {table}, true, {RowSource::Live, RowSource::Freeblock, RowSource::Unallocated}, &found);
    });
  }
  std::vector<uint32_t> freePages = freelist.trunks;
  freePages.insert(freePages.end(), freelist.leaves.begin(), freelist.leaves.end());
  // A dropped table's tree still leads from its root to the free pages that
  // were its leaves: their rows are its own, whatever other table has its shape.
  const std::unordered_set<uint32_t> free(freePages.begin(), freePages.end());
  std::unordered_map<uint32_t, size_t> freedFrom;
  for (size_t table : readable) {
    if (!result.tables[table].dropped) continue;
    // The root is the table's even when the freelist overwrote its header.
    if (free.count(result.tables[table].rootPage) != 0) freedFrom.emplace(result.tables[table].rootPage, table);
    std::unordered_set<uint32_t> walked;
    ForEachTableLeaf(image, result.tables[table].rootPage, &walked, [&](const PageImage& page, const BtreePage&) {
      if (free.count(page.number) != 0) freedFrom.emplace(page.number, table);
    });
  }
  for (uint32_t number : freePages) {
    const auto known = freedFrom.find(number);
    pageRows.Read(image.Page(number), known != freedFrom.end() ? std::vector<size_t>{known->second} : readable, false,
                  {RowSource::Freelist, RowSource::Freelist, RowSource::Freelist}, &found);
  }
  for (const PageImage& page : image.EarlierImages()) {
    const RowSource source = page.file == StoredIn::Journal ? RowSource::Journal : RowSource::Wal;
    const auto known = owner.find(page.number);
    const std::vector<size_t> candidates = known != owner.end() ? std::vector<size_t>{known->second} : readable;
    pageRows.Read(page, candidates, false, {source, source, source}, &found);
  }
  Classifier classifier(found);
  std::vector<bool> kept(found.size(), true);
  for (size_t i = 0; i < found.size(); ++i) {
    if (found[i].source != RowSource::Live) kept[i] = classifier.Classify(&found[i]);
  }
  result.rows.reserve(found.size());
  for (size_t i = 0; i < found.size(); ++i) {
    if (kept[i]) result.rows.push_back(std::move(found[i]));
  }
  return result;
}
