#ifndef YH_TESTS_KINDS_KINDFIXTURE_H
#define YH_TESTS_KINDS_KINDFIXTURE_H

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "common/DateHelpers.h"
#include "index/ManifestDb.h"
#include "index/Mbdb.h"
#include "libYH.h"
#include "session/BackupSession.h"
#include "support/BackupBuilder.h"
#include "support/ScopedEnv.h"

namespace yhtest {

// A backup device record whose index has been read by the reader of its
// kind, as the service leaves it after analysis, for driving one extractor.
// The extractor objects are the test's own; the record holds none of them.
class AnalysedDevice {
 public:
  AnalysedDevice(const std::string& backupPath, IndexKind kind)
      : device_(static_cast<BackupDevice*>(std::calloc(1, sizeof(BackupDevice)))) {
    device_->backupPath = strdup(backupPath.c_str());
    auto* session = new BackupSession;
    device_->indexReader = session;
    if (kind == IndexKind::ManifestDb) {
      device_->backupType = 1;
      auto* reader = new ManifestDb;
      session->SetReader(std::unique_ptr<IndexReader>(reader));
      readOk_ = reader->ReadDb(device_->backupPath) == 1;
    } else {
      device_->backupType = 0;
      auto* reader = new Mbdb;
      session->SetReader(std::unique_ptr<IndexReader>(reader));
      readOk_ = reader->ReadMBDB(device_->backupPath) == 1;
    }
  }
  ~AnalysedDevice() {
    delete device_->indexReader;
    std::free(device_->backupPath);
    std::free(device_);
  }
  AnalysedDevice(const AnalysedDevice&) = delete;
  AnalysedDevice& operator=(const AnalysedDevice&) = delete;

  BackupDevice* Get() const { return device_; }
  bool IndexRead() const { return readOk_; }

 private:
  BackupDevice* device_;
  bool readOk_ = false;
};

// The library's local text of seconds since 2001 under the present zone.
inline std::string LocalDate2001(int32_t seconds) {
  char* text = Convert2001GMTtoDate(seconds);
  std::string copy(text);
  std::free(text);
  return copy;
}

// The library's present local date text.
inline std::string NowText() {
  char* text = GetCurrentDate();
  std::string copy(text);
  std::free(text);
  return copy;
}

}  // namespace yhtest

#endif
