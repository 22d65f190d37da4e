#ifndef YH_TOOL_DEFAULTFOLDERS_H
#define YH_TOOL_DEFAULTFOLDERS_H

#include <string>
#include <vector>

namespace yh {

// The folders the library looks in for backups when no root is given, by
// the same rule (see the README's "Where backups are looked for"), so that
// yh can name them when none holds a backup.
std::vector<std::string> DefaultFolders();

}  // namespace yh

#endif
