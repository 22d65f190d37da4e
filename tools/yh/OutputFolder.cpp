#include "OutputFolder.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "Failure.h"
#include "SafeName.h"
#include "TerminalText.h"

namespace yh {
namespace {

// Gives up after this many taken names rather than loop for ever.
constexpr int kMaxNumber = 100000;
// Files being written are hidden under this prefix until complete.
const char kTemporaryPrefix[] = ".yh-partial-";

[[noreturn]] void Fail(const std::string& path, int error) {
  throw Failure("cannot write " + Printable(path) + ": " + std::strerror(error));
}

// Renames without replacing: fails with EEXIST when `to` is taken. File
// systems without an atomic no-replace rename get a link and an unlink.
int RenameNew(int folder, const std::string& from, const std::string& to) {
  if (::renameat2(folder, from.c_str(), folder, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return -1;
  if (::linkat(folder, from.c_str(), folder, to.c_str(), 0) != 0) return -1;
  ::unlinkat(folder, from.c_str(), 0);
  return 0;
}

}  // namespace

OutputFolder::NewFile::NewFile(OutputFolder& folder, std::string name, std::string temporary, yh::Fd fd)
    : folder_(&folder), name_(std::move(name)), temporary_(std::move(temporary)), fd_(std::move(fd)) {}

OutputFolder::NewFile::NewFile(NewFile&& other) noexcept
    : folder_(other.folder_),
      name_(std::move(other.name_)),
      temporary_(std::exchange(other.temporary_, std::string())),
      fd_(std::move(other.fd_)) {}

OutputFolder::NewFile::~NewFile() {
  if (!temporary_.empty()) ::unlinkat(folder_->fd_.Get(), temporary_.c_str(), 0);
}

std::string OutputFolder::NewFile::Path() const { return folder_->path_ + "/" + name_; }

std::string OutputFolder::NewFile::Keep() {
  fd_ = yh::Fd();
  for (int tries = 0; tries <= kMaxNumber; ++tries) {
    if (RenameNew(folder_->fd_.Get(), temporary_, name_) == 0) {
      temporary_.clear();
      return name_;
    }
    if (errno != EEXIST) Fail(Path(), errno);
    // Taken by a file this run did not write: the next free numbered name.
    name_ = folder_->Reserve(temporary_.substr(sizeof kTemporaryPrefix - 1));
  }
  Fail(Path(), EEXIST);
}

OutputFolder OutputFolder::Open(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) Fail(path, error.value());
  yh::Fd fd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!fd) Fail(path, errno);
  return OutputFolder(std::move(fd), path);
}

OutputFolder OutputFolder::Sub(const std::string& name) const {
  const std::string path = path_ + "/" + name;
  if (::mkdirat(fd_.Get(), name.c_str(), 0755) != 0 && errno != EEXIST) Fail(path, errno);
  // O_NOFOLLOW: a symbolic link planted under this name is refused.
  yh::Fd fd(::openat(fd_.Get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!fd) Fail(path, errno);
  return OutputFolder(std::move(fd), path);
}

std::string OutputFolder::Reserve(const std::string& name) {
  for (int number = 0; number <= kMaxNumber; ++number) {
    const std::string candidate = number ? NumberedName(name, number) : name;
    if (given_.insert(candidate).second) return candidate;
  }
  Fail(path_ + "/" + name, EEXIST);
}

bool OutputFolder::Holds(const std::string& name) const {
  struct stat status {};
  return ::fstatat(fd_.Get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode);
}

bool OutputFolder::Holds(const std::string& name, uint64_t size) const {
  struct stat status {};
  return ::fstatat(fd_.Get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode) &&
         static_cast<uint64_t>(status.st_size) == size;
}

OutputFolder::NewFile OutputFolder::Create(const std::string& name) {
  const std::string temporary = kTemporaryPrefix + name;
  // O_EXCL with O_NOFOLLOW: never an existing file, never through a link. A
  // name left by a run that was killed is taken back.
  for (int tries = 0; tries < 2; ++tries) {
    yh::Fd fd(::openat(fd_.Get(), temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    if (fd) return NewFile(*this, name, temporary, std::move(fd));
    if (errno != EEXIST || ::unlinkat(fd_.Get(), temporary.c_str(), 0) != 0) break;
  }
  Fail(path_ + "/" + name, errno);
}

void OutputFolder::Remove(const std::string& name) const {
  if (::unlinkat(fd_.Get(), name.c_str(), 0) != 0 && errno != ENOENT) Fail(path_ + "/" + name, errno);
}

void OutputFolder::RemoveLeftovers(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  std::vector<fs::path> leftovers;
  for (fs::recursive_directory_iterator it(path, error), end; !error && it != end; it.increment(error)) {
    if (it->path().filename().string().rfind(kTemporaryPrefix, 0) == 0) leftovers.push_back(it->path());
  }
  for (const fs::path& leftover : leftovers) fs::remove(leftover, error);
}

}  // namespace yh
