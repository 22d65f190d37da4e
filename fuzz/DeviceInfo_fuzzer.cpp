// ReadPlist and the device information of discovery on arbitrary Info.plist
// and Manifest.plist bytes. The first byte chooses: even, the rest is a
// 2-byte length, that many Info.plist bytes, then the Manifest.plist bytes;
// odd, the rest grows both trees (binary or XML), whose expected keys turn up
// with values of any node type.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "PlistShapes.h"
#include "common/PlistHelpers.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"

namespace {

const std::vector<std::string> kInfoKeys = {"Product Name", "Product Version", "Product Type", "Unique Identifier",
                                            "Device Name", "Serial Number", "Last Backup Date"};
const std::vector<std::string> kManifestKeys = {"IsEncrypted", "Date", "Lockdown", "DeviceName", "SerialNumber",
                                                "ProductType", "UniqueDeviceID", "ProductVersion"};

// A folder that counts as a backup: it holds an index, here an empty one.
struct BackupFolder {
  BackupFolder() { yhtest::WriteFile(dir.Path() + "Manifest.db", ""); }
  yhtest::TempDir dir;
};

void Write(const std::string& path, const std::string& bytes) {
  std::filesystem::remove(path);
  if (!bytes.empty()) yhtest::WriteFile(path, bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const BackupFolder backup;
  const std::string& folder = backup.dir.Path();
  std::string info;
  std::string manifest;
  if (size > 0 && data[0] % 2) {
    FuzzedDataProvider bytes(data + 1, size - 1);
    info = yhfuzz::PlistFileBytes(yhfuzz::GrowDict(bytes, kInfoKeys, 3), bytes.ConsumeBool());
    manifest = yhfuzz::PlistFileBytes(yhfuzz::GrowDict(bytes, kManifestKeys, 3), bytes.ConsumeBool());
  } else if (size >= 3) {
    const size_t length = std::min<size_t>(size - 3, static_cast<size_t>(data[1]) << 8 | data[2]);
    info.assign(reinterpret_cast<const char*>(data + 3), length);
    manifest.assign(reinterpret_cast<const char*>(data + 3 + length), size - 3 - length);
  }
  Write(folder + "Info.plist", info);
  Write(folder + "Manifest.plist", manifest);

  plist_free(ReadPlist((folder + "Info.plist").c_str()));
  yhtest::FreeDeviceList(GetBackupDeviceListAt(folder.c_str()));
  return 0;
}
