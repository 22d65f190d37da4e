#include "kinds/current/WhatsAppJid.h"

#include <optional>

namespace current {
namespace {

const std::string_view kPersonServer = "@s.whatsapp.net";

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The number part of a person's address; nothing for any other.
std::optional<std::string_view> NumberOfJid(std::string_view jid) {
  if (!EndsWith(jid, kPersonServer)) return std::nullopt;
  const std::string_view user = jid.substr(0, jid.size() - kPersonServer.size());
  return user.substr(0, user.find(':'));
}

}  // namespace

std::string PhoneOfJid(std::string_view jid) { return std::string(NumberOfJid(jid).value_or(std::string_view())); }

std::string AddressOfJid(std::string_view jid) { return std::string(AddressViewOfJid(jid)); }

std::string_view AddressViewOfJid(std::string_view jid) { return NumberOfJid(jid).value_or(jid); }

JidKind KindOfJid(std::string_view jid) {
  if (jid == "status@broadcast") return JidKind::Status;
  if (EndsWith(jid, "@broadcast")) return JidKind::Broadcast;
  if (EndsWith(jid, "@g.us")) return JidKind::Group;
  if (EndsWith(jid, kPersonServer)) return JidKind::Person;
  return JidKind::Other;
}

}  // namespace current
