#ifndef YH_RECOVERY_PAGEROWS_H
#define YH_RECOVERY_PAGEROWS_H

#include <functional>
#include <unordered_set>
#include <vector>

#include "recovery/BtreePage.h"
#include "recovery/Carver.h"
#include "recovery/FileImage.h"
#include "recovery/RecoveredRow.h"

// What the rows of one page image are labelled with, by where on the page
// they were found.
struct PageSources {
  RowSource cells;
  RowSource freeblocks;
  RowSource unallocated;
};

// Makes `row`, whose values are already read, a row of table `table` (of
// shape `shape`) from the record at page[offset]: the rowid alias column
// holds the rowid when it is known.
void LabelRow(const PageImage& page, size_t table, const TableShape& shape, std::optional<int64_t> rowid,
              size_t offset, RowSource source, RecoveredRow* row);

// Reads the rows of single page images: the cells of a table leaf page, and
// records carved from its freeblocks and unallocated gap, or from the whole
// page when it is no b-tree page (a freelist trunk, a page overwritten in part).
class PageRows {
 public:
  PageRows(const FileImage& image, const std::vector<TableShape>& tables,
           const std::unordered_set<uint32_t>& trunkPages);

  // Calls visit with each live row of a leaf page of table `table`'s own
  // tree: every cell that decodes, whatever its shape. The row given is
  // overwritten by the next one.
  void ReadCells(const PageImage& page, const BtreePage& header, size_t table,
                 const std::function<void(RecoveredRow&)>& visit) const;

  // Records carved from the freeblocks and unallocated gap of a leaf page of
  // table `table`'s own tree; its intact cells hint at what freeblock
  // headers overwrote.
  void CarveFreeSpace(const PageImage& page, const BtreePage& header, size_t table,
                      std::vector<RecoveredRow>* rows) const;

  // Whether a page image may be of table `table`: false for a table leaf
  // whose first intact cell is of another shape (an auto-vacuumed database
  // gives a page number to another table).
  bool MayHold(const PageImage& page, size_t table) const;

  // Rows of a page image outside the current state's trees, for the
  // candidate tables (indexes into the tables): each cell or carved record
  // goes to the first candidate it fits. An index page gives none.
  void Read(const PageImage& page, const std::vector<size_t>& candidates, PageSources sources,
            std::vector<RecoveredRow>* rows) const;

 private:
  const FileImage& image_;
  const std::vector<TableShape>& tables_;
  std::vector<Carver> carvers_;
  std::vector<size_t> readable_;  // the tables that are no WITHOUT ROWID tables

  // Records of the freeblocks and the unallocated gap of a table leaf page,
  // each of the first of `candidates` (in the gap, of `gapCandidates`) it
  // fits; carved again when some were left in doubt,
  // in the light of the cells read without doubt.
  void CarveLeaf(const PageImage& page, const BtreePage& header, const std::vector<size_t>& candidates,
                 const std::vector<size_t>& gapCandidates, PageHints& hints, PageSources sources,
                 std::vector<RecoveredRow>* rows) const;
  // The same, carved once.
  void CarveLeafOnce(const PageImage& page, const BtreePage& header, const std::vector<size_t>& candidates,
                     const std::vector<size_t>& gapCandidates, PageHints& hints, PageSources sources,
                     std::vector<RecoveredRow>* rows) const;
  // Records in page[start, end). A freeblock's first cell, and any cell
  // right after a record (freed next to it, or moved out of the content area
  // as part of a freeblock), may have lost its first four bytes; the latter
  // is of that record's table.
  void Carve(const PageImage& page, size_t start, size_t end, bool freeblock, const std::vector<size_t>& candidates,
             PageHints& hints, RowSource source, std::vector<RecoveredRow>* rows) const;
  // Cells freed at the start of the content area join the gap, each with a
  // freeblock header that says how far it reached: found backwards from the
  // gap's end, each ending where the next begins.
  void CarveFreedTail(const PageImage& page, size_t start, size_t end, const std::vector<size_t>& candidates,
                      PageHints& hints, RowSource source, std::vector<RecoveredRow>* rows) const;
  // A page whose every cell was deleted: its gap holds the freed cells, each
  // behind the freeblock header (next pointer, size) it got when freed;
  // the cells that fill the block they name are carved.
  void CarveEmptiedPage(const PageImage& page, size_t start, size_t end, const std::vector<size_t>& candidates,
                        PageHints& hints, RowSource source, std::vector<RecoveredRow>* rows) const;
  // The record of `table` at page[offset]: a whole cell (whose start is
  // `start`), else, when the cell may have lost its first bytes, a freeblock's.
  std::optional<CarvedRecord> RecordAt(std::string_view page, size_t offset, size_t end, bool damaged, size_t table,
                                       PageHints& hints, const CellStart& start) const;
  void Add(const PageImage& page, size_t table, CarvedRecord record, RowSource source,
           std::vector<RecoveredRow>* rows) const;
};

#endif
