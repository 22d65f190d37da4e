#include "support/SystemFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yhtest {

bool MakeSymlink(const std::string& target, const std::string& link) {
  return symlink(target.c_str(), link.c_str()) == 0;
}

bool HasLinks() { return true; }
const char* WhyNoLinks() { return ""; }

std::string NativePath(const std::string& path) { return path; }

bool NamesMayHoldQuestionMarks() { return true; }

const char* TemporaryFolderVariable() { return "TMPDIR"; }

bool HasFifos() { return true; }
bool HasModes() { return true; }
const char* WhyNoFifos() { return ""; }
const char* WhyNoModes() { return ""; }

bool KeepsHoles() { return true; }
const char* WhyNoHoles() { return ""; }

unsigned long long BytesOnDisk(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<unsigned long long>(status.st_blocks) * 512 : 0;
}

bool MakeFifo(const std::string& path) { return mkfifo(path.c_str(), 0644) == 0; }

void ReleaseFifo(const std::string& path) {
  const int writer = open(path.c_str(), O_WRONLY | O_NONBLOCK);
  if (writer >= 0) close(writer);
}

void SetMode(const std::string& path, unsigned mode) { chmod(path.c_str(), static_cast<mode_t>(mode)); }

}  // namespace yhtest
