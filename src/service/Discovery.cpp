#include "service/Discovery.h"

#include <cstdlib>
#include <cstring>

#include "common/DateHelpers.h"
#include "common/FileHelpers.h"
#include "common/PlistHelpers.h"
#include "index/BackupType.h"
#include "platform/BackupFolders.h"
#include "platform/FileSystem.h"
#include "service/ServiceOperations.h"

namespace {

// libplist counts dates from 2001-01-01; Info.plist's date is wanted as a
// time since 1970.
constexpr int64_t kSeconds1970To2001 = 978307200;

struct PlistTree {
  explicit PlistTree(const std::string& path) : root(ReadPlist(path.c_str())) {}
  ~PlistTree() { plist_free(root); }
  PlistTree(const PlistTree&) = delete;
  PlistTree& operator=(const PlistTree&) = delete;
  plist_t root;
};

bool IsNullOrEmpty(const char* text) { return text == nullptr || *text == '\0'; }

// A present key of the wrong node type counts as absent.
void CopyString(plist_t dict, const char* key, char** field) {
  std::string value;
  if (PlistGetString(plist_dict_get_item(dict, key), &value)) *field = strdup(value.c_str());
}

void StoreInfoPlist(BackupDevice* record, plist_t info) {
  CopyString(info, "Product Name", &record->productName);
  CopyString(info, "Product Version", &record->productVersion);
  CopyString(info, "Product Type", &record->productType);
  CopyString(info, "Unique Identifier", &record->uniqueIdentifier);
  CopyString(info, "Device Name", &record->deviceName);
  CopyString(info, "Serial Number", &record->serialNumber);
  if (plist_t date = plist_dict_get_item(info, "Last Backup Date")) {
    // Design decision: a value that is not a date counts as 0 seconds since
    // 1970, so the field is still set and Manifest.plist's date is not used.
    const int64_t since1970 =
        plist_get_node_type(date) == PLIST_DATE ? PlistGetDateSeconds(date) + kSeconds1970To2001 : 0;
    record->lastBackupDate = Convert1900GMTDate(static_cast<int32_t>(since1970));
  }
}

void StoreManifestPlist(BackupDevice* record, plist_t manifest) {
  if (plist_t encrypted = plist_dict_get_item(manifest, "IsEncrypted")) {
    record->isEncrypted = PlistGetBool(encrypted);
  }
  if (IsNullOrEmpty(record->lastBackupDate)) {
    if (plist_t date = plist_dict_get_item(manifest, "Date")) {
      free(record->lastBackupDate);
      record->lastBackupDate = Convert2001GMTtoDate(static_cast<int32_t>(PlistGetDateSeconds(date)));
    }
  }
  plist_t lockdown = plist_dict_get_item(manifest, "Lockdown");
  if (!lockdown) return;
  const struct {
    const char* key;
    char** field;
  } fallbacks[] = {
      {"DeviceName", &record->deviceName},       {"SerialNumber", &record->serialNumber},
      {"ProductType", &record->productType},     {"UniqueDeviceID", &record->uniqueIdentifier},
      {"ProductVersion", &record->productVersion},
  };
  for (const auto& fallback : fallbacks) {
    // The test is "NULL or empty" but only a NULL field is filled: an empty
    // name that Info.plist gave on purpose is kept.
    if (!IsNullOrEmpty(*fallback.field)) continue;
    std::string value;
    if (PlistGetString(plist_dict_get_item(lockdown, fallback.key), &value) && *fallback.field == nullptr) {
      *fallback.field = strdup(value.c_str());
    }
  }
}

// Index files in order of preference: a folder holding both is an old backup.
const struct {
  const char* name;
  BackupType backupType;
} kIndexFiles[] = {{"Manifest.mbdb", BackupType::Mbdb}, {"Manifest.db", BackupType::ManifestDb}};

}  // namespace

void StoreBackupDeviceInfo(BackupDevice* record) {
  const std::string folder = record->backupPath;
  {
    PlistTree info(folder + "Info.plist");
    if (info.root) StoreInfoPlist(record, info.root);
  }
  PlistTree manifest(folder + "Manifest.plist");
  if (manifest.root) StoreManifestPlist(record, manifest.root);
}

BackupDevice* NewBackupRecord(const std::string& folder) {
  for (const auto& index : kIndexFiles) {
    if (!VQIsFileExists((folder + index.name).c_str())) continue;
    auto* record = static_cast<BackupDevice*>(calloc(1, sizeof(BackupDevice)));
    record->backupPath = strdup(folder.c_str());
    record->backupType = static_cast<int32_t>(index.backupType);
    StoreBackupDeviceInfo(record);
    return record;
  }
  return nullptr;
}

BackupDevice* ListBackupsIn(const std::string& backupFolder) {
  BackupDevice* head = nullptr;
  BackupDevice** tail = &head;
  for (const std::string& name : platform::ListFolder(backupFolder)) {
    const std::string entry = backupFolder + (backupFolder.back() == '/' ? "" : "/") + name;
    if (!platform::IsFolder(entry)) continue;
    if (BackupDevice* record = NewBackupRecord(entry + "/")) {
      *tail = record;
      tail = &record->next;
    }
  }
  return head;
}

BackupDevice* GetBackupDeviceListAt(const char* folder) {
  if (folder == nullptr || !platform::IsFolder(folder)) return nullptr;
  std::string path = platform::PortablePath(folder);
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  if (BackupDevice* single = NewBackupRecord(path == "/" ? path : path + "/")) return single;
  return ListBackupsIn(path);
}

// Every default folder that holds backups, in the order the platform names
// them: Windows has two, one per kind of install.
BackupDevice* GetBackupDeviceList() {
  BackupDevice* head = nullptr;
  BackupDevice** tail = &head;
  for (const std::string& folder : platform::DefaultBackupFolders()) {
    *tail = GetBackupDeviceListAt(folder.c_str());
    while (*tail) tail = &(*tail)->next;
  }
  return head;
}
