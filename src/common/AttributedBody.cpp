#include "common/AttributedBody.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace {

// A head byte is a tag, a one-byte integer, or a one-byte reference number.
constexpr int8_t kInteger2 = -127;
constexpr int8_t kInteger4 = -126;
constexpr int8_t kNew = -124;
constexpr int8_t kNil = -123;
constexpr int8_t kEndOfObject = -122;
constexpr int8_t kLastTag = -111;
// Reference numbers start just above the tags.
constexpr int64_t kFirstReference = kLastTag + 1;
constexpr size_t kNone = static_cast<size_t>(-1);

struct Damaged {};

// Reads one typedstream. Every read is checked against the end, so damage
// ends the walk (as Damaged) instead of reading past the bytes.
class TypedStream {
 public:
  TypedStream(const unsigned char* data, size_t size) : at_(data), end_(data + size) {}

  std::string AttributedStringText() {
    Header();
    ExpectType("@");
    Object("NSAttributedString");
    ExpectType("@");
    Object("NSString");
    ExpectType("+");
    const std::string_view text = UnsharedString();
    if (Head() != kEndOfObject) throw Damaged{};
    return std::string(text);
  }

 private:
  // An entry of the table that object and class references point into;
  // objects have no class name.
  struct Entry {
    std::string_view className;
    size_t superclass;
  };

  void Header() {
    static constexpr std::string_view kSignature("\x04\x0bstreamtyped", 13);
    if (Bytes(kSignature.size()) != kSignature) throw Damaged{};
    Integer(Head(), false);  // the system version
  }

  int8_t Head() { return static_cast<int8_t>(Bytes(1)[0]); }

  std::string_view Bytes(uint64_t count) {
    if (count > static_cast<uint64_t>(end_ - at_)) throw Damaged{};
    const std::string_view bytes(reinterpret_cast<const char*>(at_), static_cast<size_t>(count));
    at_ += count;
    return bytes;
  }

  uint32_t LittleEndian(size_t width) {
    const std::string_view bytes = Bytes(width);
    uint32_t value = 0;
    for (size_t i = width; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
  }

  // The integer a head stands for: the head itself, or the 2 or 4 bytes
  // after an integer tag.
  int64_t Integer(int8_t head, bool isSigned) {
    if (head > kLastTag) return isSigned ? head : static_cast<uint8_t>(head);
    if (head == kInteger2) {
      const uint32_t value = LittleEndian(2);
      return isSigned ? static_cast<int16_t>(value) : static_cast<int64_t>(value);
    }
    if (head == kInteger4) {
      const uint32_t value = LittleEndian(4);
      return isSigned ? static_cast<int32_t>(value) : static_cast<int64_t>(value);
    }
    throw Damaged{};
  }

  size_t Reference(int8_t head, size_t tableSize) {
    const int64_t index = Integer(head, true) - kFirstReference;
    if (index < 0 || static_cast<uint64_t>(index) >= tableSize) throw Damaged{};
    return static_cast<size_t>(index);
  }

  std::string_view UnsharedString() { return Bytes(static_cast<uint64_t>(Integer(Head(), false))); }

  std::string_view SharedString() {
    const int8_t head = Head();
    if (head != kNew) return strings_[Reference(head, strings_.size())];
    strings_.push_back(UnsharedString());
    return strings_.back();
  }

  void ExpectType(std::string_view encoding) {
    if (SharedString() != encoding) throw Damaged{};
  }

  // A class and its superclasses, written until one already seen or nil;
  // returns the class's entry, or kNone for nil.
  size_t Class() {
    const size_t first = entries_.size();
    int8_t head = Head();
    for (; head == kNew; head = Head()) {
      const std::string_view name = SharedString();
      if (name.empty()) throw Damaged{};
      entries_.push_back({name, entries_.size() + 1});
      Integer(Head(), true);  // the class version
    }
    size_t last = kNone;
    if (head != kNil) {
      last = Reference(head, entries_.size());
      if (entries_[last].className.empty()) throw Damaged{};
    }
    if (entries_.size() == first) return last;
    entries_.back().superclass = last;
    return first;
  }

  bool IsA(size_t entry, std::string_view className) const {
    for (size_t steps = 0; entry != kNone && steps < entries_.size(); ++steps) {
      if (entries_[entry].className == className) return true;
      entry = entries_[entry].superclass;
    }
    return false;
  }

  // The start of a new object of the class or a subclass, up to its values.
  void Object(std::string_view className) {
    if (Head() != kNew) throw Damaged{};
    entries_.push_back({{}, kNone});
    if (!IsA(Class(), className)) throw Damaged{};
  }

  const unsigned char* at_;
  const unsigned char* const end_;
  std::vector<std::string_view> strings_;
  std::vector<Entry> entries_;
};

}  // namespace

std::optional<std::string> DecodeAttributedBodyText(const void* data, size_t size) {
  if (data == nullptr) return std::nullopt;
  try {
    return TypedStream(static_cast<const unsigned char*>(data), size).AttributedStringText();
  } catch (const Damaged&) {
    return std::nullopt;
  }
}
