// The attributedBody decoder on arbitrary bytes. Any text it finds is bytes
// of the input, so a text found nowhere in it is a fault.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "common/AttributedBody.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::optional<std::string> text = DecodeAttributedBodyText(data, size);
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  if (text && input.find(*text) == std::string_view::npos) std::abort();
  return 0;
}
