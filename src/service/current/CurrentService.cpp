#include "service/current/CurrentService.h"

#include <iterator>

#include "kinds/current/CurrentKinds.h"
#include "service/Analysis.h"
#include "service/KindAnswer.h"

namespace {

// The extractor of the current service that answers each content type and
// the flag it is asked with, in content-type order.
struct CurrentRoute {
  Kind& (*kind)(CurrentKinds& kinds);
  int flag;
};

const CurrentRoute kCurrentRoutes[] = {
    {[](CurrentKinds& k) -> Kind& { return k.callHistory; }, 0},  // ContentCallHistory
    {[](CurrentKinds& k) -> Kind& { return k.contact; }, 0},  // ContentContact
    {[](CurrentKinds& k) -> Kind& { return k.sms; }, 0},  // ContentSms
    {[](CurrentKinds& k) -> Kind& { return k.smsAttachment; }, 0},  // ContentSmsAttachment
    {[](CurrentKinds& k) -> Kind& { return k.note; }, 0},  // ContentNote
    {[](CurrentKinds& k) -> Kind& { return k.history; }, 0},  // ContentSafariHistory
    {[](CurrentKinds& k) -> Kind& { return k.calendar; }, current::Calendar::kEvents},  // ContentCalendarEvent
    {[](CurrentKinds& k) -> Kind& { return k.calendar; }, current::Calendar::kReminders},  // ContentCalendarReminder
    {[](CurrentKinds& k) -> Kind& { return k.recording; }, 0},  // ContentRecording
    {[](CurrentKinds& k) -> Kind& { return k.photo; }, current::Photo::kCamera},  // ContentCameraPhoto
    {[](CurrentKinds& k) -> Kind& { return k.photo; }, current::Photo::kOther},  // ContentOtherPhoto
    {[](CurrentKinds& k) -> Kind& { return k.voicemail; }, 0},  // ContentVoicemail
    {[](CurrentKinds& k) -> Kind& { return k.whatsApp; }, 0},  // ContentWhatsApp
    {[](CurrentKinds& k) -> Kind& { return k.whatsAppCalls; }, 0},  // ContentWhatsAppCalls
};

void PrepareCurrentSession(BackupDevice*, BackupSession& session) {
  session.SetReadsWal(true);
  session.currentKinds.reset(new CurrentKinds);
}

}  // namespace

int32_t AnalyzeCurrentBackup(BackupDevice* device) { return AnalyzeBackupWith(device, PrepareCurrentSession); }

Kind* CurrentKindOf(BackupDevice* device, iDeviceContentType type, int* flag) {
  const auto index = static_cast<size_t>(static_cast<uint32_t>(type));  // negative types count as large
  if (!device || index >= std::size(kCurrentRoutes)) return nullptr;
  BackupSession* session = SessionOf(device);
  if (!session || !session->currentKinds) return nullptr;
  const CurrentRoute& route = kCurrentRoutes[index];
  *flag = route.flag;
  return &route.kind(*session->currentKinds);
}

plist_t GetCurrentContentList(BackupDevice* device, iDeviceContentType type) {
  return KindAnswer(CurrentKindOf, device, type, &Kind::FindContent);
}

plist_t GetDeletedContentList(BackupDevice* device, iDeviceContentType type) {
  return KindAnswer(CurrentKindOf, device, type, &Kind::FindDeletedContent);
}
