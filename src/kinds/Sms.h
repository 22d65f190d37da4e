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

  // A new array with the conversations of every message database, database
  // after database (never NULL; empty when there are none); `flag` is ignored.
  plist_t FindContent(void* device, int flag) override;

 private:
  // Reads one database into `chats`, names them and appends them to `array`:
  // 0 when the database opened, -1 (nothing appended) when it did not.
  int AddSmsList(void* device, ChatMap& chats, const std::string& path, plist_t array);
  // Releases each chat once it is converted, so that a large database is
  // never held twice over, as records and as the answer.
  static void ConvertToPlist(ChatMap& chats, plist_t array);

  Contact* contact_ = nullptr;
};

#endif
