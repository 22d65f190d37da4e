#ifndef YH_KINDS_CURRENT_CALLHISTORY_H
#define YH_KINDS_CURRENT_CALLHISTORY_H

#include <cstdint>
#include <optional>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/CallTexts.h"
#include "kinds/Kind.h"
#include "kinds/current/Contact.h"

namespace current {

// Calls from every generation's call log: the old call database (with or
// without its later columns) and the call store of iOS 8 on, on both index
// kinds, newest first, with their true dates. Besides the described keys:
// "answered" and "service" (phone, FaceTime audio or FaceTime video).
class CallHistory : public Kind {
 public:
  explicit CallHistory(Contact& contacts) : contacts_(contacts) {}

  // NULL when the backup holds no call.
  plist_t FindContent(void* device, int flag) override;

  // The described texts, then the service.
  enum : size_t { kCallService = kCallTextCount, kCurrentCallTextCount };

  struct Call {
    PackedTexts texts;
    std::optional<int64_t> instant;  // seconds since 1970, for the order
    bool answered = false;
  };

 private:
  void Read(const BackupDevice* device);

  Contact& contacts_;
  bool read_ = false;
  std::vector<Call> calls_;
};

}  // namespace current

#endif
