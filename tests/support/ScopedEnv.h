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

// Runs code under the given TZ (tzset() on the way in and out).
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const std::string& zone);
  ~ScopedTimeZone();
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

 private:
  std::unique_ptr<ScopedEnv> tz_;
};

// Points discovery at `applicationSupport` through XDG_DATA_HOME.
class ApplicationSupportOverride {
 public:
  explicit ApplicationSupportOverride(const std::string& applicationSupport)
      : xdg_("XDG_DATA_HOME", applicationSupport) {}

 private:
  ScopedEnv xdg_;
};

}  // namespace yhtest

#endif
