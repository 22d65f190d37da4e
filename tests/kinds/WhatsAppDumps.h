#ifndef YH_TESTS_KINDS_WHATSAPPDUMPS_H
#define YH_TESTS_KINDS_WHATSAPPDUMPS_H

#include <string>
#include <utility>
#include <vector>

// Rows of WhatsApp's chat database and the dumps of the answers the current
// service gives for them, for the tests of live and deleted chats.
namespace yhtest {

inline const char kChatStorage[] = "ChatStorage.sqlite";
const char kAda[] = "'447700900123@s.whatsapp.net'";
const char kMary[] = "'16175550199@s.whatsapp.net'";
const char kGroup[] = "'120363000000000001@g.us'";
const std::string kMedia = "Message/Media/447700900123@s.whatsapp.net/a/b/";
const char kMessageColumns[] =
    "Z_PK, ZCHATSESSION, ZISFROMME, ZMESSAGEDATE, ZMESSAGETYPE, ZTEXT, ZSTARRED, ZFROMJID, ZSTANZAID, ZGROUPMEMBER, "
    "ZMEDIAITEM";
const char kMediaColumns[] =
    "Z_PK, ZMEDIALOCALPATH, ZTHUMBNAILLOCALPATH, ZTITLE, ZVCARDSTRING, ZMEDIAURL, ZLATITUDE, ZLONGITUDE, ZMETADATA";

// 2023-07-01 12:00:00 UTC, in seconds since 2001, and a minute after it.
inline std::string At(int minute) { return std::to_string(709905600 + 60 * minute); }

struct Zone {
  const char* name;
  const char* hour;  // of 12:00 UTC on 2023-07-01
};
inline const Zone kZones[] = {{"UTC", "12"}, {"America/New_York", "08"}};

inline std::string DateAt(const Zone& zone, int minute) {
  return std::string("2023-07-01 ") + zone.hour + ":" + (minute < 10 ? "0" : "") + std::to_string(minute) + ":00";
}

inline std::string Q(const std::string& text) { return "\"" + text + "\""; }
inline std::string Bool(bool value) { return value ? "true" : "false"; }

struct Said {
  Said(std::string text, int minute, bool sent, std::string sender, std::string senderName, std::string id,
       std::string kind, bool starred = false, std::string more = "")
      : text(std::move(text)),
        minute(minute),
        sent(sent),
        sender(std::move(sender)),
        senderName(std::move(senderName)),
        id(std::move(id)),
        kind(std::move(kind)),
        starred(starred),
        more(std::move(more)) {}
  std::string text;
  int minute;
  bool sent;
  std::string sender, senderName, id, kind;
  bool starred;
  std::string more;  // the dump of the kind's own keys, each after a comma
};

inline std::string MessageDump(const Zone& zone, const Said& said) {
  return "{\"country\":\"\",\"service\":\"WhatsApp\",\"text\":" + Q(said.text) +
         ",\"date\":" + Q(DateAt(zone, said.minute)) + ",\"type\":" + (said.sent ? "1u" : "0u") +
         ",\"sender\":" + Q(said.sender) + ",\"sender_name\":" + Q(said.senderName) + ",\"id\":" + Q(said.id) +
         ",\"kind\":" + Q(said.kind) + ",\"starred\":" + Bool(said.starred) + said.more + "}";
}

struct Medium {
  std::string fileName, path;
  size_t size;
  bool image;
  std::string queryPath;
  bool present;
  std::string mimeType, originalName, thumbnailQueryPath, thumbnailPath;
};

inline std::string AttachmentDump(const Zone& zone, int minute, const Medium& medium) {
  return ",\"attachments\":[{\"file_name\":" + Q(medium.fileName) + ",\"path\":" + Q(medium.path) +
         ",\"size\":" + std::to_string(medium.size) + "u,\"type\":" + (medium.image ? "0u" : "1u") +
         ",\"query_path\":" + Q(medium.queryPath) + ",\"present\":" + Bool(medium.present) +
         ",\"mime_type\":" + Q(medium.mimeType) + ",\"original_name\":" + Q(medium.originalName) +
         ",\"date\":" + Q(DateAt(zone, minute)) + ",\"thumbnail_query_path\":" + Q(medium.thumbnailQueryPath) +
         ",\"thumbnail_path\":" + Q(medium.thumbnailPath) + "}]";
}

struct Party {
  std::string address, name;
};

inline std::string ChatDump(const std::string& id, const std::string& phone, const std::string& another,
                     const std::string& messages, const std::vector<Party>& participants, bool group,
                     const std::string& displayName, const std::string& chatKind) {
  std::string parties;
  for (const Party& party : participants) {
    parties += std::string(parties.empty() ? "" : ",") + "{\"address\":" + Q(party.address) +
               ",\"name\":" + Q(party.name) + "}";
  }
  return "{\"id\":" + Q(id) + ",\"phone\":" + Q(phone) + ",\"another\":" + Q(another) +
         ",\"message\":[" + messages + "]" + ",\"participants\":[" + parties +
         "],\"group\":" + Bool(group) + ",\"display_name\":" + Q(displayName) + ",\"chat_kind\":" + Q(chatKind) + "}";
}

}  // namespace yhtest

#endif
