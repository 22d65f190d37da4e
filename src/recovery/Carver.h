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

  // A whole cell (payload length, rowid, record) at page[offset], ending by `limit`.
  std::optional<CarvedRecord> CellAt(std::string_view page, size_t offset, size_t limit) const;
  // The same with its start read by ReadCellStart(page, offset, limit).
  std::optional<CarvedRecord> CellAt(std::string_view page, size_t offset, size_t limit, const CellStart& start) const;

  // A cell whose first four bytes a freeblock's header (next pointer and
  // size) overwrote: the cell's payload length, rowid, header length and,
  // for short cells, the first serial type. That type is rebuilt from the
  // room left to `limit` (a cell freed alone fills its block but for a
  // fragment of up to 3 bytes) and the column's declared type, or else from
  // `firstTypes`, the first column's serial types in intact records of the
  // same table.
  std::optional<CarvedRecord> FreeblockCell(std::string_view page, size_t offset, size_t limit,
                                            const std::vector<int64_t>& firstTypes) const;

  // Whether the serial types fit the table's columns.
  bool Fits(const std::vector<int64_t>& types) const;

 private:
  const FileImage& image_;
  const TableShape& table_;
  const std::unordered_set<uint32_t>& trunkPages_;
  std::vector<Affinity> affinities_;

  bool TypeFits(size_t column, int64_t type) const;
  // Whether the serial types fit the columns after the first.
  bool RestFits(const std::vector<int64_t>& rest) const;
  // The record whose serial types, these, start at typesStart (after the
  // header length's varint), through its overflow chain. A chain that
  // reaches a freelist trunk gives the record's start, marked partial.
  std::optional<CarvedRecord> Assemble(std::string_view page, size_t cellStart, size_t typesStart, size_t limit,
                                       const std::vector<int64_t>& types) const;
  // Whether cells freed after a block's first fill page[from, limit): a cell
  // freed next to a free block joined it whole; one freed before the block
  // kept the header it got then, whose size is the cell's (or more, when it
  // took in free space after it).
  bool FreedCellsFill(std::string_view page, size_t from, size_t limit) const;
  // Serial types of one byte that a value of `length` bytes of the column
  // may have, each once; for a length of 0 those of `seen` first.
  struct Types {
    int64_t types[8];
    size_t count = 0;
    const int64_t* begin() const { return types; }
    const int64_t* end() const { return types + count; }
  };
  Types TypesOfLength(size_t column, int64_t length, const std::vector<int64_t>& seen) const;
};

#endif
