#ifndef YH_KINDS_CURRENT_RECORDING_H
#define YH_KINDS_CURRENT_RECORDING_H

#include <cstdint>
#include <string>
#include <vector>

#include "kinds/Kind.h"
#include "libYH.h"

namespace current {

// Voice memos of every generation: Recordings.db (up to iOS 11),
// CloudRecordings.db beside it (iOS 12 and 13) and in the voice memos app
// group (iOS 14 on). Each memo's audio file is looked up exactly beside its
// database. A memo whose file the backup lacks is listed too, with an empty
// path and size 0: its title and date are still worth recovering. Besides
// the described keys: "present" and "deleted" (in Recently Deleted).
class Recording : public Kind {
 public:
  // NULL when no memo database lists a memo.
  plist_t FindContent(void* device, int flag) override;

  struct Memo {
    std::string date;
    std::string title;
    std::string duration;
    std::string name;        // the audio file's name
    std::string storedPath;  // ZPATH as the database wrote it
    std::string path;
    uint64_t size = 0;
    bool present = false;
    bool deleted = false;
  };

 private:
  void Read(const BackupDevice* device);

  bool read_ = false;
  std::vector<Memo> memos_;
};

}  // namespace current

#endif
