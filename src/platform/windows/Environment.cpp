#include "platform/Environment.h"

#include <stdlib.h>

#include "platform/windows/Wide.h"

namespace platform {

std::optional<std::string> Variable(const std::string& name) {
  const wchar_t* value = _wgetenv(Wide(name).c_str());
  if (!value) return std::nullopt;
  return Narrow(value);
}

void SetVariable(const std::string& name, const std::string& value) {
  _wputenv_s(Wide(name).c_str(), Wide(value).c_str());
}

// An empty value removes a variable from the C runtime's environment.
void RemoveVariable(const std::string& name) { _wputenv_s(Wide(name).c_str(), L""); }

}  // namespace platform
