#ifndef YH_INDEX_INDEXREADER_H
#define YH_INDEX_INDEXREADER_H

#include <memory>
#include <utility>

#include "common/VqBase.h"
#include "index/BackupSession.h"
#include "libYH.h"

// What both index readers share: the session of the backup they index.
class IndexReader : public VqBase {
 public:
  IndexReader() : session_(std::make_unique<BackupSession>()) {}
  ~IndexReader() override = default;

  BackupSession& Session() { return *session_; }

  // Hands the session over to a reader that replaces this one, so that what
  // was set up before a new analysis survives it.
  std::unique_ptr<BackupSession> TakeSession() {
    return std::exchange(session_, std::make_unique<BackupSession>());
  }
  void AdoptSession(std::unique_ptr<BackupSession> session) { session_ = std::move(session); }

 private:
  std::unique_ptr<BackupSession> session_;
};

// The reader of an analysed record of type 0 or 1, as the base both share;
// NULL before analysis and for any other type.
inline IndexReader* ReaderOf(const BackupDevice* device) {
  if (device->backupType != 0 && device->backupType != 1) return nullptr;
  return static_cast<IndexReader*>(device->indexReader);
}

#endif
