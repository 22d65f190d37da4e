#include "recovery/PageRows.h"

#include "recovery/BtreePage.h"
#include "recovery/FreeSpace.h"
#include "recovery/TableTree.h"
#include "recovery/Varint.h"

PageRows::PageRows(const FileImage& image, const std::vector<TableShape>& tables,
                   const std::unordered_set<uint32_t>& trunkPages)
    : image_(image), tables_(tables) {
  carvers_.reserve(tables.size());
  for (size_t t = 0; t < tables.size(); ++t) {
    carvers_.emplace_back(image, tables[t], trunkPages);
    if (!tables[t].withoutRowid) readable_.push_back(t);
  }
}

void LabelRow(const PageImage& page, size_t table, const TableShape& shape, std::optional<int64_t> rowid,
              size_t offset, RowSource source, RecoveredRow* row) {
  row->table = table;
  row->rowid = rowid;
  row->values.resize(shape.columns.size());
  const int alias = shape.rowidColumn;
  if (alias >= 0 && rowid && row->values[alias].kind == SqlValue::Kind::Null) {
    row->values[alias].kind = SqlValue::Kind::Integer;
    row->values[alias].integer = *rowid;
  }
  row->source = source;
  row->status = RowStatus::Live;
  row->file = page.file;
  row->offset = page.fileOffset + offset;
}

void PageRows::Add(const PageImage& page, size_t table, CarvedRecord record, RowSource source,
                   std::vector<RecoveredRow>* rows) const {
  if (record.doubtful) return;
  RecoveredRow row;
  row.values = std::move(record.values);
  row.partial = record.partial;
  LabelRow(page, table, tables_[table], record.rowid, record.offset, source, &row);
  rows->push_back(std::move(row));
}

std::optional<CarvedRecord> PageRows::RecordAt(std::string_view page, size_t offset, size_t end, bool damaged,
                                               size_t table, PageHints& hints,
                                               const CellStart& start) const {
  std::optional<CarvedRecord> record = carvers_[table].CellAt(page, offset, end, start);
  // A cell whose whole header is there kept its first bytes: its body was overwritten.
  if (!record && damaged && !carvers_[table].HeaderAt(page, end, start)) {
    record = carvers_[table].FreeblockCell(page, offset, end, hints);
  }
  return record;
}

void PageRows::Carve(const PageImage& page, size_t start, size_t end, bool freeblock,
                     const std::vector<size_t>& candidates, PageHints& hints, RowSource source,
                     std::vector<RecoveredRow>* rows) const {
  size_t offset = start;
  bool damaged = freeblock;
  // A cell right after a record is of that record's table; a block's first, of any.
  size_t previous = SIZE_MAX;
  while (offset < end) {
    std::optional<CarvedRecord> record;
    // Read once for every table: at most offsets no cell starts.
    const CellStart cell = ReadCellStart(page.bytes, offset, end);
    for (size_t table : candidates) {
      if (!cell.valid && !damaged) break;
      record = RecordAt(page.bytes, offset, end, damaged && (previous == SIZE_MAX || previous == table), table, hints,
                        cell);
      if (record) {
        offset = record->end;
        previous = table;
        Add(page, table, std::move(*record), source, rows);
        break;
      }
    }
    damaged = record.has_value();
    if (!record) ++offset;
  }
}

void PageRows::CarveFreedTail(const PageImage& page, size_t start, size_t end, const std::vector<size_t>& candidates,
                              PageHints& hints, RowSource source,
                              std::vector<RecoveredRow>* rows) const {
  while (end >= start + 4) {
    size_t offset = end - 4;
    while (offset > start && offset + ReadUInt16(page.bytes, offset + 2) != end) --offset;
    if (offset + ReadUInt16(page.bytes, offset + 2) != end) return;
    std::optional<CarvedRecord> record;
    for (size_t table : candidates) {
      record = carvers_[table].FreeblockCell(page.bytes, offset, end, hints);
      if (record) {
        Add(page, table, std::move(*record), source, rows);
        break;
      }
    }
    if (!record) return;
    end = offset;
  }
}

void PageRows::CarveEmptiedPage(const PageImage& page, size_t start, size_t end, const std::vector<size_t>& candidates,
                                PageHints& hints, RowSource source, std::vector<RecoveredRow>* rows) const {
  for (size_t offset = start; offset + 4 <= end;) {
    const size_t size = ReadUInt16(page.bytes, offset + 2);
    std::optional<CarvedRecord> record;
    if (size > 4 && offset + size <= end) {
      for (size_t table : candidates) {
        record = carvers_[table].FreeblockCell(page.bytes, offset, offset + size, hints);
        if (record) {
          Add(page, table, std::move(*record), source, rows);
          break;
        }
      }
    }
    offset = record ? record->end : offset + 1;
  }
}

