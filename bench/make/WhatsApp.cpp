#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "Generation.h"
#include "Sql.h"
#include "kinds/WhatsAppSql.h"
#include "support/NoteStoreBody.h"

namespace bench {
namespace {

using yhtest::kWhatsAppDomain;

// A medium's stored type, the extension of its file and its MIME type.
struct Medium {
  int type;
  const char* extension;
  const char* mimeType;
};
// Most media are pictures, then voice notes, videos, documents, stickers and audio files.
const Medium kMedia[] = {{1, "jpg", "image/jpeg"},   {3, "opus", "audio/ogg; codecs=opus"},
                         {2, "mp4", "video/mp4"},    {8, "pdf", "application/pdf"},
                         {15, "webp", "image/webp"}, {3, "m4a", "audio/mp4"}};

std::string Jid(const std::string& number) { return number.substr(number.find_first_not_of('+')) + "@s.whatsapp.net"; }

// A chat of every 10th session is a group, a few are broadcast lists, one is
// the status updates; the others each have one person.
struct Chat {
  std::string jid;
  std::vector<std::string> members;
};

std::vector<Chat> MakeChats(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  std::vector<Chat> chats{{"status@broadcast", {}}};
  std::set<std::string> seen;
  while (chats.size() < generation.counts.whatsAppChats) {
    const size_t at = chats.size();
    if (at % 10 == 0) {
      Chat group{"120363" + random.Digits(12) + "@g.us", {}};
      for (size_t member = 3 + random.Below(8); member > 0; --member) {
        group.members.push_back(Jid(SomeNumber(generation, contacts)));
      }
      chats.push_back(group);
    } else if (at % 250 == 1) {
      chats.push_back({random.Digits(10) + "@broadcast", {}});
    } else {
      const std::string jid = Jid(SomeNumber(generation, contacts));
      if (seen.insert(jid).second) chats.push_back({jid, {jid}});
    }
  }
  return chats;
}

void AddChats(Generation& generation, const std::vector<Chat>& chats, SqlScript& sql) {
  Random& random = generation.random;
  size_t member = 0;
  for (size_t chat = 1; chat <= chats.size(); ++chat) {
    const Chat& at = chats[chat - 1];
    const bool group = at.jid.find("@g.us") != std::string::npos;
    sql.Insert("ZWACHATSESSION", "Z_PK, Z_ENT, Z_OPT, ZSESSIONTYPE, ZCONTACTJID, ZPARTNERNAME",
               std::to_string(chat) + ", 3, 1, " + (group ? "1" : "0") + ", " + Quote(at.jid) + ", " +
                   (group || random.Chance(0.7) ? Quote(random.Words(group ? 2 : 1) + " " + random.Name()) : "NULL"));
    if (!group) continue;
    for (const std::string& jid : at.members) {
      sql.Insert("ZWAGROUPMEMBER", "Z_PK, Z_ENT, Z_OPT, ZCHATSESSION, ZMEMBERJID",
                 std::to_string(++member) + ", 5, 1, " + std::to_string(chat) + ", " + Quote(jid));
      if (random.Chance(0.3)) {
        sql.Insert("ZWAPROFILEPUSHNAME", "Z_ENT, Z_OPT, ZJID, ZPUSHNAME",
                   "12, 1, " + Quote(jid) + ", " + Quote(random.Name()));
      }
    }
  }
}

// Every fifth message carries a medium (stored in the backup unless it was
// never downloaded), one in twenty others quotes the one before it in its
// chat through its medium item's metadata.
void AddChatMessages(Generation& generation, const std::vector<Chat>& chats, SqlScript& sql) {
  Random& random = generation.random;
  const Counts& counts = generation.counts;
  const size_t every = std::max<size_t>(1, counts.whatsAppMessages / counts.whatsAppMedia);
  std::vector<std::string> lastId(chats.size());
  size_t media = 0;
  size_t items = 0;
  for (size_t message = 1; message <= counts.whatsAppMessages; ++message) {
    const size_t chat = random.Skewed(chats.size());
    const Chat& at = chats[chat];
    const bool fromMe = random.Chance(0.45);
    const bool medium = message % every == 0 && media < counts.whatsAppMedia;
    const bool quotes = !medium && !lastId[chat].empty() && random.Chance(0.05);
    const Medium& kind = kMedia[random.Skewed(std::size(kMedia))];
    std::string item = "NULL";
    if (medium || quotes) {
      item = std::to_string(++items);
      std::string path = "NULL";
      if (medium) {
        ++media;
        const std::string file =
            "Media/" + at.jid + "/" + random.Hex(1) + "/" + random.Hex(1) + "/" + random.Uuid() + "." + kind.extension;
        path = Quote(file);
        if (!random.Chance(0.02))
          generation.rows.File(kWhatsAppDomain, "Message/" + file, 20000 + random.Below(2000000));
      }
      sql.Insert("ZWAMEDIAITEM", "Z_PK, Z_ENT, Z_OPT, ZMESSAGE, ZMEDIALOCALPATH, ZVCARDSTRING, ZTITLE, ZMETADATA",
                 item + ", 8, 1, " + std::to_string(message) + ", " + path + ", " +
                     (medium ? Quote(kind.mimeType) : "NULL") + ", " +
                     (medium && random.Chance(0.3) ? Quote(random.Words(3)) : "NULL") + ", " +
                     (quotes ? yhtest::SqlBlob(yhtest::ProtoField(5, lastId[chat])) : "NULL"));
    }
    const std::string member = at.members.empty() ? at.jid : at.members[random.Below(at.members.size())];
    const std::string stanza = random.Hex(20);
    sql.Insert("ZWAMESSAGE",
               "Z_PK, Z_ENT, Z_OPT, ZCHATSESSION, ZISFROMME, ZMESSAGEDATE, ZMESSAGETYPE, ZTEXT, ZSTARRED, ZFROMJID, "
               "ZTOJID, ZSTANZAID, ZMEDIAITEM",
               std::to_string(message) + ", 9, 1, " + std::to_string(chat + 1) + ", " + (fromMe ? "1" : "0") + ", " +
                   std::to_string(DeviceTime(random)) + ", " + (medium ? std::to_string(kind.type) : "0") + ", " +
                   (medium ? "NULL" : Quote(random.Words(2 + random.Below(18)))) + ", " +
                   (random.Chance(0.02) ? "1" : "0") + ", " + (fromMe ? "NULL" : Quote(member)) + ", " +
                   (fromMe ? Quote(at.jid) : "NULL") + ", " + Quote(stanza) + ", " + item);
    lastId[chat] = stanza;
  }
}

void AddWhatsAppContacts(Generation& generation, const std::vector<Contact>& contacts) {
  SqlScript sql("ContactsV2.sqlite-whatsapp-ios15");
  for (size_t contact = 1; contact <= contacts.size() && contact <= generation.counts.whatsAppChats; ++contact) {
    const Contact& person = contacts[contact - 1];
    sql.Insert("ZWAADDRESSBOOKCONTACT", "Z_PK, Z_ENT, Z_OPT, ZWHATSAPPID, ZFULLNAME, ZPHONENUMBER",
               std::to_string(contact) + ", 1, 1, " + Quote(Jid(person.phones.front())) + ", " +
                   Quote(person.first + " " + person.last) + ", " + Quote(person.phones.front()));
  }
  generation.rows.Database(kWhatsAppDomain, "ContactsV2.sqlite", sql.Text());
}

// Calls grouped by twos and threes under their entries, one in ten a group call.
void AddWhatsAppCalls(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  SqlScript sql("CallHistory.sqlite-whatsapp-ios15");
  size_t entry = 0;
  size_t participant = 0;
  for (size_t call = 1; call <= generation.counts.whatsAppCalls;) {
    const std::string id = std::to_string(++entry);
    const bool group = random.Chance(0.1);
    sql.Insert("ZWAAGGREGATECALLEVENT", "Z_PK, Z_ENT, Z_OPT, ZINCOMING, ZMISSED, ZVIDEO, ZFIRSTDATE",
               id + ", 1, 1, " + std::to_string(random.Below(2)) + ", " + (random.Chance(0.2) ? "1" : "0") + ", " +
                   std::to_string(random.Below(2)) + ", " + std::to_string(DeviceTime(random)));
    for (size_t person = group ? 2 + random.Below(5) : 1; person > 0; --person) {
      sql.Insert("ZWACDCALLEVENTPARTICIPANT", "Z_PK, Z_ENT, Z_OPT, Z1PARTICIPANTS, ZJIDSTRING",
                 std::to_string(++participant) + ", 3, 1, " + id + ", " + Quote(Jid(SomeNumber(generation, contacts))));
    }
    for (size_t calls = 1 + random.Below(3); calls > 0 && call <= generation.counts.whatsAppCalls; --calls, ++call) {
      sql.Insert("ZWACDCALLEVENT", "Z_PK, Z_ENT, Z_OPT, Z1CALLEVENTS, ZDATE, ZDURATION, ZOUTCOME, ZGROUPJIDSTRING",
                 std::to_string(call) + ", 2, 1, " + id + ", " + std::to_string(DeviceTime(random)) + ", " +
                     std::to_string(random.Below(3600)) + ".5, " + (random.Chance(0.2) ? "1" : "0") + ", " +
                     (group ? Quote("120363" + random.Digits(12) + "@g.us") : "NULL"));
    }
  }
  generation.rows.Database(kWhatsAppDomain, "CallHistory.sqlite", sql.Text());
}

}  // namespace

void AddWhatsApp(Generation& generation, const std::vector<Contact>& contacts) {
  SqlScript sql("ChatStorage.sqlite-whatsapp-ios15");
  const std::vector<Chat> chats = MakeChats(generation, contacts);
  AddChats(generation, chats, sql);
  AddChatMessages(generation, chats, sql);
  generation.rows.Database(kWhatsAppDomain, "ChatStorage.sqlite", sql.Text());
  AddWhatsAppContacts(generation, contacts);
  AddWhatsAppCalls(generation, contacts);
}

}  // namespace bench
