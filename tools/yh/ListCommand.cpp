#include <utility>

#include "BackupFinder.h"
#include "Commands.h"
#include "DeviceJson.h"
#include "Flatten.h"
#include "PlistJson.h"
#include "TextTable.h"

namespace yh {
namespace {

std::vector<std::string> DeviceRow(const BackupDevice& device) {
  return {FolderName(device),
          Text(device.deviceName),
          Text(device.productType),
          Text(device.productVersion),
          Text(device.serialNumber),
          Text(device.lastBackupDate),
          device.isEncrypted ? "yes" : "no",
          IndexName(device)};
}

}  // namespace

int RunList(const ListOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const DeviceList list = ListBackups(library, options.root);
  if (options.format == Format::Json) {
    Json devices = Json::array();
    for (const BackupDevice* device : list.Devices()) devices.push_back(DeviceJson(*device));
    out << JsonText(devices) << '\n';
    return 0;
  }
  Rows rows{{"folder", "device", "product", "version", "serial", "last backup", "encrypted", "index"}, {}};
  for (const BackupDevice* device : list.Devices()) rows.cells.push_back(DeviceRow(*device));
  WriteTable(out, std::move(rows));
  return 0;
}

}  // namespace yh
