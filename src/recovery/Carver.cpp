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

std::optional<CarvedRecord> Carver::CellAt(std::string_view page, size_t offset, size_t limit,
                                           const CellStart& start) const {
  // The header length, then at least one byte per column's type.
  const int64_t columns = static_cast<int64_t>(table_.columns.size());
  const int64_t headerLength = start.headerLength;
  if (!start.valid || headerLength < start.headerLengthSize + columns ||
      headerLength > start.headerLengthSize + 9 * columns) {
    return std::nullopt;
  }
  limit = std::min(limit, page.size());
  const std::string_view region = page.substr(0, limit);
  const size_t payloadStart = start.payloadStart;
  const int64_t payloadSize = start.payloadSize;
  const int64_t rowid = start.rowid;
  std::vector<int64_t> types;
  size_t typesEnd = 0;
  const size_t typesStart = payloadStart + start.headerLengthSize;
  if (!ReadSerialTypes(region, typesStart, table_.columns.size(), &types, &typesEnd)) return std::nullopt;
  if (static_cast<int64_t>(typesEnd - payloadStart) != headerLength || HeaderLength(types) != headerLength) {
    return std::nullopt;
  }
  if (headerLength + BodyLength(types) != payloadSize || BodyLength(types) < 0) return std::nullopt;
  std::optional<CarvedRecord> record = Assemble(page, offset, typesStart, limit, types);
  if (record) record->rowid = rowid;
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
    // NULL, 0 and 1 take no bytes: the intact records say which is usual.
    for (int64_t type : seen) add(type);
    for (int64_t type : {0, 8, 9}) add(type);
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
    const size_t size = ReadUInt16(page, at + 2);
    if (size < kFreeblockHeader || at + size > limit) return false;
    at += size;
  }
  return true;
}

std::optional<CarvedRecord> Carver::FreeblockCell(std::string_view page, size_t offset, size_t limit,
                                                  const std::vector<int64_t>& firstTypes) const {
  limit = std::min(limit, page.size());
  const size_t columns = table_.columns.size();
  if (columns == 0 || offset + kFreeblockHeader >= limit) return std::nullopt;
  const std::string_view region = page.substr(0, limit);
  const size_t typesStart = offset + kFreeblockHeader;
  auto fillsBlock = [&](const CarvedRecord& record) { return record.end + kMaxFragment >= limit; };

  // Payload length, rowid and header length took three bytes, the first
  // serial type the fourth: the rest of the types follow.
  std::vector<int64_t> rest;
  size_t restEnd = 0;
  // Rest types that do not fit the columns after the first make no record
  // whatever the first type.
  const bool restRead = ReadSerialTypes(region, typesStart, columns - 1, &rest, &restEnd) && BodyLength(rest) >= 0 &&
                        RestFits(rest);
  std::vector<int64_t> withRest;  // the first type, then the rest
  auto withFirst = [&](int64_t first) {
    if (withRest.empty()) {
      withRest.push_back(first);
      withRest.insert(withRest.end(), rest.begin(), rest.end());
    }
    withRest[0] = first;
    return Assemble(page, offset, offset + 3, limit, withRest);
  };
  if (restRead) {
    const int64_t known = static_cast<int64_t>(restEnd - offset) + BodyLength(rest);
    for (size_t fragment = 0; fragment <= kMaxFragment; ++fragment) {
      const int64_t length = static_cast<int64_t>(limit - offset - fragment) - known;
      if (length < 0) break;
      for (int64_t first : TypesOfLength(0, length, firstTypes)) {
        std::optional<CarvedRecord> record = withFirst(first);
        if (record && fillsBlock(*record)) return record;
      }
    }
  }
  // Longer payload-length, rowid or header-length varints: every serial type
  // survives, and the end of the header length's varint just before them
  // unless they start at once.
  for (size_t start = typesStart; start <= typesStart + kMaxPrefix && start < limit; ++start) {
    std::vector<int64_t> types;
    size_t typesEnd = 0;
    if (!ReadSerialTypes(region, start, columns, &types, &typesEnd)) continue;
    const bool lengthSeen = start > typesStart && HeaderLengthEndsAt(region, typesStart, start, HeaderLength(types));
    if (start > typesStart && !lengthSeen) continue;
    std::optional<CarvedRecord> record = Assemble(page, offset, start, limit, types);
    if (record && (lengthSeen || fillsBlock(*record))) return record;
  }
  if (!restRead) return std::nullopt;
  // The block holds more than this cell. The cells freed after it that the
  // block took in lead from its end to the block's end: the first type is
  // one whose record ends where they begin.
  std::vector<CarvedRecord> ending;
  std::vector<int64_t> endingTypes;
  const int64_t known = static_cast<int64_t>(restEnd - offset) + BodyLength(rest);
  const int64_t longest = std::min(static_cast<int64_t>(limit - offset) - known, kLongestOneByteTypeValue);
  for (int64_t length = 0; length <= longest; ++length) {
    for (int64_t first : TypesOfLength(0, length, {})) {
      std::optional<CarvedRecord> record = withFirst(first);
      if (!record || !FreedCellsFill(page, record->end, limit)) continue;
      ending.push_back(std::move(*record));
      endingTypes.push_back(first);
    }
  }
  if (ending.size() == 1) return ending[0];
  // Else the intact records say the first type, among those if any.
  for (int64_t first : firstTypes) {
    if (!TypeFits(0, first) || VarintLength(first) != 1) continue;
    if (ending.empty()) {
      if (std::optional<CarvedRecord> record = withFirst(first)) return record;
    } else {
      const auto found = std::find(endingTypes.begin(), endingTypes.end(), first);
      if (found != endingTypes.end()) return ending[found - endingTypes.begin()];
    }
  }
  return std::nullopt;
}
