#include "kinds/current/WhatsAppMessageKind.h"

#include <algorithm>
#include <cctype>

namespace current {
namespace {

bool IsOpusFile(std::string_view path) {
  const std::string_view extension = ".opus";
  if (path.size() < extension.size()) return false;
  return std::equal(extension.begin(), extension.end(), path.end() - extension.size(),
                    [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

}  // namespace

WhatsAppKind WhatsAppKindOf(int64_t type, std::string_view mediaPath) {
  switch (type) {
    case 0:
      return WhatsAppKind::Text;
    case 1:
      return WhatsAppKind::Image;
    case 2:
    case 11:
      return WhatsAppKind::Video;
    case 3:
      return IsOpusFile(mediaPath) ? WhatsAppKind::VoiceNote : WhatsAppKind::Audio;
    case 4:
      return WhatsAppKind::ContactCard;
    case 5:
      return WhatsAppKind::Location;
    case 6:
    case 10:
    case 12:
      return WhatsAppKind::SystemEvent;
    case 7:
      return WhatsAppKind::Link;
    case 8:
      return WhatsAppKind::Document;
    case 14:
      return WhatsAppKind::Deleted;
    case 15:
      return WhatsAppKind::Sticker;
    default:
      return WhatsAppKind::Other;
  }
}

const char* WhatsAppKindName(WhatsAppKind kind) {
  switch (kind) {
    case WhatsAppKind::Text:
      return "text";
    case WhatsAppKind::Image:
      return "image";
    case WhatsAppKind::Video:
      return "video";
    case WhatsAppKind::Audio:
      return "audio";
    case WhatsAppKind::VoiceNote:
      return "voice note";
    case WhatsAppKind::Document:
      return "document";
    case WhatsAppKind::ContactCard:
      return "contact card";
    case WhatsAppKind::Location:
      return "location";
    case WhatsAppKind::Sticker:
      return "sticker";
    case WhatsAppKind::Link:
      return "link";
    case WhatsAppKind::SystemEvent:
      return "system event";
    case WhatsAppKind::Deleted:
      return "deleted";
    case WhatsAppKind::Other:
      break;
  }
  return "other";
}

bool CarriesFile(WhatsAppKind kind) {
  switch (kind) {
    case WhatsAppKind::Image:
    case WhatsAppKind::Video:
    case WhatsAppKind::Audio:
    case WhatsAppKind::VoiceNote:
    case WhatsAppKind::Document:
    case WhatsAppKind::Sticker:
      return true;
    default:
      return false;
  }
}

const char* WhatsAppChatKindName(WhatsAppChatKind kind) {
  switch (kind) {
    case WhatsAppChatKind::Person:
      return "person";
    case WhatsAppChatKind::Group:
      return "group";
    case WhatsAppChatKind::Broadcast:
      return "broadcast";
    case WhatsAppChatKind::Status:
      return "status";
    case WhatsAppChatKind::Empty:
      return "empty";
    case WhatsAppChatKind::SystemOnly:
      break;
  }
  return "system";
}

}  // namespace current
