#include "recovery/RecoverRows.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "recovery/Classifier.h"
#include "recovery/FreeSpace.h"
#include "recovery/IndexTree.h"
#include "recovery/PageRows.h"
#include "recovery/RowsInJobOrder.h"
#include "recovery/Schema.h"
#include "recovery/TableTree.h"

namespace {

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

// One page to carve: the free space of a live leaf (with its header), or
// all of a page outside the live trees, for its table when known (else
// SIZE_MAX: for every table) and from an earlier image when one is named.
struct CarveJob {
  uint32_t number;
  std::optional<BtreePage> header;
  size_t table;
  std::optional<PageLocation> earlier;
  RowSource source;
};

}  // namespace

RecoveredRows RecoverRows(const FileImage& image, bool withLive, const LiveValues& liveValues) {
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
  // Every page to carve is listed first, then carved on two threads.
  std::vector<CarveJob> jobs;
  ForEachLiveLeaf(image, result.tables, readable, [&](const PageImage& page, const BtreePage& header, size_t table) {
    const auto known = owner.find(page.number);
    if (known != owner.end()) known->second = table;
    jobs.push_back({page.number, header, table, std::nullopt, RowSource::Live});
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
    jobs.push_back({number, std::nullopt, known != freedFrom.end() ? known->second : SIZE_MAX, std::nullopt,
                    RowSource::Freelist});
  }
  for (const PageLocation& earlier : image.EarlierPages()) {
    const RowSource source = earlier.file == StoredIn::Journal ? RowSource::Journal : RowSource::Wal;
    jobs.push_back({earlier.number, std::nullopt, owner.find(earlier.number)->second, earlier, source});
  }
  std::vector<RecoveredRow> found = RowsInJobOrder(jobs.size(), [&](size_t at, std::vector<RecoveredRow>* rows) {
    const CarveJob& job = jobs[at];
    if (job.header) {
      pageRows.CarveFreeSpace(image.Page(job.number), *job.header, job.table, rows);
      return;
    }
    const PageImage page = job.earlier ? image.Read(*job.earlier) : image.Page(job.number);
    // An earlier image of a page number that another table holds now may
    // be of any table.
    const bool owned = job.table != SIZE_MAX && (!job.earlier || pageRows.MayHold(page, job.table));
    const std::vector<size_t> own{job.table};
    pageRows.Read(page, owned ? own : readable, {job.source, job.source, job.source}, rows);
  });
  // The unique indexes, then the live rows read again a page at a time, sort the others.
  Classifier classifier(result.tables, found);
  for (size_t table : readable) {
    const std::vector<UniqueKey>& keys = result.tables[table].uniqueKeys;
    for (size_t key = 0; key < keys.size(); ++key) {
      if (result.tables[table].dropped || !classifier.WantsKey(table, key)) continue;
      PageSet seen(image.PageCount());
      ForEachIndexEntry(image, keys[key].rootPage, &seen,
                        [&](const SqlValues& entry) { classifier.MeetIndexEntry(table, key, entry); });
    }
  }
  std::vector<size_t> kept(result.tables.size(), SIZE_MAX);
  for (size_t table = 0; liveValues && table < kept.size(); ++table) kept[table] = liveValues(result.tables[table]);
  ForEachLiveLeaf(image, result.tables, readable, [&](const PageImage& page, const BtreePage& header, size_t table) {
    if (!withLive && !classifier.Wants(table)) return;
    pageRows.ReadCells(page, header, table, [&](RecoveredRow& row) {
      classifier.Meet(row);
      if (!withLive) return;
      if (row.values.size() <= kept[table]) {
        result.rows.push_back(row);
        return;
      }
      // The values past those kept are not copied at all.
      SqlValues values;
      std::swap(values, row.values);
      result.rows.push_back(row);
      result.rows.back().values.assign(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(kept[table]));
      std::swap(values, row.values);
    });
  });
  std::vector<bool> reported(found.size());
  for (size_t i = 0; i < found.size(); ++i) reported[i] = classifier.Classify(i, &found[i]);
  for (size_t i = 0; i < found.size(); ++i) {
    if (reported[i]) result.rows.push_back(std::move(found[i]));
  }
  return result;
}
