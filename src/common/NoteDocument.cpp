#include "common/NoteDocument.h"

#include <optional>

#include "common/GZip.h"
#include "common/ProtoFields.h"

namespace {

// Far above any real note; a bound so that a small blob cannot inflate
// into gigabytes.
const size_t kMaxDocumentSize = 64u << 20;

const uint32_t kDocumentField = 2;
const uint32_t kNoteField = 3;
const uint32_t kTextField = 2;

}  // namespace

std::string NoteTextOfDocument(std::string_view document) {
  const std::optional<std::string_view> inner = ProtoBytesField(document, kDocumentField);
  const std::optional<std::string_view> note = inner ? ProtoBytesField(*inner, kNoteField) : std::nullopt;
  const std::optional<std::string_view> text = note ? ProtoBytesField(*note, kTextField) : std::nullopt;
  return text ? std::string(*text) : std::string();
}

std::string NoteDocumentText(const void* data, size_t size) {
  if (!data || size == 0) return std::string();
  const std::optional<std::string> document = Gunzip(data, size, kMaxDocumentSize);
  return document ? NoteTextOfDocument(*document) : std::string();
}
