#include "service/current/CurrentService.h"

#include <memory>

#include "index/IndexReader.h"
#include "service/Analysis.h"
#include "service/Extractors.h"
#include "service/current/CurrentKinds.h"

namespace {

// Where the current service answers a content type with an extractor of its
// own; the other types are answered as the described service answers them.
using CurrentField = Kind* (*)(CurrentKinds& kinds);

const CurrentField kCurrentRoutes[12] = {
    [](CurrentKinds& kinds) -> Kind* { return &kinds.callHistory; },    // ContentCallHistory
    [](CurrentKinds& kinds) -> Kind* { return &kinds.contact; },        // ContentContact
    [](CurrentKinds& kinds) -> Kind* { return &kinds.sms; },            // ContentSms
    [](CurrentKinds& kinds) -> Kind* { return &kinds.smsAttachment; },  // ContentSmsAttachment
    [](CurrentKinds& kinds) -> Kind* { return &kinds.note; },                 // ContentNote
    [](CurrentKinds& kinds) -> Kind* { return &kinds.history; },              // ContentSafariHistory
    [](CurrentKinds& kinds) -> Kind* { return &kinds.calendar.Events(); },     // ContentCalendarEvent
    [](CurrentKinds& kinds) -> Kind* { return &kinds.calendar.Reminders(); },  // ContentCalendarReminder
    [](CurrentKinds& kinds) -> Kind* { return &kinds.recording; },            // ContentRecording
    [](CurrentKinds& kinds) -> Kind* { return &kinds.photo.camera; },         // ContentCameraPhoto
    [](CurrentKinds& kinds) -> Kind* { return &kinds.photo.other; },          // ContentOtherPhoto
    [](CurrentKinds& kinds) -> Kind* { return &kinds.voicemail; },            // ContentVoicemail
};

void PrepareCurrentSession(BackupDevice*, BackupSession& session) {
  session.SetReadsWal(true);
  session.currentKinds = std::make_unique<CurrentKinds>();
}

}  // namespace

int32_t AnalyzeCurrentBackup(BackupDevice* device) { return AnalyzeBackupWith(device, PrepareCurrentSession); }

plist_t GetCurrentContentList(BackupDevice* device, iDeviceContentType type) {
  const auto index = static_cast<uint32_t>(type);  // negative types count as large
  if (index > 11) return nullptr;
  IndexReader* reader = ReaderOf(device);
  if (!reader) return nullptr;
  auto* kinds = static_cast<CurrentKinds*>(reader->Session().currentKinds.get());
  if (!kinds) return nullptr;
  if (kCurrentRoutes[index]) return kCurrentRoutes[index](*kinds)->FindContent(device, 0);
  const ContentRoute& route = kContentRoutes[index];
  return route.extractor(device)->FindContent(device, route.flag);
}
