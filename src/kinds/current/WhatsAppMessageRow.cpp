#include "kinds/current/WhatsAppMessageRow.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/QuotedReference.h"
#include "common/VCardFields.h"
#include "kinds/current/WhatsAppMessageKind.h"

namespace current {
namespace {

const std::string_view kMessageFolder = "Message/";

// The medium's columns; the list's array lives as long as the list.
const std::initializer_list<const char*> kMediaColumns = {"ZMEDIALOCALPATH", "ZTHUMBNAILLOCALPATH", "ZXMPPTHUMBPATH",
                                                          "ZTITLE",          "ZVCARDSTRING",        "ZMEDIAURL",
                                                          "ZLATITUDE",       "ZLONGITUDE",          "ZMETADATA"};

// The device path of a medium the chat database names: below the shared
// domain's Message/ folder, exactly.
std::string MediaQueryPath(std::string_view stored) {
  while (!stored.empty() && stored.front() == '/') stored.remove_prefix(1);
  if (stored.empty()) return std::string();
  if (stored.compare(0, kMessageFolder.size(), kMessageFolder) == 0) return std::string(stored);
  return std::string(kMessageFolder).append(stored);
}

std::string_view FileNameOf(std::string_view path) {
  const size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// The first http or https address in a text, up to the first blank.
std::string_view FirstWebAddress(std::string_view text) {
  size_t start = std::string_view::npos;
  for (const std::string_view scheme : {"http://", "https://"}) start = std::min(start, text.find(scheme));
  if (start == std::string_view::npos) return std::string_view();
  const size_t end = text.find_first_of(" \t\r\n", start);
  return text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
}

bool StartsWith(std::string_view text, std::string_view start) { return text.compare(0, start.size(), start) == 0; }

// The stored file of a medium, where the backup holds a regular one.
std::optional<StoredFile> Located(const LocateInDomain& locate, const std::string& queryPath) {
  if (queryPath.empty()) return std::nullopt;
  std::optional<StoredFile> file = locate(queryPath);
  if (!file || !file->regular) return std::nullopt;
  return file;
}

// A medium's file and thumbnail; ZVCARDSTRING holds the MIME type of every
// medium but a contact card, and ZTITLE a document's file name.
WhatsAppAttachment AttachmentOf(const Database::Statement& rows, const MessageColumns& columns, WhatsAppKind kind,
                                std::string date, const LocateInDomain& locate) {
  WhatsAppAttachment attachment;
  Attachment& file = attachment.file;
  file.queryPath = MediaQueryPath(rows.WholeView(columns.localPath));
  file.fileName = std::string(FileNameOf(file.queryPath));
  file.mimeType = rows.WholeText(columns.vCard);
  file.image = kind == WhatsAppKind::Image || kind == WhatsAppKind::Sticker || StartsWith(file.mimeType, "image/");
  if (kind == WhatsAppKind::Document) file.originalName = rows.WholeText(columns.title);
  file.date = std::move(date);
  const std::string_view thumbnail = rows.WholeView(columns.thumbnailPath);
  attachment.thumbnailQueryPath =
      MediaQueryPath(thumbnail.empty() ? rows.WholeView(columns.xmppThumbnailPath) : thumbnail);
  if (const std::optional<StoredFile> stored = Located(locate, file.queryPath)) {
    file.path = stored->path;
    file.size = stored->size;
    file.present = true;
  }
  if (const std::optional<StoredFile> stored = Located(locate, attachment.thumbnailQueryPath)) {
    attachment.thumbnailPath = stored->path;
  }
  return attachment;
}

// The parts of the message that only some kinds have; NULL when it has none.
std::unique_ptr<WhatsAppDetails> DetailsOf(const Database::Statement& rows, const MessageColumns& columns,
                                           WhatsAppKind kind, const VCardFields& card, const std::string& date,
                                           const LocateInDomain& locate) {
  const bool hasFile = CarriesFile(kind) || !rows.WholeView(columns.localPath).empty();
  if (!hasFile && kind != WhatsAppKind::Location && card.numbers.empty()) return nullptr;
  auto details = std::make_unique<WhatsAppDetails>();
  if (kind == WhatsAppKind::Location) {
    details->latitude = FiniteRealOf(rows.Text(columns.latitude));
    details->longitude = FiniteRealOf(rows.Text(columns.longitude));
  }
  details->contactNumbers = card.numbers;
  if (hasFile && kind != WhatsAppKind::ContactCard)
    details->attachment = AttachmentOf(rows, columns, kind, date, locate);
  return details;
}

}  // namespace

std::string MessageQuery(const SchemaInfo& schema) {
  std::string joins;
  bool media = false;
  if (schema.HasTable("ZWAMEDIAITEM") && schema.HasColumn("ZWAMESSAGE", "ZMEDIAITEM")) {
    joins += " left join ZWAMEDIAITEM i on i.rowid = m.ZMEDIAITEM";
    media = true;
  } else if (schema.HasColumn("ZWAMEDIAITEM", "ZMESSAGE")) {
    joins += " left join ZWAMEDIAITEM i on i.ZMESSAGE = m.rowid";
    media = true;
  }
  const bool member = schema.HasTable("ZWAGROUPMEMBER") && schema.HasColumn("ZWAMESSAGE", "ZGROUPMEMBER");
  if (member) joins += " left join ZWAGROUPMEMBER g on g.rowid = m.ZGROUPMEMBER";
  return "select m.rowid AS rowid, " +
         schema.SelectList("ZWAMESSAGE",
                           {"ZCHATSESSION", "ZISFROMME", "ZMESSAGEDATE", "ZMESSAGETYPE", "ZTEXT", "ZSTARRED",
                            "ZFROMJID", "ZTOJID", "ZSTANZAID"},
                           "m") +
         ", " + (member ? schema.SelectList("ZWAGROUPMEMBER", {"ZMEMBERJID"}, "g") : NullSelectList({"ZMEMBERJID"})) +
         ", " + (media ? schema.SelectList("ZWAMEDIAITEM", kMediaColumns, "i") : NullSelectList(kMediaColumns)) +
         " from ZWAMESSAGE m" + joins + " order by m.rowid";
}

MessageColumns::MessageColumns(const Database::Statement& rows)
    : rowId(rows.Column("rowid")),
      session(rows.Column("ZCHATSESSION")),
      fromMe(rows.Column("ZISFROMME")),
      date(rows.Column("ZMESSAGEDATE")),
      type(rows.Column("ZMESSAGETYPE")),
      text(rows.Column("ZTEXT")),
      starred(rows.Column("ZSTARRED")),
      fromJid(rows.Column("ZFROMJID")),
      toJid(rows.Column("ZTOJID")),
      stanzaId(rows.Column("ZSTANZAID")),
      member(rows.Column("ZMEMBERJID")),
      localPath(rows.Column("ZMEDIALOCALPATH")),
      thumbnailPath(rows.Column("ZTHUMBNAILLOCALPATH")),
      xmppThumbnailPath(rows.Column("ZXMPPTHUMBPATH")),
      title(rows.Column("ZTITLE")),
      vCard(rows.Column("ZVCARDSTRING")),
      mediaUrl(rows.Column("ZMEDIAURL")),
      latitude(rows.Column("ZLATITUDE")),
      longitude(rows.Column("ZLONGITUDE")),
      metadata(rows.Column("ZMETADATA")) {}

WhatsAppMessage ReadMessageRow(const Database::Statement& rows, const MessageColumns& columns,
                               const LocateInDomain& locate) {
  WhatsAppMessage message;
  message.rowId = rows.Int64(columns.rowId);
  message.kind = WhatsAppKindOf(rows.Int64(columns.type), rows.WholeView(columns.localPath));
  message.fromMe = rows.Int64(columns.fromMe) != 0;
  message.starred = rows.Int64(columns.starred) != 0;
  const LocalDate date = LocalDateOf(rows.Text(columns.date), TimeBase::Since2001);
  message.instant = date.instant;
  // A group message names its member; any other its sender's address.
  std::string_view sender;
  if (!message.fromMe) {
    sender = rows.WholeView(columns.member);
    if (sender.empty()) sender = rows.WholeView(columns.fromJid);
  }
  const bool captioned = message.kind == WhatsAppKind::Image || message.kind == WhatsAppKind::Video ||
                         message.kind == WhatsAppKind::Audio || message.kind == WhatsAppKind::VoiceNote ||
                         message.kind == WhatsAppKind::Sticker;
  const std::string_view caption = captioned ? rows.WholeView(columns.title) : std::string_view();
  std::string_view text = rows.WholeView(columns.text);
  if (text.empty()) text = caption;
  std::string_view url;
  if (message.kind == WhatsAppKind::Link) {
    url = rows.WholeView(columns.mediaUrl);
    if (url.empty()) url = FirstWebAddress(rows.WholeView(columns.text));
  }
  VCardFields card;
  if (message.kind == WhatsAppKind::ContactCard) {
    card = ReadVCardFields(rows.WholeView(columns.vCard));
    if (card.name.empty()) card.name = rows.WholeText(columns.text);
  }
  std::optional<QuotedReference> quoted;
  if (!rows.IsNull(columns.metadata)) {
    quoted = QuotedReferenceOf(std::string_view(static_cast<const char*>(rows.Blob(columns.metadata)),
                                                static_cast<size_t>(rows.Bytes(columns.metadata))));
  }
  message.quotes = quoted.has_value();
  const std::string_view texts[] = {text,
                                    date.text,
                                    sender,
                                    rows.WholeView(columns.stanzaId),
                                    caption,
                                    url,
                                    card.name,
                                    quoted ? std::string_view(quoted->stanzaId) : std::string_view(),
                                    quoted ? std::string_view(quoted->senderJid) : std::string_view(),
                                    std::string_view()};
  message.texts = PackedTexts(texts, std::size(texts));
  message.details = DetailsOf(rows, columns, message.kind, card, date.text, locate);
  return message;
}

void ResolveQuotes(std::vector<WhatsAppMessage>& messages, const std::vector<MessagePlace>& places) {
  // The ids are compared by their hashes first: only the few messages some
  // reply quotes have their texts read again, where every message's would be.
  const std::hash<std::string_view> hash;
  std::unordered_set<size_t> quoted;
  for (const WhatsAppMessage& message : messages) {
    if (message.quotes) quoted.insert(hash(message.texts.View(WhatsAppMessage::kQuotedId)));
  }
  if (quoted.empty()) return;
  std::unordered_map<std::string_view, size_t> byId;
  for (size_t at = 0; at < messages.size(); ++at) {
    if (quoted.count(places[at].idHash) == 0) continue;
    const std::string_view id = messages[at].texts.View(WhatsAppMessage::kId);
    if (id.empty()) continue;
    const auto [found, added] = byId.try_emplace(id, at);
    if (!added && places[at].chat < places[found->second].chat) found->second = at;
  }
  // Replaced once every lookup is done: the ids are views of the texts.
  std::vector<std::pair<size_t, PackedTexts>> resolved;
  for (size_t at = 0; at < messages.size(); ++at) {
    const WhatsAppMessage& message = messages[at];
    if (!message.quotes) continue;
    const auto found = byId.find(message.texts.View(WhatsAppMessage::kQuotedId));
    if (found == byId.end()) continue;
    const PackedTexts& quotedTexts = messages[found->second].texts;
    std::string_view texts[WhatsAppMessage::kQuotedText + 1];
    for (size_t text = 0; text < std::size(texts); ++text) texts[text] = message.texts.View(text);
    std::string_view& sender = texts[WhatsAppMessage::kQuotedSender];
    if (sender.empty()) sender = quotedTexts.View(WhatsAppMessage::kSender);
    texts[WhatsAppMessage::kQuotedText] = quotedTexts.View(WhatsAppMessage::kText);
    resolved.emplace_back(at, PackedTexts(texts, std::size(texts)));
  }
  for (auto& [at, texts] : resolved) messages[at].texts = std::move(texts);
}

}  // namespace current
