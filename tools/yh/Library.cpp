#include "Library.h"

#include <algorithm>
#include <cstdlib>

#include "TerminalText.h"

namespace yh {

DeviceList::DeviceList(BackupDevice* head, void (*freeList)(BackupDevice*)) : head_(head), freeList_(freeList) {
  for (BackupDevice* device = head; device; device = device->next) devices_.push_back(device);
  // The library lists folders in directory order, which differs between file systems.
  std::sort(devices_.begin(), devices_.end(),
            [](const BackupDevice* a, const BackupDevice* b) { return FolderName(*a) < FolderName(*b); });
}

DeviceList::DeviceList(DeviceList&& other) noexcept
    : head_(other.head_), freeList_(other.freeList_), devices_(std::move(other.devices_)) {
  other.head_ = nullptr;
  other.devices_.clear();
}

DeviceList::~DeviceList() {
  if (!head_) return;
  for (BackupDevice* device : devices_) {
    YHFree(device->productName);
    YHFree(device->productType);
    YHFree(device->productVersion);
    YHFree(device->uniqueIdentifier);
  }
  freeList_(head_);
}

Library::Library(bool classic)
    : table_(classic ? CreateDataRecoveryService() : CreateCurrentDataRecoveryService()) {}

Library::~Library() { FreeiDeviceBackupService(table_); }

DeviceList Library::List(const std::string& root) const {
  BackupDevice* head = root.empty() ? table_->GetBackupDeviceList() : GetBackupDeviceListAt(root.c_str());
  return DeviceList(head, table_->FreeBackupDevice);
}

bool Library::Analyze(BackupDevice& device) const { return table_->AnalyzeBackup(&device) == 1; }

Plist Library::Content(BackupDevice& device, int contentType) const {
  return Plist(table_->GetContentList(&device, static_cast<iDeviceContentType>(contentType)));
}

Plist Library::Deleted(BackupDevice& device, int contentType) const {
  return Plist(GetDeletedContentList(&device, static_cast<iDeviceContentType>(contentType)));
}

namespace {

using RecordHandler = std::function<void(plist_t record)>;

// `handler` points to a pointer to the host's handler.
int32_t HandRecord(plist_t record, void* handler) {
  (**static_cast<const RecordHandler**>(handler))(record);
  return YHRecordNext;
}

}  // namespace

bool Library::Records(BackupDevice& device, int contentType, bool deleted,
                      const std::function<void(plist_t record)>& record) const {
  const auto type = static_cast<iDeviceContentType>(contentType);
  const RecordHandler* handler = &record;
  const int32_t result = deleted ? GetDeletedContentRecords(&device, type, HandRecord, &handler)
                                 : GetContentRecords(&device, type, HandRecord, &handler);
  return result != YHRecordsNone;
}

std::string Text(const char* text) { return text ? text : ""; }

std::string FolderName(const BackupDevice& device) {
  std::string path = Text(device.backupPath);
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string IndexName(const BackupDevice& device) { return device.backupType == 0 ? "Manifest.mbdb" : "Manifest.db"; }

std::string Describe(const BackupDevice& device) {
  const std::string name = Text(device.deviceName);
  return Printable(FolderName(device)) + (name.empty() ? "" : " (" + Printable(name) + ")");
}

}  // namespace yh
