#include "recovery/Carver.h"

#include <algorithm>

#include "recovery/Payload.h"
#include "recovery/Record.h"
#include "recovery/Varint.h"

namespace {

int VarintLength(int64_t value) {
  int length = 1;
  for (uint64_t rest = static_cast<uint64_t>(value) >> 7; rest != 0 && length < 9; rest >>= 7) ++length;
  return length;
}

int64_t TypesLength(const std::vector<int64_t>& types) {
  int64_t total = 0;
  for (int64_t type : types) total += VarintLength(type);
  return total;
}

// The length of a record's header with these serial types: its own varint
// (two bytes from some 126 columns on), then theirs.
int64_t HeaderLength(const std::vector<int64_t>& types) {
  const int64_t typesLength = TypesLength(types);
  int length = 1;
  while (VarintLength(typesLength + length) > length) ++length;
  return typesLength + length;
}

// The 4 bytes of a freeblock's own header.
const size_t kFreeblockHeader = 4;
// Bytes a freed cell can leave unclaimed at its end: SQLite merges a
// fragment of up to 3 bytes into the freeblock.
const size_t kMaxFragment = 3;
// Longest payload-length and rowid varints before a record header that a
// carved freeblock cell is looked for after.
const size_t kMaxPrefix = 9;
// The longest value whose serial type takes one byte (below 128: a text or
// blob of 57 bytes), as a freeblock cell's overwritten first type must.
const int64_t kLongestOneByteTypeValue = 57;

// How firmly where a freeblock cell's reading ends bears it out.
enum Support : int { kBare = 1, kFollowed = 2, kFills = 3 };

// The intact cell at page[offset] as a carved one: where it ends (when all
// of it is on the page) and the bytes before its serial types: its payload
// length's, rowid's and header length's varints.
PageHints::Carved IntactCell(std::string_view page, size_t offset, uint32_t usable) {
  const CellStart start = ReadCellStart(page, offset, page.size());
  if (!start.valid) return {offset, 0, 0};
  // A payload longer than this keeps some of it on overflow pages.
  const bool local = start.payloadSize <= static_cast<int64_t>(usable) - 35;
  return {offset, local ? start.payloadStart + start.payloadSize : 0,
          start.payloadStart - offset + start.headerLengthSize};
}

// What the cells nearest the block page[offset, limit), intact or read
// before, say of the bytes before its cell's serial types. Rows are mostly
// written in rowid order, so a freed cell's rowid, and the length of its
// varint, is most often that of its neighbours: those of both sides when
// they agree, else that of the cell that ends where it begins, else those
// of either side.
std::vector<size_t> NeighbourPrefixes(std::string_view page, size_t offset, size_t limit, const PageHints& hints,
                                      uint32_t usable) {
  std::optional<PageHints::Carved> before;
  std::optional<PageHints::Carved> after;
  auto meet = [&](const PageHints::Carved& cell) {
    if (cell.offset < offset && (!before || cell.offset > before->offset)) before = cell;
    if (cell.offset >= limit && (!after || cell.offset < after->offset)) after = cell;
  };
  for (uint32_t cell : hints.cells) meet(IntactCell(page, cell, usable));
  for (const PageHints::Carved& cell : hints.carved) meet(cell);
  if (before && after && before->prefix != after->prefix) {
    if (before->end == offset) return {before->prefix};
    return {before->prefix, after->prefix};
  }
  if (before) return {before->prefix};
  if (after) return {after->prefix};
  return {};
}

// Whether the bytes from `from` up to `end` are the last bytes of the varint
// of `headerLength` (the ones before `from` were overwritten).
bool HeaderLengthEndsAt(std::string_view region, size_t from, size_t end, int64_t headerLength) {
  const int size = VarintLength(headerLength);
  for (int i = 0; i < size; ++i) {
    const size_t at = end - size + i;
    if (at < from) continue;
    const int shift = 7 * (size - 1 - i);
    const uint8_t expected = static_cast<uint8_t>(((headerLength >> shift) & 0x7f) | (i + 1 < size ? 0x80 : 0));
    if (static_cast<uint8_t>(region[at]) != expected) return false;
  }
  return true;
}

}  // namespace

