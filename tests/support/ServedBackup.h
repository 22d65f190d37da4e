#ifndef YH_TESTS_SUPPORT_SERVEDBACKUP_H
#define YH_TESTS_SUPPORT_SERVEDBACKUP_H

#include <string>

#include "libYH.h"

namespace yhtest {

enum class Service { Described, Current };

// One backup folder analysed through a service's table, as a host drives it.
class ServedBackup {
 public:
  // An encrypted backup is unlocked with `password` first.
  ServedBackup(const std::string& backupPath, Service service, const char* password = nullptr);
  ~ServedBackup();
  ServedBackup(const ServedBackup&) = delete;
  ServedBackup& operator=(const ServedBackup&) = delete;

  bool Analysed() const { return analysed_; }
  BackupDevice* Device() const { return device_; }
  // Dump() of the answer to one content request.
  std::string Answer(int type) const;
  // The answer itself; the caller frees it.
  plist_t Tree(int type) const;
  // The same for GetDeletedContentList.
  std::string DeletedAnswer(int type) const;
  plist_t DeletedTree(int type) const;

 private:
  iDeviceBackupService* table_;
  BackupDevice* device_;
  bool analysed_ = false;
};

// The current service's answers of `type` for the backup at `backupPath`:
// the live one, then the live and deleted ones once the stored database at
// `stored` lost its header, so that SQLite refuses it.
struct RefusedAnswers {
  std::string liveBefore;
  std::string live;
  std::string deleted;
};
RefusedAnswers AnswersOnceRefused(const std::string& backupPath, const std::string& stored, int type);

}  // namespace yhtest

#endif
