#include "support/NoteDocumentWriter.h"

#include "support/NoteStoreBody.h"

namespace yhtest {

std::string ProtoVarint(uint64_t value) {
  std::string bytes;
  for (; value >= 0x80; value >>= 7) bytes += static_cast<char>((value & 0x7F) | 0x80);
  return bytes + static_cast<char>(value);
}

std::string ProtoTag(uint32_t number, uint32_t wireType) {
  return ProtoVarint(static_cast<uint64_t>(number) << 3 | wireType);
}

std::string ProtoVarintField(uint32_t number, uint64_t value) { return ProtoTag(number, 0) + ProtoVarint(value); }

std::string ProtoLengthField(uint32_t number, const std::string& bytes) {
  return ProtoTag(number, 2) + ProtoVarint(bytes.size()) + bytes;
}

std::string NoteDocument(const std::string& text) {
  const std::string run = ProtoVarintField(1, text.size()) + ProtoLengthField(3, ProtoLengthField(1, "Helvetica"));
  const std::string note = ProtoLengthField(2, text) + ProtoLengthField(5, run);
  const std::string document = ProtoVarintField(2, 0) + ProtoLengthField(3, note);
  return ProtoVarintField(1, 0) + ProtoLengthField(2, document);
}

std::string NoteDocumentBlob(const std::string& text) { return Gzip(NoteDocument(text)); }

}  // namespace yhtest
