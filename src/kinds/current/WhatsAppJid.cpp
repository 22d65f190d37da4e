#include "kinds/current/WhatsAppJid.h"

namespace current {
namespace {

const std::string_view kPersonServer = "@s.whatsapp.net";

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

std::string PhoneOfJid(std::string_view jid) {
  if (!EndsWith(jid, kPersonServer)) return std::string();
  const std::string_view user = jid.substr(0, jid.size() - kPersonServer.size());
  return std::string(user.substr(0, user.find(':')));
}

std::string AddressOfJid(std::string_view jid) {
  std::string phone = PhoneOfJid(jid);
  return phone.empty() ? std::string(jid) : phone;
}

JidKind KindOfJid(std::string_view jid) {
  if (jid == "status@broadcast") return JidKind::Status;
  if (EndsWith(jid, "@broadcast")) return JidKind::Broadcast;
  if (EndsWith(jid, "@g.us")) return JidKind::Group;
  if (EndsWith(jid, kPersonServer)) return JidKind::Person;
  return JidKind::Other;
}

}  // namespace current
