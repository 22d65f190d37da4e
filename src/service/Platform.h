#ifndef YH_SERVICE_PLATFORM_H
#define YH_SERVICE_PLATFORM_H

#include <string>
#include <vector>

// The little that discovery needs from the operating system.

// The user's Application Support folder without a trailing "/"; empty when
// it cannot be determined. On Linux: $XDG_DATA_HOME when that is an absolute
// path, else $HOME/.local/share.
std::string ApplicationSupportFolder();

// The names of a folder's entries in the order the system lists them,
// without "." and ".."; none for a folder that cannot be listed.
std::vector<std::string> ListFolder(const std::string& folder);

// True when the path exists and is a folder; a link to a folder counts.
bool IsFolder(const std::string& path);

#endif
