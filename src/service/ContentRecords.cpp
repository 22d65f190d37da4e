#include "kinds/Kind.h"
#include "libYH.h"
#include "service/Extractors.h"
#include "service/current/CurrentService.h"
#include "session/BackupSession.h"

namespace {

// Hands each record to the host's callback, freeing those it does not take.
class CallbackSink : public RecordSink {
 public:
  CallbackSink(YHRecordCallback callback, void* userData) : callback_(callback), userData_(userData) {}

 protected:
  bool Receive(plist_t dict) override {
    const int32_t answer = callback_(dict, userData_);
    if (!(answer & YHRecordTaken)) plist_free(dict);
    return !(answer & YHRecordStop);
  }

 private:
  YHRecordCallback callback_;
  void* userData_;
};

// The kind of the service that last analysed the record.
Kind* KindOf(BackupDevice* device, iDeviceContentType type, int* flag) {
  const BackupSession* session = SessionOf(device);
  if (session && session->currentKinds) return CurrentKindOf(device, type, flag);
  return DescribedKindOf(device, type, flag);
}

int32_t Walk(BackupDevice* device, iDeviceContentType type, YHRecordCallback callback, void* userData,
             Kind* (*kindOf)(BackupDevice*, iDeviceContentType, int*),
             bool (Kind::*hand)(void*, int, RecordSink&)) {
  if (!device || !callback) return YHRecordsInvalid;
  int flag = 0;
  Kind* kind = kindOf(device, type, &flag);
  CallbackSink sink(callback, userData);
  if (!kind || !(kind->*hand)(device, flag, sink)) return YHRecordsNone;
  return sink.Stopped() ? YHRecordsStopped : YHRecordsDone;
}

}  // namespace

int32_t GetContentRecords(BackupDevice* device, iDeviceContentType type, YHRecordCallback callback,
                          void* userData) {
  return Walk(device, type, callback, userData, KindOf, &Kind::HandContent);
}

int32_t GetDeletedContentRecords(BackupDevice* device, iDeviceContentType type, YHRecordCallback callback,
                                 void* userData) {
  return Walk(device, type, callback, userData, CurrentKindOf, &Kind::HandDeletedContent);
}