Carver::Carver(const FileImage& image, const TableShape& table, const std::unordered_set<uint32_t>& trunkPages)
    : image_(image), table_(table), trunkPages_(trunkPages) {
  for (const Column& column : table.columns) affinities_.push_back(AffinityOf(column.declaredType));
}

bool Carver::TypeFits(size_t column, int64_t type) const {
  if (static_cast<int>(column) == table_.rowidColumn) return type == 0;
  if (type == 0) return true;
  switch (affinities_[column]) {
    case Affinity::Integer:
    case Affinity::Real:
    case Affinity::Numeric:
      return type <= 9;
    case Affinity::Text:
      return type >= 13 && type % 2 == 1;
    case Affinity::Blob:
      return true;
  }
  return false;
}

bool Carver::RestFits(const std::vector<int64_t>& rest) const {
  if (rest.size() + 1 != table_.columns.size()) return false;
  for (size_t i = 0; i < rest.size(); ++i) {
    if (!TypeFits(i + 1, rest[i])) return false;
  }
  return true;
}

bool Carver::Fits(const std::vector<int64_t>& types) const {
  if (types.size() != table_.columns.size()) return false;
  for (size_t i = 0; i < types.size(); ++i) {
    if (!TypeFits(i, types[i])) return false;
  }
  return true;
}

std::optional<CarvedRecord> Carver::Assemble(std::string_view page, size_t cellStart, size_t typesStart, size_t limit,
                                             const std::vector<int64_t>& types) const {
  if (!Fits(types)) return std::nullopt;
  const int64_t headerLength = HeaderLength(types);
  const int64_t body = BodyLength(types);
  const size_t headerLengthSize = VarintLength(headerLength);
  // A body of no bytes (only NULLs, 0s and 1s) is no evidence of a row:
  // zeroed bytes decode so. The payload's length and the rowid take a byte each at least.
  if (body <= 0 || typesStart < cellStart + 2 + headerLengthSize) return std::nullopt;
  std::string storage;
  std::string_view payload;
  CarvedRecord record;
  if (!ReadPayload(image_, CellKind::TableLeaf, page, typesStart - headerLengthSize, limit, headerLength + body,
                   &storage, &payload, &record.end, &trunkPages_) ||
      payload.size() <= static_cast<size_t>(headerLength)) {
    return std::nullopt;
  }
  const TextEncoding encoding = image_.Header().encoding;
  const std::string_view stored = payload.substr(headerLength);
  // Cut short where its overflow chain reached a freelist trunk.
  record.partial = stored.size() < static_cast<uint64_t>(body);
  if (!(record.partial ? DecodeBodyStart(stored, types, encoding, &record.values)
                       : DecodeBody(stored, types, encoding, &record.values))) {
    return std::nullopt;
  }
  for (const SqlValue& value : record.values) {
    if (value.kind == SqlValue::Kind::Text && value.bytes.find('\0') != std::string::npos) return std::nullopt;
  }
  record.offset = cellStart;
  return record;
}

size_t Carver::AssembledEnd(size_t typesStart, const std::vector<int64_t>& types) const {
  const int64_t headerLength = HeaderLength(types);
  const int64_t payloadSize = headerLength + BodyLength(types);
  const uint32_t local = LocalPayloadSize(payloadSize, image_.Header().UsableSize(), CellKind::TableLeaf);
  return typesStart - VarintLength(headerLength) + local + (local < payloadSize ? 4 : 0);
}

