#ifndef YH_PLATFORM_WINDOWS_WIDE_H
#define YH_PLATFORM_WINDOWS_WIDE_H

#include <string>

namespace platform {

// UTF-8 to the UTF-16 of Windows' system calls, and back. Invalid input
// gives U+FFFD in place of what could not be read.
std::wstring Wide(const std::string& text);
std::string Narrow(const std::wstring& text);

}  // namespace platform

#endif
