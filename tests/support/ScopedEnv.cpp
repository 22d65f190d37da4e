#include "support/ScopedEnv.h"

#include <optional>

#include "platform/BackupFolders.h"
#include "platform/Environment.h"
#include "platform/Zone.h"

namespace yhtest {

ScopedEnv::ScopedEnv(const char* name, const std::string& value) : name_(name) {
  const std::optional<std::string> old = platform::Variable(name);
  hadValue_ = old.has_value();
  if (old) oldValue_ = *old;
  platform::SetVariable(name, value);
}

ScopedEnv::~ScopedEnv() {
  if (hadValue_) {
    platform::SetVariable(name_, oldValue_);
  } else {
    platform::RemoveVariable(name_);
  }
}

ScopedTimeZone::ScopedTimeZone(const std::string& zone) { platform::UseZoneForTesting(zone); }

ScopedTimeZone::~ScopedTimeZone() { platform::UseZoneForTesting(""); }

ApplicationSupportOverride::ApplicationSupportOverride(const std::string& applicationSupport) {
  std::string folder = applicationSupport;
  if (folder.empty() || folder.back() != '/') folder += '/';
  platform::UseBackupFoldersForTesting({folder + "MobileSync/Backup"});
}

ApplicationSupportOverride::~ApplicationSupportOverride() { platform::UseBackupFoldersForTesting({}); }

}  // namespace yhtest
