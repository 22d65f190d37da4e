#include "SampleDevice.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "fault/SampleBackup.h"
#include "support/DeviceList.h"

namespace yhfuzz {

SampleDevice::SampleDevice(yhtest::IndexKind kind)
    : kind_(kind),
      folder_(yhtest::sample::Builder(kind).Write(root_.Path() + "backup")),
      served_{{{CreateDataRecoveryService(), GetBackupDeviceListAt(folder_.c_str())},
               {CreateCurrentDataRecoveryService(), GetBackupDeviceListAt(folder_.c_str())}}} {
  Analyze();
}

SampleDevice::~SampleDevice() {
  for (const Served& served : served_) {
    yhtest::FreeDeviceList(served.device);
    FreeiDeviceBackupService(served.service);
  }
}

std::string SampleDevice::Stored(const std::string& domain, const std::string& path) const {
  return folder_ + yhtest::BackupBuilder(kind_).StoredPath(domain, path);
}

void SampleDevice::Analyze() const {
  for (const Served& served : served_) served.service->AnalyzeBackup(served.device);
}

void SampleDevice::Ask(const std::vector<iDeviceContentType>& types) const {
  for (const Served& served : served_) {
    for (iDeviceContentType type : types) plist_free(served.service->GetContentList(served.device, type));
  }
}

void SampleDevice::AskEverything() const {
  std::vector<iDeviceContentType> types;
  for (int type = ContentCallHistory; type <= ContentWhatsAppCalls; ++type) {
    types.push_back(static_cast<iDeviceContentType>(type));
  }
  Ask(types);
}

SetAside::SetAside(const std::string& path) : path_(path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream original;
  original << in.rdbuf();
  original_ = original.str();
  std::filesystem::remove(path);
}

SetAside::~SetAside() {
  std::filesystem::remove(path_);
  yhtest::WriteFile(path_, original_);
}

}  // namespace yhfuzz
