#include "support/ServedBackup.h"

#include <algorithm>

#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/PlistDump.h"

namespace yhtest {

ServedBackup::ServedBackup(const std::string& backupPath, Service service, const char* password)
    : table_(service == Service::Current ? CreateCurrentDataRecoveryService() : CreateDataRecoveryService()),
      device_(GetBackupDeviceListAt(backupPath.c_str())) {
  if (device_ && password) UnlockBackup(device_, password);
  if (device_) analysed_ = table_->AnalyzeBackup(device_) == 1;
}

ServedBackup::~ServedBackup() {
  FreeDeviceList(device_);
  FreeiDeviceBackupService(table_);
}

plist_t ServedBackup::Tree(int type) const {
  return device_ ? table_->GetContentList(device_, static_cast<iDeviceContentType>(type)) : nullptr;
}

std::string ServedBackup::Answer(int type) const { return DumpAndFree(Tree(type)); }

plist_t ServedBackup::DeletedTree(int type) const {
  return device_ ? GetDeletedContentList(device_, static_cast<iDeviceContentType>(type)) : nullptr;
}

std::string ServedBackup::DeletedAnswer(int type) const { return DumpAndFree(DeletedTree(type)); }

RefusedAnswers AnswersOnceRefused(const std::string& backupPath, const std::string& stored, int type) {
  RefusedAnswers answers;
  answers.liveBefore = ServedBackup(backupPath, Service::Current).Answer(type);
  std::string bytes = ReadBytes(stored);
  std::fill(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(std::min<size_t>(bytes.size(), 100)), '\0');
  WriteFile(stored, bytes);
  const ServedBackup damaged(backupPath, Service::Current);
  answers.live = damaged.Answer(type);
  answers.deleted = damaged.DeletedAnswer(type);
  return answers;
}

}  // namespace yhtest
