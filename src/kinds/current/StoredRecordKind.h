#ifndef YH_KINDS_CURRENT_STOREDRECORDKIND_H
#define YH_KINDS_CURRENT_STOREDRECORDKIND_H

#include <plist/plist.h>

#include <vector>

#include "kinds/Kind.h"
#include "libYH.h"

namespace current {

// What a kind answers when the backup holds none of its records.
enum class WhenNone { Null, EmptyList };

// The order of work every current kind shares: on the first request read
// the kind's records (Read, which opens its stored databases through
// ReadStoredDatabases and puts the records in the kind's order), keep them
// for the life of the backup record, and answer every request with an array
// of those that the request's flag selects, one dictionary each. A kind's
// own file then holds only where its databases lie, its queries, its rules
// and its keys. One backup record is used from one thread at a time; the
// kept records are the record's own, so two records may be read at once.
template <class Record>
class StoredRecordKind : public Kind {
 public:
  plist_t FindContent(void* device, int flag) final {
    const std::vector<Record>& records = Records(static_cast<const BackupDevice*>(device));
    if (records.empty() && whenNone_ == WhenNone::Null) return nullptr;
    plist_t array = plist_new_array();
    for (const Record& record : records) {
      if (!Selects(record, flag)) continue;
      plist_t dict = plist_new_dict();
      InsertKeys(record, dict);
      plist_array_append_item(array, dict);
    }
    return array;
  }

 protected:
  explicit StoredRecordKind(WhenNone whenNone) : whenNone_(whenNone) {}

  // The kind's records in answer order, read on the first call only.
  const std::vector<Record>& Records(const BackupDevice* device) {
    if (read_) return records_;
    read_ = true;
    records_ = Read(device);
    // Kept for every later request: spare room would be kept too.
    records_.shrink_to_fit();
    return records_;
  }

  // Every record of the backup, in the kind's order.
  virtual std::vector<Record> Read(const BackupDevice* device) = 0;
  // Whether the answer for `flag` holds the record; a kind that answers two
  // content types tells them apart by the flag its route gives.
  virtual bool Selects(const Record& /*record*/, int /*flag*/) const { return true; }
  // Inserts the kind's keys for one record, in the answer's key order.
  virtual void InsertKeys(const Record& record, plist_t dict) const = 0;

 private:
  const WhenNone whenNone_;
  bool read_ = false;
  std::vector<Record> records_;
};

}  // namespace current

#endif
