#ifndef YH_KINDS_SMS_H
#define YH_KINDS_SMS_H

#include <map>
#include <memory>
#include <string>

#include "kinds/Chat.h"
#include "kinds/Kind.h"

class Contact;

// Text messages and iMessages grouped into conversations, each named from the
// address book. Unlike the other kinds it keeps nothing: every request reads
// the message databases afresh.
class Sms : public Kind {
 public:
  // Conversations of one database by key (byte-wise order).
  using ChatMap = std::map<std::string, std::unique_ptr<Chat>>;

  Sms() = default;

  // The address book that names the conversations; borrowed, not owned.
  void SetContact(Contact* contact) { contact_ = contact; }
  Contact* GetContact() const { return contact_; }

  // The conversations of every message database, database after database
  // (always an answer, an empty one when there are none); `flag` is ignored.
  bool HandContent(void* device, int flag, RecordSink& sink) override;

 private:
  // Reads one database into `chats`, names them and hands them to `sink`:
  // 0 when the database opened, -1 (nothing handed) when it did not.
  int AddSmsList(void* device, ChatMap& chats, const std::string& path, RecordSink& sink);
  // Releases each chat once it is converted, so that a large database is
  // never held twice over, as records and as the answer.
  static void ConvertToPlist(ChatMap& chats, RecordSink& sink);

  Contact* contact_ = nullptr;
};

#endif
