#ifndef YH_PLATFORM_ENVIRONMENT_H
#define YH_PLATFORM_ENVIRONMENT_H

#include <optional>
#include <string>

// The process's environment variables, as UTF-8 on every system.
namespace platform {

std::optional<std::string> Variable(const std::string& name);
void SetVariable(const std::string& name, const std::string& value);
void RemoveVariable(const std::string& name);

}  // namespace platform

#endif
