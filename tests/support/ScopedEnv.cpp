#include "support/ScopedEnv.h"

#include <cstdlib>
#include <ctime>

namespace yhtest {

ScopedEnv::ScopedEnv(const char* name, const std::string& value) : name_(name) {
  const char* old = std::getenv(name);
  hadValue_ = old != nullptr;
  if (old) oldValue_ = old;
  setenv(name, value.c_str(), 1);
}

ScopedEnv::~ScopedEnv() {
  if (hadValue_) {
    setenv(name_.c_str(), oldValue_.c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

ScopedTimeZone::ScopedTimeZone(const std::string& zone) : tz_(std::make_unique<ScopedEnv>("TZ", zone)) {
  tzset();
}

ScopedTimeZone::~ScopedTimeZone() {
  tz_.reset();
  tzset();
}

}  // namespace yhtest