CellStart ReadCellStart(std::string_view page, size_t offset, size_t limit) {
  const std::string_view region = page.substr(0, std::min(limit, page.size()));
  CellStart start;
  const int sizeLength = ReadVarint(region, offset, &start.payloadSize);
  if (sizeLength == 0) return start;
  const int rowidLength = ReadVarint(region, offset + sizeLength, &start.rowid);
  if (rowidLength == 0 || start.rowid <= 0) return start;
  start.payloadStart = offset + sizeLength + rowidLength;
  start.headerLengthSize = ReadVarint(region, start.payloadStart, &start.headerLength);
  start.valid = start.headerLengthSize != 0 && start.headerLengthSize <= 3 && start.payloadSize >= start.headerLength;
  return start;
}

std::optional<CarvedRecord> Carver::CellAt(std::string_view page, size_t offset, size_t limit) const {
  return CellAt(page, offset, limit, ReadCellStart(page, offset, limit));
}

bool Carver::ReadHeader(std::string_view page, size_t limit, const CellStart& start,
                        std::vector<int64_t>* types) const {
  // The header length, then at least one byte per column's type.
  const int64_t columns = static_cast<int64_t>(table_.columns.size());
  const int64_t headerLength = start.headerLength;
  if (!start.valid || headerLength < start.headerLengthSize + columns ||
      headerLength > start.headerLengthSize + 9 * columns) {
    return false;
  }
  const std::string_view region = page.substr(0, std::min(limit, page.size()));
  size_t typesEnd = 0;
  if (!ReadSerialTypes(region, start.payloadStart + start.headerLengthSize, table_.columns.size(), types, &typesEnd)) {
    return false;
  }
  if (static_cast<int64_t>(typesEnd - start.payloadStart) != headerLength || HeaderLength(*types) != headerLength) {
    return false;
  }
  return headerLength + BodyLength(*types) == start.payloadSize && BodyLength(*types) >= 0;
}

bool Carver::HeaderAt(std::string_view page, size_t limit, const CellStart& start) const {
  std::vector<int64_t> types;
  return ReadHeader(page, limit, start, &types) && Fits(types);
}

std::optional<CarvedRecord> Carver::CellAt(std::string_view page, size_t offset, size_t limit,
                                           const CellStart& start) const {
  std::vector<int64_t> types;
  if (!ReadHeader(page, limit, start, &types)) return std::nullopt;
  std::optional<CarvedRecord> record =
      Assemble(page, offset, start.payloadStart + start.headerLengthSize, std::min(limit, page.size()), types);
  if (record) record->rowid = start.rowid;
  return record;
}

Carver::Types Carver::TypesOfLength(size_t column, int64_t length, const std::vector<int64_t>& seen) const {
  Types candidates;
  const auto add = [&](int64_t type) {
    if (SerialTypeLength(type) != length || !TypeFits(column, type) || VarintLength(type) != 1) return;
    if (std::find(candidates.begin(), candidates.end(), type) == candidates.end()) {
      candidates.types[candidates.count++] = type;
    }
  };
  if (length == 0) {
    for (int64_t type : {0, 8, 9}) add(type);
    if (candidates.count > 1) {
      Types shown;
      for (int64_t type : seen) {
        const bool allowed = std::find(candidates.begin(), candidates.end(), type) != candidates.end();
        if (allowed && std::find(shown.begin(), shown.end(), type) == shown.end()) shown.types[shown.count++] = type;
      }
      if (shown.count == 1) {
        candidates = shown;
      } else {
        candidates.count = 1;
        candidates.doubtful = true;
      }
    }
  } else {
    for (int64_t type = 1; type <= 7; ++type) add(type);
    add(12 + 2 * length);
    add(13 + 2 * length);
  }
  return candidates;
}

bool Carver::FreedCellsFill(std::string_view page, size_t from, size_t limit) const {
  size_t at = from;
  while (at + kMaxFragment < limit) {
    if (std::optional<CarvedRecord> cell = CellAt(page, at, limit)) {
      at = cell->end;
      continue;
    }
    if (at + kFreeblockHeader > limit) return false;
    // A freeblock header: the next block (after this one, on the page) or none, and the size.
    const size_t next = ReadUInt16(page, at);
    const size_t size = ReadUInt16(page, at + 2);
    if (size < kFreeblockHeader || at + size > limit || (next != 0 && (next < at + size || next >= page.size()))) {
      return false;
    }
    at += size;
  }
  return true;
}

