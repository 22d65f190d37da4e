#include "kinds/current/WhatsAppDirectory.h"

#include "common/SchemaInfo.h"
#include "kinds/current/StoredDatabases.h"
#include "kinds/current/WhatsAppFiles.h"
#include "kinds/current/WhatsAppJid.h"

namespace current {
namespace {

using NamedAddress = std::pair<std::string, std::string>;

std::vector<NamedAddress> ReadWhatsAppContacts(Database& database) {
  const SchemaInfo schema(database);
  std::vector<NamedAddress> names;
  if (!schema.HasTable("ZWAADDRESSBOOKCONTACT")) return names;
  const std::string query = "select " + schema.SelectList("ZWAADDRESSBOOKCONTACT", {"ZWHATSAPPID", "ZFULLNAME"}) +
                            " from ZWAADDRESSBOOKCONTACT order by ZWAADDRESSBOOKCONTACT.Z_PK";
  Database::Statement rows(database, query.c_str());
  const int jid = rows.Column("ZWHATSAPPID");
  const int fullName = rows.Column("ZFULLNAME");
  while (rows.Step()) {
    if (rows.WholeView(jid).empty() || rows.WholeView(fullName).empty()) continue;
    names.emplace_back(rows.WholeText(jid), rows.WholeText(fullName));
  }
  return names;
}

}  // namespace

const std::string* WhatsAppDirectory::NameOf(const BackupDevice* device, const std::string& jid) {
  if (!read_) {
    read_ = true;
    // The first name a book gives an address wins.
    for (auto& [address, name] :
         ReadStoredDatabases(device, WhatsAppFilesAt(device, "ContactsV2.sqlite"), ReadWhatsAppContacts)) {
      names_.try_emplace(std::move(address), std::move(name));
    }
  }
  const auto [at, added] = found_.try_emplace(jid, nullptr);
  if (!added) return at->second;
  const std::string phone = PhoneOfJid(jid);
  if (!phone.empty()) at->second = contacts_.FindNameByPhone(device, phone);
  if (!at->second) {
    const auto named = names_.find(jid);
    if (named != names_.end()) at->second = &named->second;
  }
  return at->second;
}

}  // namespace current
