#ifndef YH_KINDS_CALLHISTORY_H
#define YH_KINDS_CALLHISTORY_H

#include <string>

#include "common/Database.h"
#include "kinds/Call.h"
#include "kinds/RecordKind.h"

class Contact;

// The call log, from the old call database (Manifest.mbdb backups only) and
// the newer call store, with missing names filled in from the address book.
class CallHistory : public RecordKind<Call> {
 public:
  CallHistory() = default;

  // The address book that names the calls; borrowed, not owned.
  void SetContact(Contact* contact) { contact_ = contact; }
  Contact* GetContact() const { return contact_; }

 protected:
  void ReadBackup(BackupDevice* device) override;
  void FillDict(const Call& call, plist_t dict) const override;

 private:
  void AddCallHistoryList(BackupDevice* device, const std::string& path);
  void AddCallHistoryStoreListiOS9(BackupDevice* device, const std::string& path);
  void AddCallHistoryStoreListiOS10(BackupDevice* device, const std::string& path);
  // Runs one query on one database; after a successful query every call held
  // so far that has no name is looked up in the address book.
  void AddCalls(BackupDevice* device, const std::string& path, const char* query,
                Database::RowCallback callback);

  Contact* contact_ = nullptr;
};

#endif
