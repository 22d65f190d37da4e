// The decoders of WhatsApp's stored blobs on arbitrary bytes: a medium's
// metadata (the quoted message's id and sender) and a shared contact card.
// What they give back is bytes of the input, so a text found nowhere in it,
// or a number holding a line break, is a fault.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "common/QuotedReference.h"
#include "common/VCardFields.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::optional<QuotedReference> quoted = QuotedReferenceOf(input);
  if (quoted && (quoted->stanzaId.empty() || input.find(quoted->stanzaId) == std::string_view::npos ||
                 input.find(quoted->senderJid) == std::string_view::npos)) {
    std::abort();
  }
  const VCardFields card = ReadVCardFields(input);
  for (const std::string& number : card.numbers) {
    if (number.empty() || number.find_first_of("\r\n") != std::string::npos) std::abort();
  }
  if (card.name.find_first_of("\r\n") != std::string::npos) std::abort();
  return 0;
}
