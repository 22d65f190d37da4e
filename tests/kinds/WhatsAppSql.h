#ifndef YH_TESTS_KINDS_WHATSAPPSQL_H
#define YH_TESTS_KINDS_WHATSAPPSQL_H

#include <string>

#include "support/BackupBuilder.h"

namespace yhtest {

// WhatsApp's shared app-group domain and the media folder the chat database's paths lie below.
const char kWhatsAppDomain[] = "AppDomainGroup-group.net.whatsapp.WhatsApp.shared";

// A length-delimited protocol-buffer field holding `bytes` (shorter than 128 bytes).
inline std::string ProtoField(int number, const std::string& bytes) {
  return std::string(1, static_cast<char>(number << 3 | 2)) + static_cast<char>(bytes.size()) + bytes;
}

// A chat database of WhatsApp on iOS 15: its full schema, then rows. Each
// value is an SQL literal.
class ChatStorageSql {
 public:
  explicit ChatStorageSql(const std::string& schema = Schema("ChatStorage.sqlite-whatsapp-ios15")) : sql_(schema) {}

  ChatStorageSql& Session(int id, const std::string& jid, const std::string& partnerName) {
    return Row("ZWACHATSESSION (Z_PK, ZCONTACTJID, ZPARTNERNAME)",
               std::to_string(id) + ", " + jid + ", " + partnerName);
  }
  ChatStorageSql& Member(int id, int session, const std::string& jid) {
    return Row("ZWAGROUPMEMBER (Z_PK, ZCHATSESSION, ZMEMBERJID)",
               std::to_string(id) + ", " + std::to_string(session) + ", " + jid);
  }
  ChatStorageSql& PushName(const std::string& jid, const std::string& name) {
    return Row("ZWAPROFILEPUSHNAME (ZJID, ZPUSHNAME)", jid + ", " + name);
  }
  // Columns (", "-separated) and values of one message or medium.
  ChatStorageSql& Message(const std::string& columns, const std::string& values) {
    return Row("ZWAMESSAGE (" + columns + ")", values);
  }
  ChatStorageSql& Media(const std::string& columns, const std::string& values) {
    return Row("ZWAMEDIAITEM (" + columns + ")", values);
  }
  ChatStorageSql& Row(const std::string& table, const std::string& values) {
    sql_ += "INSERT INTO " + table + " VALUES (" + values + ");\n";
    return *this;
  }

  const std::string& Sql() const { return sql_; }

 private:
  std::string sql_;
};

}  // namespace yhtest

#endif
