#include "PrivateFolder.h"

#include "platform/FileSystem.h"

namespace yh {

PrivateFolder::PrivateFolder() : path_(platform::MakeUniqueFolder(platform::TemporaryFolder(), "yh-")) {
  // MakeUniqueFolder's path ends in "/"; callers add their own.
  if (!path_.empty()) path_.pop_back();
}

PrivateFolder::~PrivateFolder() {
  if (!path_.empty()) platform::RemoveTree(path_);
}

}  // namespace yh
