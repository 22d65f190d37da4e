#include "common/PlistSafety.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <vector>

namespace {

constexpr uint32_t kMostDepth = 512;
constexpr uint64_t kMostNodes = 4000000;

constexpr char kBinaryMagic[] = "bplist00";
constexpr size_t kMagicSize = 8;
constexpr size_t kTrailerSize = 32;

// Binary object types (the high half of an object's first byte).
constexpr int kAsciiString = 0x5;
constexpr int kUtf16String = 0x6;
constexpr int kUid = 0x8;
constexpr int kArray = 0xA;
constexpr int kSet = 0xC;
constexpr int kDict = 0xD;

// XML: the deepest nesting of <array> and <dict> elements ("<array/>" and
// "<dict/>" open nothing).
uint32_t XmlDepth(const char* bytes, size_t length) {
  const char* end = bytes + length;
  uint32_t depth = 0;
  uint32_t deepest = 0;
  for (const char* at = bytes; (at = static_cast<const char*>(std::memchr(at, '<', end - at)));) {
    ++at;
    const bool closing = at < end && *at == '/';
    const char* name = closing ? at + 1 : at;
    const size_t left = end - name;
    size_t nameSize = 0;
    if (left >= 5 && std::memcmp(name, "array", 5) == 0) nameSize = 5;
    if (left >= 4 && std::memcmp(name, "dict", 4) == 0) nameSize = 4;
    if (nameSize == 0 || (left > nameSize && std::isalnum(static_cast<unsigned char>(name[nameSize])))) continue;
    if (closing) {
      depth -= depth > 0 ? 1 : 0;
      continue;
    }
    const char* close = static_cast<const char*>(std::memchr(name, '>', left));
    if (close && close[-1] == '/') continue;
    deepest = std::max(deepest, ++depth);
  }
  return deepest;
}

uint64_t BigEndian(const unsigned char* bytes, size_t size) {
  uint64_t value = 0;
  for (size_t i = 0; i < size; ++i) value = value << 8 | bytes[i];
  return value;
}

// The object table of a binary list, read as far as it is sound; whatever
// libplist would refuse anyway counts here as a plain object.
class BinaryObjects {
 public:
  struct Object {
    int type = 0;
    uint64_t size = 0;   // elements, pairs, characters or UTF-16 units
    uint64_t start = 0;  // where the references or characters begin
  };

  BinaryObjects(const unsigned char* bytes, size_t length) : bytes_(bytes), length_(length) {
    const unsigned char* trailer = bytes + length - kTrailerSize;
    offsetSize_ = trailer[6];
    refSize_ = trailer[7];
    count_ = BigEndian(trailer + 8, 8);
    root_ = BigEndian(trailer + 16, 8);
    table_ = BigEndian(trailer + 24, 8);
    const bool sizesValid = offsetSize_ >= 1 && offsetSize_ <= 8 && refSize_ >= 1 && refSize_ <= 8;
    valid_ = sizesValid && count_ > 0 && count_ <= length && root_ < count_ && table_ < length &&
             count_ * offsetSize_ <= length - table_;
  }

  bool Valid() const { return valid_; }
  const unsigned char* Bytes() const { return bytes_; }
  uint64_t Count() const { return count_; }
  uint64_t Root() const { return root_; }

  Object At(uint64_t index) const {
    Object object;
    const uint64_t offset = BigEndian(bytes_ + table_ + index * offsetSize_, offsetSize_);
    if (offset >= length_) return object;
    object.type = bytes_[offset] >> 4;
    object.size = bytes_[offset] & 0x0F;
    object.start = offset + 1;
    if (object.size == 0x0F) {
      const uint64_t at = object.start;
      const size_t sizeBytes = at < length_ && (bytes_[at] >> 4) == 0x1 ? size_t{1} << (bytes_[at] & 0x0F) : 0;
      if (sizeBytes == 0 || sizeBytes > 8 || sizeBytes >= length_ - at) return Object{};
      object.size = BigEndian(bytes_ + at + 1, sizeBytes);
      object.start = at + 1 + sizeBytes;
    }
    return object;
  }

  // The objects a container refers to, a dictionary's keys first.
  std::vector<uint64_t> Children(const Object& object) const {
    std::vector<uint64_t> children;
    if (object.type != kArray && object.type != kSet && object.type != kDict) return children;
    const uint64_t refs = object.type == kDict ? object.size * 2 : object.size;
    if (object.size > length_ || refs > (length_ - object.start) / refSize_) return children;
    for (uint64_t i = 0; i < refs; ++i) children.push_back(BigEndian(bytes_ + object.start + i * refSize_, refSize_));
    return children;
  }