void PageRows::CarveLeaf(const PageImage& page, const BtreePage& header, const std::vector<size_t>& candidates,
                         const std::vector<size_t>& gapCandidates, PageHints& hints, PageSources sources,
                         std::vector<RecoveredRow>* rows) const {
  const size_t first = rows->size();
  CarveLeafOnce(page, header, candidates, gapCandidates, hints, sources, rows);
  // Cells left in doubt may be read in the light of cells met after them.
  if (hints.doubts == 0 || hints.carved.empty()) return;
  rows->resize(first);
  hints.doubts = 0;
  CarveLeafOnce(page, header, candidates, gapCandidates, hints, sources, rows);
}

void PageRows::CarveLeafOnce(const PageImage& page, const BtreePage& header, const std::vector<size_t>& candidates,
                             const std::vector<size_t>& gapCandidates, PageHints& hints, PageSources sources,
                             std::vector<RecoveredRow>* rows) const {
  const uint32_t usable = image_.Header().UsableSize();
  for (const FreeRegion& block : Freeblocks(page.bytes, header, usable)) {
    Carve(page, block.offset, block.offset + block.size, true, candidates, hints, sources.freeblocks, rows);
  }
  const FreeRegion gap = UnallocatedGap(header, usable);
  Carve(page, gap.offset, gap.offset + gap.size, false, gapCandidates, hints, sources.unallocated, rows);
  CarveFreedTail(page, gap.offset, gap.offset + gap.size, candidates, hints, sources.unallocated, rows);
  if (header.cellCount == 0) {
    CarveEmptiedPage(page, gap.offset, gap.offset + gap.size, candidates, hints, sources.unallocated, rows);
  }
}

void PageRows::ReadCells(const PageImage& page, const BtreePage& header, size_t table,
                         const std::function<void(RecoveredRow&)>& visit) const {
  const uint32_t usable = image_.Header().UsableSize();
  TableCell cell;
  RecoveredRow row;
  for (uint32_t offset : CellOffsets(page.bytes, header, usable)) {
    if (!ReadTableCell(image_, page.bytes, offset, usable, &cell)) continue;
    // The two keep their texts' room for the cells that follow.
    std::swap(row.values, cell.values);
    LabelRow(page, table, tables_[table], cell.rowid, offset, RowSource::Live, &row);
    visit(row);
  }
}

void PageRows::CarveFreeSpace(const PageImage& page, const BtreePage& header, size_t table,
                              std::vector<RecoveredRow>* rows) const {
  const uint32_t usable = image_.Header().UsableSize();
  PageHints hints;
  hints.table = &tables_[table];
  hints.cells = CellOffsets(page.bytes, header, usable);
  for (uint32_t offset : hints.cells) {
    if (std::optional<int64_t> type = FirstSerialType(page.bytes, offset, usable)) hints.firstTypes.push_back(*type);
  }
  // A page the freelist gave to this table keeps its earlier table's cells in its gap.
  std::vector<size_t> gapCandidates{table};
  for (size_t other : readable_) {
    if (other != table) gapCandidates.push_back(other);
  }
  CarveLeaf(page, header, {table}, gapCandidates, hints,
            {RowSource::Live, RowSource::Freeblock, RowSource::Unallocated}, rows);
}

bool PageRows::MayHold(const PageImage& page, size_t table) const {
  const uint32_t usable = image_.Header().UsableSize();
  if (page.bytes.size() < usable) return true;
  const std::optional<BtreePage> header = ReadBtreePage(page.bytes, page.number, usable);
  if (!header || header->type != BtreePage::TableLeaf) return true;
  TableCell cell;
  for (uint32_t offset : CellOffsets(page.bytes, *header, usable)) {
    if (ReadTableCell(image_, page.bytes, offset, usable, &cell)) return carvers_[table].Fits(cell.types);
  }
  return true;
}

void PageRows::Read(const PageImage& page, const std::vector<size_t>& candidates, PageSources sources,
                    std::vector<RecoveredRow>* rows) const {
  const uint32_t usable = image_.Header().UsableSize();
  if (page.bytes.size() < usable) return;
  const std::optional<BtreePage> header = ReadBtreePage(page.bytes, page.number, usable);
  // An index page holds index entries, whose records may have a table's shape.
  if (header && (header->type == BtreePage::IndexLeaf || header->type == BtreePage::IndexInterior)) return;
  if (!header || header->type != BtreePage::TableLeaf) {
    PageHints none;
    Carve(page, 0, usable, false, candidates, none, sources.freeblocks, rows);
    return;
  }
  PageHints hints;
  TableCell cell;
  for (uint32_t offset : CellOffsets(page.bytes, *header, usable)) {
    if (!ReadTableCell(image_, page.bytes, offset, usable, &cell)) continue;
    hints.cells.push_back(offset);
    for (size_t table : candidates) {
      if (!carvers_[table].Fits(cell.types)) continue;
      if (!cell.types.empty()) hints.firstTypes.push_back(cell.types[0]);
      Add(page, table, CarvedRecord{cell.rowid, std::move(cell.values), offset, cell.end}, sources.cells, rows);
      break;
    }
  }
  if (candidates.size() == 1) hints.table = &tables_[candidates[0]];
  CarveLeaf(page, *header, candidates, candidates, hints, sources, rows);
}