int Carver::Support(std::string_view page, const CarvedRecord& record, size_t limit) const {
  if (record.end + kMaxFragment >= limit) return kFills;
  return FreedCellsFill(page, record.end, limit) || CellAt(page, record.end, limit) ? kFollowed : kBare;
}

void Carver::RebuiltFirstType(std::string_view page, size_t offset, size_t limit, const std::vector<int64_t>& rest,
                              size_t restEnd, const std::vector<int64_t>& firstTypes,
                              std::vector<Reading>* readings) const {
  // Payload length, rowid and header length took three bytes, the first
  // serial type the fourth: the rest of the types follow.
  std::vector<int64_t> types{0};
  types.insert(types.end(), rest.begin(), rest.end());
  auto withFirst = [&](int64_t first, bool doubtful) {
    types[0] = first;
    std::optional<CarvedRecord> record = Assemble(page, offset, offset + 3, limit, types);
    if (record) record->doubtful = doubtful;
    return record;
  };
  const int64_t known = static_cast<int64_t>(restEnd - offset) + BodyLength(rest);
  const size_t before = readings->size();
  for (size_t fragment = 0; fragment <= kMaxFragment && readings->size() == before; ++fragment) {
    const int64_t length = static_cast<int64_t>(limit - offset - fragment) - known;
    if (length < 0) break;
    const Types firsts = TypesOfLength(0, length, firstTypes);
    for (int64_t first : firsts) {
      std::optional<CarvedRecord> record = withFirst(first, firsts.doubtful);
      if (record && record->end + kMaxFragment >= limit) {
        readings->push_back({std::move(*record), kFreeblockHeader - 1, kFills});
        break;
      }
    }
  }
  // The block may hold more than this cell. The cells freed after it that
  // the block took in lead from its end to the block's end: the first type
  // is one whose record ends where the first of them begins.
  std::vector<Reading> ending;
  std::vector<int64_t> endingTypes;
  const int64_t longest = std::min(static_cast<int64_t>(limit - offset) - known, kLongestOneByteTypeValue);
  for (int64_t length = 0; length <= longest && ending.empty(); ++length) {
    const Types firsts = TypesOfLength(0, length, firstTypes);
    for (int64_t first : firsts) {
      // Most lengths end nowhere near a freed cell: they are ruled out
      // before any value is read.
      types[0] = first;
      if (!Fits(types)) continue;
      const size_t end = AssembledEnd(offset + 3, types);
      if (end + kMaxFragment >= limit || !FreedCellsFill(page, end, limit)) continue;
      std::optional<CarvedRecord> record = withFirst(first, firsts.doubtful);
      if (!record) continue;
      ending.push_back({std::move(*record), kFreeblockHeader - 1, kFollowed});
      endingTypes.push_back(first);
    }
  }
  if (ending.size() == 1) {
    readings->push_back(std::move(ending[0]));
    return;
  }
  const bool filled = readings->size() != before;
  // Else the intact records say the first type, among those if any.
  for (int64_t first : firstTypes) {
    if (!TypeFits(0, first) || VarintLength(first) != 1) continue;
    if (ending.empty()) {
      if (filled) return;
      if (std::optional<CarvedRecord> record = withFirst(first, false)) {
        readings->push_back({std::move(*record), kFreeblockHeader - 1, kBare});
        return;
      }
    } else {
      const auto found = std::find(endingTypes.begin(), endingTypes.end(), first);
      if (found != endingTypes.end()) {
        readings->push_back(std::move(ending[found - endingTypes.begin()]));
        return;
      }
    }
  }
}

