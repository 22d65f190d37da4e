#ifndef YH_TOOL_LIBRARY_H
#define YH_TOOL_LIBRARY_H

#include <libYH.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace yh {

struct PlistFree {
  void operator()(plist_t node) const { plist_free(node); }
};
// An answer of the library; NULL when the library had nothing to give.
using Plist = std::unique_ptr<void, PlistFree>;

// A backup list handed out by the library, freed as a careful host does:
// FreeBackupDevice leaves the product texts and the identifier to the host.
class DeviceList {
 public:
  DeviceList(BackupDevice* head, void (*freeList)(BackupDevice*));
  DeviceList(DeviceList&& other) noexcept;
  DeviceList& operator=(DeviceList&&) = delete;
  DeviceList(const DeviceList&) = delete;
  DeviceList& operator=(const DeviceList&) = delete;
  ~DeviceList();

  // In the order of their folder names.
  const std::vector<BackupDevice*>& Devices() const { return devices_; }

 private:
  BackupDevice* head_;
  void (*freeList_)(BackupDevice*);
  std::vector<BackupDevice*> devices_;
};

// The library's service table for the life of one command: the current
// service, or the described one when `classic`.
class Library {
 public:
  explicit Library(bool classic);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // The backups in `root`; in the default location when `root` is empty.
  DeviceList List(const std::string& root) const;
  // True when the backup's index was read.
  bool Analyze(BackupDevice& device) const;
  Plist Content(BackupDevice& device, int contentType) const;
  // The kind's records the owner deleted (GetDeletedContentList); NULL with
  // the described service, which recovers nothing.
  Plist Deleted(BackupDevice& device, int contentType) const;
  // The records of Content (or, when `deleted`, of Deleted) handed to
  // `record` one at a time, each freed once it returns
  // (GetContentRecords); false when that answer would be NULL.
  bool Records(BackupDevice& device, int contentType, bool deleted,
               const std::function<void(plist_t record)>& record) const;

 private:
  iDeviceBackupService* table_;
};

// A device text, "" where the library left NULL.
std::string Text(const char* text);
// The name of the backup's own folder.
std::string FolderName(const BackupDevice& device);
// "Manifest.mbdb" or "Manifest.db", after the backup's type.
std::string IndexName(const BackupDevice& device);
// The folder name and, when known, the device name, printable.
std::string Describe(const BackupDevice& device);

}  // namespace yh

#endif
