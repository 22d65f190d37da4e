#include "service/Extractors.h"

#include <iterator>

#include "kinds/Calendar.h"
#include "kinds/CallHistory.h"
#include "kinds/Contact.h"
#include "kinds/History.h"
#include "kinds/Note.h"
#include "kinds/Photo.h"
#include "kinds/Recording.h"
#include "kinds/Sms.h"
#include "kinds/SmsAttachment.h"

namespace {

template <class T, T* BackupDevice::*Field>
Kind* Read(const BackupDevice* device) {
  return device->*Field;
}

}  // namespace

const ExtractorField kExtractorFields[9] = {
    Read<CallHistory, &BackupDevice::callHistory>,
    Read<Contact, &BackupDevice::contact>,
    Read<Sms, &BackupDevice::sms>,
    Read<SmsAttachment, &BackupDevice::smsAttachment>,
    Read<Note, &BackupDevice::note>,
    Read<History, &BackupDevice::history>,
    Read<Calendar, &BackupDevice::calendar>,
    Read<Recording, &BackupDevice::recording>,
    Read<Photo, &BackupDevice::photo>,
};

const ContentRoute kContentRoutes[11] = {
    {Read<CallHistory, &BackupDevice::callHistory>, 0},  // ContentCallHistory
    {Read<Contact, &BackupDevice::contact>, 0},          // ContentContact
    {Read<Sms, &BackupDevice::sms>, 0},                  // ContentSms
    {Read<SmsAttachment, &BackupDevice::smsAttachment>, 0},
    {Read<Note, &BackupDevice::note>, 0},
    {Read<History, &BackupDevice::history>, 0},
    {Read<Calendar, &BackupDevice::calendar>, 1},  // events of ordinary calendars
    {Read<Calendar, &BackupDevice::calendar>, 0},  // reminders and birthdays
    {Read<Recording, &BackupDevice::recording>, 0},
    {Read<Photo, &BackupDevice::photo>, 1},  // camera pictures
    {Read<Photo, &BackupDevice::photo>, 0},  // other pictures
};

Kind* DescribedKindOf(const BackupDevice* device, iDeviceContentType type, int* flag) {
  const auto index = static_cast<size_t>(static_cast<uint32_t>(type));  // negative types count as large
  if (index >= std::size(kContentRoutes)) return nullptr;
  const ContentRoute& route = kContentRoutes[index];
  *flag = route.flag;
  return route.extractor(device);
}

void CreateKindObj(BackupDevice* device) {
  device->callHistory = new CallHistory();
  device->sms = new Sms();
  device->contact = new Contact();
  device->callHistory->SetContact(device->contact);
  device->sms->SetContact(device->contact);
  device->calendar = new Calendar();
  device->note = new Note();
  device->photo = new Photo();
  device->history = new History();
  device->smsAttachment = new SmsAttachment();
  device->recording = new Recording();
}
