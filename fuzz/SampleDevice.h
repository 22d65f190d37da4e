#ifndef YH_FUZZ_SAMPLEDEVICE_H
#define YH_FUZZ_SAMPLEDEVICE_H

#include <array>
#include <string>
#include <vector>

#include "libYH.h"
#include "support/BackupBuilder.h"

namespace yhfuzz {

// The tests' sample backup of one index kind, written once per fuzzing
// process into a folder of its own, with one analysed device record for each
// service. A harness puts its input in place of one stored file, asks both
// services, then puts the original back, so that every input is judged on
// the same backup.
class SampleDevice {
 public:
  explicit SampleDevice(yhtest::IndexKind kind);
  ~SampleDevice();
  SampleDevice(const SampleDevice&) = delete;
  SampleDevice& operator=(const SampleDevice&) = delete;

  const std::string& Folder() const { return folder_; }
  std::string Stored(const std::string& domain, const std::string& path) const;

  // Analyses both records afresh: extractors keep what they read first.
  void Analyze() const;
  // Asks both services for each content type in turn and frees the answers.
  void Ask(const std::vector<iDeviceContentType>& types) const;
  void AskEverything() const;

 private:
  // A service with its own record of the backup.
  struct Served {
    iDeviceBackupService* service;
    BackupDevice* device;
  };

  yhtest::IndexKind kind_;
  yhtest::TempDir root_;
  std::string folder_;
  std::array<Served, 2> served_;  // the described service, then the current one
};

// Takes a file away for the lifetime of the object, so that the harness can
// write its input there, then puts the original back.
class SetAside {
 public:
  explicit SetAside(const std::string& path);
  ~SetAside();
  SetAside(const SetAside&) = delete;
  SetAside& operator=(const SetAside&) = delete;

 private:
  std::string path_;
  std::string original_;
};

}  // namespace yhfuzz

#endif
