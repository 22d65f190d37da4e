#include "platform/Environment.h"

#include <cstdlib>

namespace platform {

std::optional<std::string> Variable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (!value) return std::nullopt;
  return std::string(value);
}

void SetVariable(const std::string& name, const std::string& value) { setenv(name.c_str(), value.c_str(), 1); }

void RemoveVariable(const std::string& name) { unsetenv(name.c_str()); }

}  // namespace platform
