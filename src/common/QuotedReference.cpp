#include "common/QuotedReference.h"

#include "common/ProtoFields.h"

namespace {

const uint32_t kStanzaIdField = 5;
const uint32_t kSenderField = 6;

}  // namespace

std::optional<QuotedReference> QuotedReferenceOf(std::string_view metadata) {
  const std::optional<std::string_view> stanzaId = ProtoBytesField(metadata, kStanzaIdField);
  if (!stanzaId || stanzaId->empty()) return std::nullopt;
  const std::optional<std::string_view> sender = ProtoBytesField(metadata, kSenderField);
  return QuotedReference{std::string(*stanzaId), sender ? std::string(*sender) : std::string()};
}