  // A UTF-16 string with a zero unit: libplist counts the zero bytes it
  // converts them to, unlike the zero bytes of an ASCII string.
  bool IsUtf16WithZero(uint64_t index) const {
    if (index >= count_) return false;
    const Object object = At(index);
    return object.type == kUtf16String && FitsUnits(object) && HasZeroUnit(object);
  }

  // Whether the object's UTF-16 units lie inside the list.
  bool FitsUnits(const Object& object) const {
    return object.size <= length_ / 2 && object.size * 2 <= length_ - object.start;
  }

  bool HasZeroUnit(const Object& object) const {
    for (uint64_t i = 0; i < object.size; ++i) {
      if (BigEndian(bytes_ + object.start + i * 2, 2) == 0) return true;
    }
    return false;
  }

 private:
  const unsigned char* bytes_;
  size_t length_;
  size_t offsetSize_ = 0;
  size_t refSize_ = 0;
  uint64_t count_ = 0;
  uint64_t root_ = 0;
  uint64_t table_ = 0;
  bool valid_ = false;
};

// Walks the tree libplist would build, measuring each object once (a later
// reference reuses its figures); a reference back up the path, which libplist
// refuses, counts as a plain object.
bool BinaryIsSafe(const unsigned char* bytes, size_t length) {
  const BinaryObjects objects(bytes, length);
  if (!objects.Valid()) return true;
  // Every object reachable from the root is at least one node of the tree.
  if (objects.Count() > kMostNodes) return false;
  struct Measure {
    uint64_t nodes = 0;
    uint32_t depth = 0;
    enum { Unseen, Open, Done } state = Unseen;
  };
  std::vector<Measure> measures(objects.Count());
  struct Frame {
    uint64_t index;
    std::vector<uint64_t> children;
    size_t next = 0;
  };
  std::vector<Frame> path;
  const auto open = [&](uint64_t index) {
    const BinaryObjects::Object object = objects.At(index);
    Frame frame{index, objects.Children(object)};
    const size_t keys = object.type == kDict ? frame.children.size() / 2 : 0;
    for (size_t k = 0; k < keys; ++k) {
      if (objects.IsUtf16WithZero(frame.children[k])) return false;
    }
    measures[index].state = Measure::Open;
    path.push_back(std::move(frame));
    return true;
  };
  if (!open(objects.Root())) return false;
  while (!path.empty()) {
    if (path.size() > kMostDepth) return false;
    Frame& frame = path.back();
    if (frame.next < frame.children.size()) {
      const uint64_t child = frame.children[frame.next++];
      if (child < measures.size() && measures[child].state == Measure::Unseen && !open(child)) return false;
      continue;
    }
    Measure& measure = measures[frame.index];
    measure.nodes = 1;
    for (uint64_t child : frame.children) {
      const bool measured = child < measures.size() && measures[child].state == Measure::Done;
      measure.nodes = std::min(kMostNodes + 1, measure.nodes + (measured ? measures[child].nodes : 1));
      if (measured) measure.depth = std::max(measure.depth, measures[child].depth);
    }
    ++measure.depth;
    measure.state = Measure::Done;
    if (measure.nodes > kMostNodes || measure.depth > kMostDepth) return false;
    path.pop_back();
  }
  return true;
}

}  // namespace

bool MayHoldZeroInString(const char* bytes, size_t length) {
  if (length < kMagicSize + kTrailerSize || std::memcmp(bytes, kBinaryMagic, kMagicSize) != 0) return true;
  const BinaryObjects objects(reinterpret_cast<const unsigned char*>(bytes), length);
  if (!objects.Valid()) return true;
  for (uint64_t index = 0; index < objects.Count(); ++index) {
    const BinaryObjects::Object object = objects.At(index);
    switch (object.type) {
      case kAsciiString:
        if (object.size > length - object.start ||
            std::memchr(objects.Bytes() + object.start, 0, object.size) != nullptr) {
          return true;
        }
        break;
      case kUtf16String:
        if (!objects.FitsUnits(object) || objects.HasZeroUnit(object)) return true;
        break;
      case 0x0: case 0x1: case 0x2: case 0x3: case 0x4: case kUid: case kArray: case kSet: case kDict:
        break;
      default:
        return true;
    }
  }
  return false;
}

bool IsSafeForLibplist(const char* bytes, size_t length) {
  if (length >= kMagicSize + kTrailerSize && std::memcmp(bytes, kBinaryMagic, kMagicSize) == 0) {
    return BinaryIsSafe(reinterpret_cast<const unsigned char*>(bytes), length);
  }
  return XmlDepth(bytes, length) <= kMostDepth;
}
