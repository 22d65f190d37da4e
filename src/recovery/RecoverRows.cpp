#include "recovery/RecoverRows.h"

#include <algorithm>
#include <functional>
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

bool Same(const RecoveredRow& a, const RecoveredRow& b) { return a.table == b.table && a.values == b.values; }

// Row indexes by a 64-bit key. Most keys asked for are absent (live rows
// met against the few rows carved): a bit per slot of a filter answers those
// with one probe.
class RowIndex {
 public:
  void Add(uint64_t key, size_t row) { entries_.emplace_back(key, row); }

  // Once every row is added.
  void Seal() {
    std::sort(entries_.begin(), entries_.end());
    size_t slots = 64;
    while (slots < 16 * entries_.size()) slots *= 2;
    filter_.assign(slots, false);
    for (const auto& entry : entries_) filter_[Slot(entry.first)] = true;
  }

  template <class Visit>
  void ForEach(uint64_t key, Visit visit) const {
    if (!filter_[Slot(key)]) return;
    for (auto it = std::lower_bound(entries_.begin(), entries_.end(), std::make_pair(key, size_t{0}));
         it != entries_.end() && it->first == key; ++it) {
      visit(it->second);
    }
  }

 private:
  std::vector<std::pair<uint64_t, size_t>> entries_;
  std::vector<bool> filter_;

  size_t Slot(uint64_t key) const { return static_cast<size_t>((key * 0x9e3779b97f4a7c15ull) >> 20) & (filter_.size() - 1); }
};

// Sorts the rows that are not live against the live ones of their table,
// met one at a time. Holds indexes into the rows it is given.
class Classifier {
 public:
  explicit Classifier(const std::vector<RecoveredRow>& rows) : rows_(rows), matches_(rows.size()) {
    for (size_t i = 0; i < rows.size(); ++i) {
      const RecoveredRow& row = rows[i];
      if (row.table >= wanted_.size()) wanted_.resize(row.table + 1);
      wanted_[row.table] = true;
      if (row.rowid) {
        byRowid_.Add(Key(row.table, *row.rowid), i);
      } else {
        byValues_.Add(Hash(row.table, row.values), i);
      }
    }
    byRowid_.Seal();
    byValues_.Seal();
  }

  // Whether a live row of the table can tell anything about the rows.
  bool Wants(size_t table) const { return table < wanted_.size() && wanted_[table]; }

  // A live row: the rows with its rowid are copies of it or earlier
  // versions; those without a rowid and with its values are copies.
  void Meet(const RecoveredRow& live) {
    if (live.rowid) {
      byRowid_.ForEach(Key(live.table, *live.rowid), [&](size_t index) {
        const RecoveredRow& row = rows_[index];
        if (row.table == live.table && *row.rowid == *live.rowid) matches_[index] |= Same(row, live) ? kCopy : kOther;
      });
    }
    byValues_.ForEach(Hash(live.table, live.values), [&](size_t index) {
      if (Same(rows_[index], live)) matches_[index] |= kCopy;
    });
  }

  // Once every live row was met: false for a row to leave out (a copy of a
  // live row, or a row met before), else its status.
  bool Classify(size_t index, RowStatus* status) {
    const RecoveredRow& row = rows_[index];
    if (matches_[index] & kCopy) return false;
    *status = matches_[index] & kOther ? RowStatus::EarlierVersion : RowStatus::Deleted;
    const uint64_t hash = Hash(row.table, row.values);
    const auto [first, last] = reported_.equal_range(hash);
    for (auto it = first; it != last; ++it) {
      if (Same(rows_[it->second], row)) return false;
    }
    reported_.emplace(hash, index);
    return true;
  }

 private:
  enum Match : uint8_t { kCopy = 1, kOther = 2 };
  static uint64_t Key(size_t table, int64_t rowid) {
    return Hash(table, {SqlValue{SqlValue::Kind::Integer, rowid, 0, {}}});
  }

