#ifndef YH_KINDS_CURRENT_CALLHISTORY_H
#define YH_KINDS_CURRENT_CALLHISTORY_H

#include <cstdint>
#include <optional>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/CallTexts.h"
#include "kinds/current/Contact.h"
#include "kinds/current/StoredRecordKind.h"

namespace current {

// One call as the current service keeps it.
struct Call {
  // The described texts, then the service.
  enum : size_t { kService = kCallTextCount };

  PackedTexts texts;
  std::optional<int64_t> instant;  // seconds since 1970, for the order
  bool answered = false;
};

// Calls from every generation's call log: the old call database (with or
// without its later columns) and the call store of iOS 8 on, on both index
// kinds, newest first, with their true dates. Besides the described keys:
// "answered" and "service" (phone, FaceTime audio or FaceTime video). NULL
// when the backup holds no call.
class CallHistory : public StoredRecordKind<Call> {
 public:
  explicit CallHistory(Contact& contacts) : StoredRecordKind(WhenNone::Null), contacts_(contacts) {}

 private:
  std::vector<Call> Read(const BackupDevice* device) override;
  void InsertKeys(const Call& call, plist_t dict) const override;

  Contact& contacts_;
};

}  // namespace current

#endif
