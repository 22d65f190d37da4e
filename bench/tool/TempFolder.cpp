#include "TempFolder.h"

#include <unistd.h>

#include "platform/FileSystem.h"

namespace bench {

TempFolder::TempFolder() : path_(platform::MakeUniqueFolder(platform::TemporaryFolder(), "yh_bench_yh.")) {}

TempFolder::~TempFolder() {
  if (path_.empty()) return;
  platform::RemoveTree(path_);
  sync();
}

}  // namespace bench
