#include "SampleDevice.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "fault/SampleBackup.h"
#include "support/DeviceList.h"

namespace yhfuzz {

SampleDevice::SampleDevice(yhtest::IndexKind kind)
    : service_(CreateDataRecoveryService()),
      kind_(kind), folder_(yhtest::sample::Builder(kind).Write(root_.Path() + "backup")) {
  device_ = GetBackupDeviceListAt(folder_.c_str());
  Analyze();
}

SampleDevice::~SampleDevice() {
  yhtest::FreeDeviceList(device_);
  FreeiDeviceBackupService(service_);
}

std::string SampleDevice::Stored(const std::string& domain, const std::string& path) const {
  return folder_ + yhtest::BackupBuilder(kind_).StoredPath(domain, path);
}

void SampleDevice::Analyze() const { service_->AnalyzeBackup(device_); }

void SampleDevice::Ask(const std::vector<iDeviceContentType>& types) const {
  for (iDeviceContentType type : types) plist_free(service_->GetContentList(device_, type));
}

void SampleDevice::AskEverything() const {
  for (int type = ContentCallHistory; type <= ContentOtherPhoto; ++type) {
    plist_free(service_->GetContentList(device_, static_cast<iDeviceContentType>(type)));
  }
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
