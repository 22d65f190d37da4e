// The note document decoder on arbitrary bytes, both as stored (gzip'd) and
// as already inflated. A text is bytes of the inflated document, so a text
// found nowhere in it is a fault.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/NoteDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string text = NoteTextOfDocument(input);
  if (input.find(text) == std::string_view::npos) std::abort();
  NoteDocumentText(data, size);
  return 0;
}
