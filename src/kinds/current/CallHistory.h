#ifndef YH_KINDS_CURRENT_CALLHISTORY_H
#define YH_KINDS_CURRENT_CALLHISTORY_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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

  struct Call {
    std::string name;
    std::string address;
    std::optional<int64_t> instant;  // seconds since 1970, for the order
    std::string date;
    std::string type;
    std::string duration;
    std::string countryCode;
    std::string networkCode;
    std::string location;
    bool answered = false;
    std::string service;
  };

 private:
  void Read(const BackupDevice* device);

  Contact& contacts_;
  bool read_ = false;
  std::vector<Call> calls_;
};

}  // namespace current

#endif
