#include "support/SystemFiles.h"

#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>

#include "platform/FileSystem.h"
#include "platform/windows/Wide.h"

namespace yhtest {

// Wine 8 answers success without making anything, so the link is looked for.
bool MakeSymlink(const std::string& target, const std::string& link) {
  const DWORD flags = SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE |
                      (platform::IsFolder(target) ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0);
  if (!CreateSymbolicLinkW(platform::Wide(link).c_str(), platform::Wide(target).c_str(), flags)) return false;
  platform::PathInfo info;
  return platform::StatNoFollow(link, &info) && info.link;
}

bool HasLinks() {
  static const bool made = [] {
    const std::string folder = platform::MakeUniqueFolder(platform::TemporaryFolder(), "yh-links-");
    const bool linked = !folder.empty() && MakeSymlink(folder + "nowhere", folder + "link");
    if (!folder.empty()) platform::RemoveTree(folder);
    return linked;
  }();
  return made;
}

const char* WhyNoLinks() {
  return "this Windows makes no symbolic links for the user (wine 8 has none; Windows needs developer mode)";
}

std::string NativePath(const std::string& path) {
  std::string native = path;
  std::replace(native.begin(), native.end(), '/', '\\');
  return native;
}

bool NamesMayHoldQuestionMarks() { return false; }

const char* TemporaryFolderVariable() { return "TMP"; }

bool HasFifos() { return false; }
bool HasModes() { return false; }
const char* WhyNoFifos() { return "Windows has no named pipes in its file system"; }
const char* WhyNoModes() { return "Windows has no POSIX permission bits"; }

bool KeepsHoles() { return false; }
const char* WhyNoHoles() { return "the Windows build copies every byte of a sparse file"; }

unsigned long long BytesOnDisk(const std::string& path) {
  DWORD high = 0;
  const DWORD low = GetCompressedFileSizeW(platform::Wide(path).c_str(), &high);
  return low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR ? 0 : (static_cast<unsigned long long>(high) << 32) | low;
}

bool MakeFifo(const std::string&) { return false; }

void ReleaseFifo(const std::string&) {}

void SetMode(const std::string& path, unsigned mode) {
  _wchmod(platform::Wide(path).c_str(), (mode & 0200) ? (_S_IREAD | _S_IWRITE) : _S_IREAD);
}

}  // namespace yhtest