std::optional<CarvedRecord> Carver::FreeblockCell(std::string_view page, size_t offset, size_t limit,
                                                  PageHints& hints) const {
  limit = std::min(limit, page.size());
  const size_t columns = table_.columns.size();
  if (columns == 0 || offset + kFreeblockHeader >= limit) return std::nullopt;
  const std::string_view region = page.substr(0, limit);
  const size_t typesStart = offset + kFreeblockHeader;
  std::vector<Reading> readings;
  // Rest types that do not fit the columns after the first make no record
  // whatever the first type.
  std::vector<int64_t> rest;
  size_t restEnd = 0;
  if (ReadSerialTypes(region, typesStart, columns - 1, &rest, &restEnd) && BodyLength(rest) >= 0 && RestFits(rest)) {
    static const std::vector<int64_t> kNone;
    RebuiltFirstType(page, offset, limit, rest, restEnd, hints.table == &table_ ? hints.firstTypes : kNone,
                     &readings);
  }
  // Longer payload-length, rowid or header-length varints: every serial type
  // survives, and the end of the header length's varint just before them
  // unless they start at once.
  std::vector<int64_t> types;
  for (size_t start = typesStart; start <= typesStart + kMaxPrefix && start < limit; ++start) {
    // The header length's varint ends with a byte below 128.
    if (start > typesStart && (static_cast<uint8_t>(region[start - 1]) & 0x80) != 0) continue;
    size_t typesEnd = 0;
    if (!ReadSerialTypes(region, start, columns, &types, &typesEnd)) continue;
    const bool lengthSeen = start > typesStart && HeaderLengthEndsAt(region, typesStart, start, HeaderLength(types));
    if (start > typesStart && !lengthSeen) continue;
    std::optional<CarvedRecord> record = Assemble(page, offset, start, limit, types);
    if (!record) continue;
    const int support = std::max<int>(Support(page, *record, limit), lengthSeen ? kFollowed : kBare);
    readings.push_back({std::move(*record), start - offset, support});
  }
  return Choose(readings, page, offset, limit, hints);
}

std::optional<CarvedRecord> Carver::Choose(std::vector<Reading>& readings, std::string_view page, size_t offset,
                                           size_t limit, PageHints& hints) const {
  // A record ends where the first cell freed after it begins: one that
  // ends further holds that cell's start.
  size_t nearest = SIZE_MAX;
  for (const Reading& reading : readings) {
    if (reading.support == kFollowed) nearest = std::min(nearest, reading.record.end);
  }
  int best = 0;
  for (Reading& reading : readings) {
    if (reading.record.end > nearest) reading.support = 0;
    best = std::max(best, reading.support);
  }
  std::vector<Reading*> top;
  for (Reading& reading : readings) {
    if (best != 0 && reading.support == best) top.push_back(&reading);
  }
  auto samePrefix = [](const std::vector<Reading*>& among) {
    return !among.empty() &&
           std::all_of(among.begin(), among.end(), [&](const Reading* r) { return r->prefix == among[0]->prefix; });
  };
  auto take = [&](Reading* reading) {
    hints.carved.push_back({offset, reading->record.end, reading->prefix});
    return std::move(reading->record);
  };
  if (samePrefix(top) && best > kBare) return take(top[0]);
  if (top.empty()) return std::nullopt;
  const std::vector<size_t> neighbours =
      NeighbourPrefixes(page, offset, limit, hints, image_.Header().UsableSize());
  // A reading whose end nothing bears out is of a short cell, unless the
  // cells around it have longer starts, as they would when its values
  // were read shifted.
  if (samePrefix(top) && top[0]->prefix == kFreeblockHeader - 1 && neighbours.empty()) return take(top[0]);
  std::vector<Reading*> agreeing;
  for (Reading* reading : top) {
    if (std::find(neighbours.begin(), neighbours.end(), reading->prefix) != neighbours.end()) {
      agreeing.push_back(reading);
    }
  }
  if (samePrefix(agreeing)) return take(agreeing[0]);
  ++hints.doubts;
  return std::nullopt;
}
