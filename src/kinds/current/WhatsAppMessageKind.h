#ifndef YH_KINDS_CURRENT_WHATSAPPMESSAGEKIND_H
#define YH_KINDS_CURRENT_WHATSAPPMESSAGEKIND_H

#include <cstdint>
#include <string_view>

#include "kinds/current/WhatsAppChat.h"

namespace current {

// The kind of a message of stored type `type` (ZMESSAGETYPE) whose medium
// lies at `mediaPath`: 0 text, 1 image, 2 video, 3 audio (a voice note when
// its file is an .opus recording), 4 contact card, 5 location, 6, 10 and 12
// system events, 7 link, 8 document, 11 animated GIF (kept as a video), 14
// deleted for everyone, 15 sticker; any other type is Other.
WhatsAppKind WhatsAppKindOf(int64_t type, std::string_view mediaPath);

// The kind's name in answers: "text", "image", ..., "voice note", "contact
// card", "system event", "deleted", "other".
const char* WhatsAppKindName(WhatsAppKind kind);

// Whether messages of the kind carry a file: an attachment is listed for
// each, present or not.
bool CarriesFile(WhatsAppKind kind);

// The chat kind's name in answers: "person", "group", "broadcast",
// "status", "empty", "system".
const char* WhatsAppChatKindName(WhatsAppChatKind kind);

}  // namespace current

#endif
