#include <cstdio>
#include <set>

#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

const char kAttachmentDomain[] = "MediaDomain";

struct AttachmentKind {
  const char* mimeType;
  const char* uti;
  const char* name;  // printf pattern of the file name
};
const AttachmentKind kAttachmentKinds[] = {{"image/jpeg", "public.jpeg", "IMG_%04d.jpeg"},
                                           {"image/jpeg", "public.jpeg", "IMG_%04d.JPG"},
                                           {"image/heic", "public.heic", "IMG_%04d.HEIC"},
                                           {"video/quicktime", "com.apple.quicktime-movie", "IMG_%04d.MOV"},
                                           {"image/png", "public.png", "Screenshot %04d.png"},
                                           {"audio/x-caf", "com.apple.coreaudio-format", "Audio Message %d.caf"},
                                           {"application/pdf", "com.adobe.pdf", "Document %d.pdf"}};

std::string FileName(const AttachmentKind& kind, size_t number) {
  char name[64];
  std::snprintf(name, sizeof name, kind.name, static_cast<int>(number % 10000));
  return name;
}

// The other party of each conversation: unique addresses, mostly numbers.
std::vector<std::string> ChatIdentifiers(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  std::set<std::string> seen;
  std::vector<std::string> identifiers;
  while (identifiers.size() < generation.counts.conversations) {
    std::string identifier =
        random.Chance(0.1) ? random.Name() + "." + random.Word() + "@example.com" : SomeNumber(generation, contacts);
    if (seen.insert(identifier).second) identifiers.push_back(identifier);
  }
  return identifiers;
}

}  // namespace

void AddMessages(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  const bool newer = generation.Newer();
  SqlScript sql(newer ? "sms.db-ios13" : "sms.db-ios7");
  const std::vector<std::string> identifiers = ChatIdentifiers(generation, contacts);
  for (size_t chat = 1; chat <= identifiers.size(); ++chat) {
    const std::string& identifier = identifiers[chat - 1];
    const std::string service = identifier.find('@') != std::string::npos || random.Chance(0.5) ? "iMessage" : "SMS";
    const std::string id = std::to_string(chat);
    sql.Insert("handle", "ROWID, id, country, service", id + ", " + Quote(identifier) + ", 'us', " + Quote(service));
    sql.Insert(
        "chat", "ROWID, guid, style, state, chat_identifier, service_name",
        id + ", " + Quote(service + ";-;" + identifier) + ", 45, 3, " + Quote(identifier) + ", " + Quote(service));
    sql.Insert("chat_handle_join", "chat_id, handle_id", id + ", " + id);
  }
  for (size_t message = 1; message <= generation.counts.messages; ++message) {
    const std::string chat = std::to_string(1 + random.Skewed(identifiers.size()));
    const std::string id = std::to_string(message);
    sql.Insert("message", "ROWID, guid, text, handle_id, service, country, date, is_from_me",
               id + ", " + Quote(random.Uuid()) + ", " + Quote(random.Words(2 + random.Below(18))) + ", " + chat +
                   ", " + (random.Chance(0.5) ? "'iMessage'" : "'SMS'") + ", 'us', " +
                   std::to_string(DeviceTime(random)) + ", " + std::to_string(random.Below(2)));
    sql.Insert("chat_message_join", "chat_id, message_id", chat + ", " + id);
  }
  for (size_t attachment = 1; attachment <= generation.counts.attachments; ++attachment) {
    const AttachmentKind& kind = kAttachmentKinds[random.Skewed(sizeof kAttachmentKinds / sizeof *kAttachmentKinds)];
    const std::string guid = random.Uuid();
    const std::string name = FileName(kind, 1 + random.Below(9999));
    const std::string path =
        "Library/SMS/Attachments/" + random.Hex(2) + "/" + random.Digits(2) + "/" + guid + "/" + name;
    const std::string id = std::to_string(attachment);
    sql.Insert("attachment",
               newer ? "ROWID, guid, original_guid, created_date, filename, uti, mime_type, transfer_name, total_bytes"
                     : "ROWID, guid, created_date, filename, uti, mime_type, transfer_name, total_bytes",
               id + ", " + Quote(guid) + ", " + (newer ? Quote(guid) + ", " : "") + std::to_string(DeviceTime(random)) +
                   ", " + Quote("~/" + path) + ", " + Quote(kind.uti) + ", " + Quote(kind.mimeType) + ", " +
                   Quote(name) + ", " + std::to_string(1000 + random.Below(100000)));
    sql.Insert("message_attachment_join", "message_id, attachment_id",
               std::to_string(1 + random.Below(generation.counts.messages)) + ", " + id);
    // A few attachments were never downloaded to the phone.
    if (!random.Chance(0.02)) generation.rows.File(kAttachmentDomain, path, 20000 + random.Below(3000000));
  }
  generation.rows.Database("HomeDomain", "Library/SMS/sms.db", sql.Text());
}

}  // namespace bench
