#ifndef YH_TESTS_SUPPORT_SCOPEDENV_H
#define YH_TESTS_SUPPORT_SCOPEDENV_H

#include <memory>
#include <string>

namespace yhtest {

// Sets an environment variable for the lifetime of the object, then puts the
// earlier value (or its absence) back.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value);
  ~ScopedEnv();
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  std::string name_;
  bool hadValue_;
  std::string oldValue_;
};

// Runs code under the zone of an IANA name ("Europe/Berlin"), then goes back
// to the host's own zone.
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const std::string& zone);
  ~ScopedTimeZone();
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

 private:
};

// Points discovery at `applicationSupport` + "MobileSync/Backup", the folder
// the sync software uses below the user's data folder on every system.
class ApplicationSupportOverride {
 public:
  explicit ApplicationSupportOverride(const std::string& applicationSupport);
  ~ApplicationSupportOverride();
  ApplicationSupportOverride(const ApplicationSupportOverride&) = delete;
  ApplicationSupportOverride& operator=(const ApplicationSupportOverride&) = delete;
};

}  // namespace yhtest

#endif
