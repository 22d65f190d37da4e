#include "recovery/WalFrames.h"

#include "recovery/DatabaseHeader.h"
#include "recovery/Varint.h"

namespace {

const uint32_t kMagic = 0x377f0682;
const size_t kHeaderSize = 32;
const size_t kFrameHeaderSize = 24;

struct Checksum {
  uint32_t first = 0;
  uint32_t second = 0;
  bool operator==(const Checksum& other) const { return first == other.first && second == other.second; }
};

uint32_t Word(std::string_view bytes, size_t offset, bool bigEndian) {
  const uint32_t value = ReadUInt32(bytes, offset);
  if (bigEndian) return value;
  return (value >> 24) | ((value >> 8) & 0xff00) | ((value << 8) & 0xff0000) | (value << 24);
}

// The log's running checksum over 8-byte steps (bytes.size() is a multiple of 8).
Checksum Continue(Checksum sum, std::string_view bytes, bool bigEndian) {
  for (size_t i = 0; i + 8 <= bytes.size(); i += 8) {
    sum.first += Word(bytes, i, bigEndian) + sum.second;
    sum.second += Word(bytes, i + 4, bigEndian) + sum.first;
  }
  return sum;
}

Checksum Stored(std::string_view bytes, size_t offset) { return {ReadUInt32(bytes, offset), ReadUInt32(bytes, offset + 4)}; }

}  // namespace

WalFrames ReadWalFrames(const ByteSource& source, uint32_t fallbackPageSize) {
  WalFrames frames;
  std::string headerBuffer;
  const std::string_view wal = source.Read(0, kHeaderSize, &headerBuffer);
  if (wal.size() < kHeaderSize) return frames;
  const uint32_t magic = ReadUInt32(wal, 0);
  const bool headerValid = (magic & ~1u) == kMagic && IsValidPageSize(ReadUInt32(wal, 8));
  const bool bigEndian = (magic & 1) != 0;
  frames.pageSize = headerValid ? ReadUInt32(wal, 8) : fallbackPageSize;
  if (!IsValidPageSize(frames.pageSize)) return frames;
  Checksum sum = Continue({}, wal.substr(0, 24), bigEndian);
  bool chainHolds = headerValid && sum == Stored(wal, 24);
  const uint32_t salt1 = ReadUInt32(wal, 16);
  const uint32_t salt2 = ReadUInt32(wal, 20);
  size_t lastCommit = 0;  // frames before this index are committed
  std::vector<PageLocation> all;
  const size_t frameSize = kFrameHeaderSize + frames.pageSize;
  std::string frameBuffer;
  for (uint64_t offset = kHeaderSize; offset + frameSize <= source.Size(); offset += frameSize) {
    // Past a broken chain only the frame's page number is wanted.
    const std::string_view frame = source.Read(offset, chainHolds ? frameSize : kFrameHeaderSize, &frameBuffer);
    if (frame.size() < (chainHolds ? frameSize : kFrameHeaderSize)) break;
    const uint32_t page = ReadUInt32(frame, 0);
    if (page == 0) {
      chainHolds = false;
      continue;
    }
    all.push_back({page, StoredIn::Wal, offset + kFrameHeaderSize});
    if (!chainHolds) continue;
    sum = Continue(Continue(sum, frame.substr(0, 8), bigEndian), frame.substr(kFrameHeaderSize), bigEndian);
    chainHolds = ReadUInt32(frame, 8) == salt1 && ReadUInt32(frame, 12) == salt2 && sum == Stored(frame, 16);
    if (chainHolds && ReadUInt32(frame, 4) != 0) {
      lastCommit = all.size();
      frames.databasePages = ReadUInt32(frame, 4);
    }
  }
  frames.committed.assign(all.begin(), all.begin() + lastCommit);
  frames.others.assign(all.begin() + lastCommit, all.end());
  return frames;
}
