#include "OutputFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "Failure.h"
#include "SafeName.h"
#include "TerminalText.h"

namespace yh {
namespace {

// Gives up after this many taken names rather than loop for ever.
constexpr int kMaxNumber = 100000;

[[noreturn]] void Fail(const std::string& path, int error) {
  throw Failure("cannot write " + Printable(path) + ": " + std::strerror(error));
}

}  // namespace

OutputFolder OutputFolder::Open(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) Fail(path, error.value());
  Fd fd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!fd) Fail(path, errno);
  return OutputFolder(std::move(fd), path);
}

OutputFolder OutputFolder::Sub(const std::string& name) const {
  const std::string path = path_ + "/" + name;
  if (::mkdirat(fd_.Get(), name.c_str(), 0755) != 0 && errno != EEXIST) Fail(path, errno);
  // O_NOFOLLOW: a symbolic link planted under this name is refused.
  Fd fd(::openat(fd_.Get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!fd) Fail(path, errno);
  return OutputFolder(std::move(fd), path);
}

OutputFolder::NewFile OutputFolder::Create(const std::string& name) const {
  for (int number = 0; number <= kMaxNumber; ++number) {
    const std::string candidate = number ? NumberedName(name, number) : name;
    // O_EXCL with O_NOFOLLOW: never an existing file, never through a link.
    Fd fd(::openat(fd_.Get(), candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (fd) return {std::move(fd), candidate};
    if (errno != EEXIST) Fail(path_ + "/" + candidate, errno);
  }
  Fail(path_ + "/" + name, EEXIST);
}

}  // namespace yh
