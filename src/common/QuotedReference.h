#ifndef YH_COMMON_QUOTEDREFERENCE_H
#define YH_COMMON_QUOTEDREFERENCE_H

#include <optional>
#include <string>
#include <string_view>

// The message a WhatsApp reply quotes, as its media item's metadata (a
// protocol-buffer message, ZWAMEDIAITEM.ZMETADATA) names it: field 5 holds
// the quoted message's stanza id, field 6 the address of its sender.
struct QuotedReference {
  std::string stanzaId;
  std::string senderJid;  // "" when the metadata does not say
};

// Nothing unless the metadata is a well-formed message whose field 5 is a
// non-empty text; a field 6 that is not a text leaves the sender empty.
std::optional<QuotedReference> QuotedReferenceOf(std::string_view metadata);

#endif
