// Old notes' HTML to text on arbitrary bytes. Every tag, entity and text
// byte gives at most as many bytes as it took, so a longer text is a fault.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/HtmlText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string html(reinterpret_cast<const char*>(data), size);
  if (HtmlToText(html).size() > html.size()) std::abort();
  return 0;
}
