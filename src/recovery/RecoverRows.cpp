#include "recovery/RecoverRows.h"

#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "recovery/FreeSpace.h"
#include "recovery/PageRows.h"
#include "recovery/Schema.h"
#include "recovery/TableTree.h"

namespace {

// A row's values as one comparable key.
std::string ValuesKey(const SqlValues& values) {
  std::string key;
  for (const SqlValue& value : values) {
    key.push_back(static_cast<char>('0' + static_cast<int>(value.kind)));
    switch (value.kind) {
      case SqlValue::Kind::Integer:
        key += std::to_string(value.integer);
        break;
      case SqlValue::Kind::Real:
        key.append(reinterpret_cast<const char*>(&value.real), sizeof value.real);
        break;
      default:
        key += std::to_string(value.bytes.size()) + ':' + value.bytes;
    }
    key.push_back('|');
  }
  return key;
}

// Sorts the rows that are not live against the live ones of their table.
class Classifier {
 public:
  void AddLive(const RecoveredRow& row) {
    const std::string key = ValuesKey(row.values);
    if (row.rowid) liveByRowid_[{row.table, *row.rowid}] = key;
    liveValues_.insert({row.table, key});
  }

  // False for a row to leave out: a copy of a live row (same rowid and
  // values, or rowid unknown and the values of a live row) or met before.
  bool Classify(RecoveredRow* row) {
    const std::string key = ValuesKey(row->values);
    row->status = RowStatus::Deleted;
    if (row->rowid) {
      const auto live = liveByRowid_.find({row->table, *row->rowid});
      if (live != liveByRowid_.end()) {
        if (live->second == key) return false;
        row->status = RowStatus::EarlierVersion;
      }
    } else if (liveValues_.count({row->table, key}) != 0) {
      return false;
    }
    return reported_.insert({row->table, key}).second;
  }

 private:
  std::map<std::pair<size_t, int64_t>, std::string> liveByRowid_;
  std::set<std::pair<size_t, std::string>> liveValues_;
  std::set<std::pair<size_t, std::string>> reported_;
};

}  // namespace

RecoveredRows RecoverRows(const FileImage& image) {
  RecoveredRows result;
  result.tables = ReadSchema(image);
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
    ForEachTableLeaf(image, result.tables[table].rootPage, &seen, [&](const PageImage& page, const BtreePage&) {
      owner[page.number] = table;
      pageRows.Read(page, {table}, true, {RowSource::Live, RowSource::Freeblock, RowSource::Unallocated}, &found);
    });
  }
  std::vector<uint32_t> freePages = freelist.trunks;
  freePages.insert(freePages.end(), freelist.leaves.begin(), freelist.leaves.end());
  for (uint32_t number : freePages) {
    pageRows.Read(image.Page(number), readable, false, {RowSource::Freelist, RowSource::Freelist, RowSource::Freelist},
                  &found);
  }
  for (const PageImage& page : image.EarlierImages()) {
    const RowSource source = page.file == StoredIn::Journal ? RowSource::Journal : RowSource::Wal;
    const auto known = owner.find(page.number);
    const std::vector<size_t> candidates = known != owner.end() ? std::vector<size_t>{known->second} : readable;
    pageRows.Read(page, candidates, false, {source, source, source}, &found);
  }
  Classifier classifier;
  for (const RecoveredRow& row : found) {
    if (row.source == RowSource::Live) classifier.AddLive(row);
  }
  for (RecoveredRow& row : found) {
    if (row.source == RowSource::Live || classifier.Classify(&row)) result.rows.push_back(std::move(row));
  }
  return result;
}
