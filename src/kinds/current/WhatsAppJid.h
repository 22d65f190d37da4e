#ifndef YH_KINDS_CURRENT_WHATSAPPJID_H
#define YH_KINDS_CURRENT_WHATSAPPJID_H

#include <string>
#include <string_view>

namespace current {

// The number of a person's WhatsApp address ("447700900123@s.whatsapp.net",
// also with a ":device" suffix before the "@"), or "" for any other address
// (groups, broadcast lists, status updates, linked-device identities).
std::string PhoneOfJid(std::string_view jid);

// The number of a person's address, or the address itself when it has none:
// how an address is shown.
std::string AddressOfJid(std::string_view jid);
// The same text without a copy: a part of `jid`.
std::string_view AddressViewOfJid(std::string_view jid);

// What an address names, by its server part.
enum class JidKind { Person, Group, Broadcast, Status, Other };
JidKind KindOfJid(std::string_view jid);

}  // namespace current

#endif
