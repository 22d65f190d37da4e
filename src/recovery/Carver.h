#ifndef YH_RECOVERY_CARVER_H
#define YH_RECOVERY_CARVER_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "recovery/FileImage.h"
#include "recovery/SqlValue.h"
#include "recovery/TableShape.h"

// A record rebuilt from bytes no b-tree points to.
struct CarvedRecord {
  std::optional<int64_t> rowid;  // unknown when its bytes were overwritten
  SqlValues values;
  size_t offset = 0;  // where the cell began on its page
  size_t end = 0;     // after its local part
  bool partial = false;  // its overflow chain was cut: values past the cut are NULL
  // Its first value, NULL, 0 or 1, could not be told: a cell lay there, but no row is known.
  bool doubtful = false;
};

// What a table leaf cell begins with, read before any table is tried: the
// payload's length, the rowid and the record header's length.
struct CellStart {
  bool valid = false;  // false when these do not decode as a cell's
  int64_t payloadSize = 0;
  int64_t rowid = 0;
  int64_t headerLength = 0;
  int headerLengthSize = 0;
  size_t payloadStart = 0;
};

// The start of a cell at page[offset], reading no byte from `limit` on.
CellStart ReadCellStart(std::string_view page, size_t offset, size_t limit);

// What a page's cells tell of the cells freed among them.
struct PageHints {
  // The first column's serial types in the intact records of the page's
  // own table, `table` (none known when null): they hint for it alone.
  std::vector<int64_t> firstTypes;
  const TableShape* table = nullptr;
  std::vector<uint32_t> cells;      // where the intact cells are
  // Filled while carving: the freed cells read (where each began and
  // ended, and how many bytes came before its serial types), and how many
  // cells were left in doubt.
  struct Carved {
    size_t offset;
    size_t end;
    size_t prefix;
  };
  std::vector<Carved> carved;
  size_t doubts = 0;
};

// Rebuilds records of one table from free bytes. A record is returned only
// when all of it decodes consistently with the table: one serial type per
// column, each allowed by the column's declared type, lengths inside the
// region (or its overflow chain), texts valid in the database's encoding
// and free of zero bytes, and a body of at least one byte. A record whose
// overflow chain runs into a freelist trunk (whose first bytes were
// overwritten) is given as far as the chain goes, marked partial.
class Carver {
 public:
  // Overflow chains through `trunkPages` (freelist trunks, whose first
  // bytes were overwritten) are damaged.
  Carver(const FileImage& image, const TableShape& table, const std::unordered_set<uint32_t>& trunkPages);

  // Whether the cell whose start is `start` has the whole header of a record
  // of the table: serial types that fit its columns and agree with the
  // header's and the payload's lengths.
  bool HeaderAt(std::string_view page, size_t limit, const CellStart& start) const;

  // A whole cell (payload length, rowid, record) at page[offset], ending by `limit`.
  std::optional<CarvedRecord> CellAt(std::string_view page, size_t offset, size_t limit) const;
  // The same with its start read by ReadCellStart(page, offset, limit).
  std::optional<CarvedRecord> CellAt(std::string_view page, size_t offset, size_t limit, const CellStart& start) const;

  // A cell whose first four bytes a freeblock's header (next pointer and
  // size) overwrote: the cell's payload length, rowid, header length and,
  // for short cells, the first serial type. Each reading of what is left is
  // weighed by where its record ends: where the block does (a cell freed
  // alone fills its block but for a fragment of up to 3 bytes), where cells
  // freed after it begin, or nowhere known. A rebuilt first type comes from
  // that end and the column's declared type, or else from the first
  // column's types in the page's intact records. Readings that disagree on
  // how long the lost start was are told apart by the intact cells written
  // just before and after the block; a cell they leave in doubt is not given.
  std::optional<CarvedRecord> FreeblockCell(std::string_view page, size_t offset, size_t limit,
                                            PageHints& hints) const;

  // Whether the serial types fit the table's columns.
  bool Fits(const std::vector<int64_t>& types) const;

 private:
  const FileImage& image_;
  const TableShape& table_;
  const std::unordered_set<uint32_t>& trunkPages_;
  std::vector<Affinity> affinities_;

  bool TypeFits(size_t column, int64_t type) const;
  // The serial types of the cell whose start is `start`, when they agree
  // with its header's and payload's lengths.
  bool ReadHeader(std::string_view page, size_t limit, const CellStart& start, std::vector<int64_t>* types) const;
  // Whether the serial types fit the columns after the first.
  bool RestFits(const std::vector<int64_t>& rest) const;
  // The record whose serial types, these, start at typesStart (after the
  // header length's varint), through its overflow chain. A chain that
  // reaches a freelist trunk gives the record's start, marked partial.
  std::optional<CarvedRecord> Assemble(std::string_view page, size_t cellStart, size_t typesStart, size_t limit,
                                       const std::vector<int64_t>& types) const;
  // Where on the page the record Assemble would give for these types ends,
  // worked out from their lengths alone, without reading its values.
  size_t AssembledEnd(size_t typesStart, const std::vector<int64_t>& types) const;
  // Whether cells freed after a block's first fill page[from, limit): a cell
  // freed next to a free block joined it whole; one freed before the block
  // kept the header it got then, whose size is the cell's (or more, when it
  // took in free space after it).
  bool FreedCellsFill(std::string_view page, size_t from, size_t limit) const;
  // A reading of a freeblock cell: its record, how many bytes came before
  // its serial types, and how firmly where it ends bears it out.
  struct Reading {
    CarvedRecord record;
    size_t prefix = 0;
    int support = 0;
  };
  // Adds the readings of the cell that rebuild its first serial type, before
  // `rest`, the types that follow it: one that fills the block, one that
  // ends where the first cell freed after it begins, or else one whose
  // first type the page's intact records (`firstTypes`) show.
  void RebuiltFirstType(std::string_view page, size_t offset, size_t limit, const std::vector<int64_t>& rest,
                        size_t restEnd, const std::vector<int64_t>& firstTypes, std::vector<Reading>* readings) const;
  // The reading to give among those of one cell: the best borne out, when
  // they agree on how long the lost start was or the cells around the
  // block (intact or read before) say which does; a reading whose end
  // nothing bears out needs them too, but for a short cell's (whose first
  // type the header took) on a block no cell is around.
  std::optional<CarvedRecord> Choose(std::vector<Reading>& readings, std::string_view page, size_t offset,
                                     size_t limit, PageHints& hints) const;
  // How firmly the end of a record read from a block ending at `limit` bears it out.
  int Support(std::string_view page, const CarvedRecord& record, size_t limit) const;
  // Serial types of one byte that a value of `length` bytes of the column
  // may have, each once. NULL, 0 and 1 take no bytes: of those the column
  // allows, the one `seen` (the page's intact records) shows, if only one;
  // else the first, `doubtful`.
  struct Types {
    int64_t types[8];
    size_t count = 0;
    bool doubtful = false;
    const int64_t* begin() const { return types; }
    const int64_t* end() const { return types + count; }
  };
  Types TypesOfLength(size_t column, int64_t length, const std::vector<int64_t>& seen) const;
};

#endif