  const std::vector<RecoveredRow>& rows_;
  std::vector<uint8_t> matches_;
  std::vector<bool> wanted_;
  RowIndex byRowid_;
  RowIndex byValues_;
  std::unordered_multimap<uint64_t, size_t> reported_;
};

// Tables that deleted sqlite_master records on page 1 still declare and
// that no live table of that name replaces: their rows may be on free pages.
std::vector<TableShape> DroppedTables(const FileImage& image, const std::vector<TableShape>& live) {
  const std::vector<TableShape> master{MasterShape()};
  const std::unordered_set<uint32_t> noTrunks;
  const PageRows masterRows(image, master, noTrunks);
  std::vector<RecoveredRow> records;
  masterRows.Read(image.Page(1), {0}, {RowSource::Live, RowSource::Freeblock, RowSource::Unallocated}, &records);
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

// Calls visit for every leaf page of the live tables' trees, each page once.
void ForEachLiveLeaf(const FileImage& image, const std::vector<TableShape>& tables, const std::vector<size_t>& readable,
                     const std::function<void(const PageImage&, const BtreePage&, size_t)>& visit) {
  PageSet seen(image.PageCount());
  for (size_t table : readable) {
    if (tables[table].dropped) continue;
    ForEachTableLeaf(image, tables[table].rootPage, &seen,
                     [&](const PageImage& page, const BtreePage& header) { visit(page, header, table); });
  }
}

}  // namespace

RecoveredRows RecoverRows(const FileImage& image, bool withLive) {
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
  // The table whose tree holds the current version of a page that has earlier ones.
  std::unordered_map<uint32_t, size_t> owner;
  for (const PageLocation& earlier : image.EarlierPages()) owner.emplace(earlier.number, SIZE_MAX);
  std::vector<RecoveredRow> found;
  ForEachLiveLeaf(image, result.tables, readable, [&](const PageImage& page, const BtreePage& header, size_t table) {
    const auto known = owner.find(page.number);
    if (known != owner.end()) known->second = table;
    pageRows.CarveFreeSpace(page, header, table, &found);
  });
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
    PageSet walked(image.PageCount());
    ForEachTableLeaf(image, result.tables[table].rootPage, &walked, [&](const PageImage& page, const BtreePage&) {
      if (free.count(page.number) != 0) freedFrom.emplace(page.number, table);
    });
  }
  for (uint32_t number : freePages) {
    const auto known = freedFrom.find(number);
    pageRows.Read(image.Page(number), known != freedFrom.end() ? std::vector<size_t>{known->second} : readable,
                  {RowSource::Freelist, RowSource::Freelist, RowSource::Freelist}, &found);
  }
  for (const PageLocation& earlier : image.EarlierPages()) {
    const RowSource source = earlier.file == StoredIn::Journal ? RowSource::Journal : RowSource::Wal;
    const auto known = owner.find(earlier.number);
    const std::vector<size_t> candidates =
        known->second != SIZE_MAX ? std::vector<size_t>{known->second} : readable;
    pageRows.Read(image.Read(earlier), candidates, {source, source, source}, &found);
  }
  // The live rows, read again a page at a time, sort the others.
  Classifier classifier(found);
  ForEachLiveLeaf(image, result.tables, readable, [&](const PageImage& page, const BtreePage& header, size_t table) {
    if (!withLive && !classifier.Wants(table)) return;
    pageRows.ReadCells(page, header, table, [&](RecoveredRow& row) {
      classifier.Meet(row);
      if (withLive) result.rows.push_back(row);
    });
  });
  std::vector<bool> kept(found.size());
  for (size_t i = 0; i < found.size(); ++i) kept[i] = classifier.Classify(i, &found[i].status);
  for (size_t i = 0; i < found.size(); ++i) {
    if (kept[i]) result.rows.push_back(std::move(found[i]));
  }
  return result;
}
