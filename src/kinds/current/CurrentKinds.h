#ifndef YH_KINDS_CURRENT_CURRENTKINDS_H
#define YH_KINDS_CURRENT_CURRENTKINDS_H

#include "kinds/current/Calendar.h"
#include "kinds/current/CallHistory.h"
#include "kinds/current/Contact.h"
#include "kinds/current/History.h"
#include "kinds/current/Note.h"
#include "kinds/current/Photo.h"
#include "kinds/current/Recording.h"
#include "kinds/current/Sms.h"
#include "kinds/current/SmsAttachment.h"
#include "kinds/current/Voicemail.h"
#include "kinds/current/WhatsApp.h"
#include "kinds/current/WhatsAppCalls.h"
#include "kinds/current/WhatsAppDirectory.h"

// The current service's own extractors of one record. Calls, messages and
// voicemail name their other parties through the one contacts object, and
// WhatsApp's chats and calls through the WhatsApp directory on top of it;
// messages give their attachments through the attachments object; the
// calendar answers events and reminders, the photos camera pictures and the
// others, each by the flag it is asked with. A record's session holds them by
// this type.
class CurrentKinds {
 public:
  CurrentKinds()
      : callHistory(contact),
        sms(contact, smsAttachment),
        voicemail(contact),
        whatsAppDirectory(contact),
        whatsApp(whatsAppDirectory),
        whatsAppCalls(whatsAppDirectory) {}

  current::Contact contact;
  current::CallHistory callHistory;
  current::SmsAttachment smsAttachment;
  current::Sms sms;
  current::Note note;
  current::Photo photo;
  current::History history;
  current::Calendar calendar;
  current::Recording recording;
  current::Voicemail voicemail;
  current::WhatsAppDirectory whatsAppDirectory;
  current::WhatsApp whatsApp;
  current::WhatsAppCalls whatsAppCalls;
};

#endif
