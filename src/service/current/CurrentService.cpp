#include "service/current/CurrentService.h"

#include <iterator>

#include "kinds/current/CurrentKinds.h"
#include "service/Analysis.h"

namespace {

// The extractor of the current service that answers each content type, in
// content-type order.
using CurrentField = Kind* (*)(CurrentKinds& kinds);

const CurrentField kCurrentRoutes[] = {
    [](CurrentKinds& kinds) -> Kind* { return &kinds.callHistory; },                // ContentCallHistory
    [](CurrentKinds& kinds) -> Kind* { return &kinds.contact; },                    // ContentContact
    [](CurrentKinds& kinds) -> Kind* { return &kinds.sms; },                        // ContentSms
    [](CurrentKinds& kinds) -> Kind* { return &kinds.smsAttachment; },              // ContentSmsAttachment
    [](CurrentKinds& kinds) -> Kind* { return &kinds.note; },                       // ContentNote
    [](CurrentKinds& kinds) -> Kind* { return &kinds.history; },                    // ContentSafariHistory
    [](CurrentKinds& kinds) -> Kind* { return &kinds.calendar.Events(); },          // ContentCalendarEvent
    [](CurrentKinds& kinds) -> Kind* { return &kinds.calendar.Reminders(); },       // ContentCalendarReminder
    [](CurrentKinds& kinds) -> Kind* { return &kinds.recording; },                  // ContentRecording
    [](CurrentKinds& kinds) -> Kind* { return &kinds.photo.camera; },               // ContentCameraPhoto
    [](CurrentKinds& kinds) -> Kind* { return &kinds.photo.other; },                // ContentOtherPhoto
    [](CurrentKinds& kinds) -> Kind* { return &kinds.voicemail; },                  // ContentVoicemail
};

void PrepareCurrentSession(BackupDevice*, BackupSession& session) {
  session.SetReadsWal(true);
  session.currentKinds.reset(new CurrentKinds);
}

}  // namespace

int32_t AnalyzeCurrentBackup(BackupDevice* device) { return AnalyzeBackupWith(device, PrepareCurrentSession); }

plist_t GetCurrentContentList(BackupDevice* device, iDeviceContentType type) {
  const auto index = static_cast<size_t>(static_cast<uint32_t>(type));  // negative types count as large
  if (index >= std::size(kCurrentRoutes)) return nullptr;
  BackupSession* session = SessionOf(device);
  if (!session || !session->currentKinds) return nullptr;
  return kCurrentRoutes[index](*session->currentKinds)->FindContent(device, 0);
}
