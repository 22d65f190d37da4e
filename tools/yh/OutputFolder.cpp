#include "OutputFolder.h"

#include <cerrno>
#include <cstring>

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

}  // namespace

OutputFolder::NewFile::NewFile(OutputFolder& folder, std::string name, std::string temporary, yh::Fd fd)
    : folder_(&folder), name_(std::move(name)), temporary_(std::move(temporary)), fd_(std::move(fd)) {}

OutputFolder::NewFile::NewFile(NewFile&& other) noexcept
    : folder_(other.folder_),
      name_(std::move(other.name_)),
      temporary_(std::exchange(other.temporary_, std::string())),
      fd_(std::move(other.fd_)) {}

// Closed first: Windows removes no file that is open.
OutputFolder::NewFile::~NewFile() {
  fd_ = yh::Fd();
  if (!temporary_.empty()) folder_->folder_.Remove(temporary_);
}

std::string OutputFolder::NewFile::Path() const { return folder_->Path() + "/" + name_; }

std::string OutputFolder::NewFile::Keep() {
  fd_ = yh::Fd();
  for (int tries = 0; tries <= kMaxNumber; ++tries) {
    if (folder_->folder_.RenameNew(temporary_, name_)) {
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
  platform::WritableFolder folder;
  if (!folder.Open(path)) Fail(path, errno);
  return OutputFolder(std::move(folder));
}

OutputFolder OutputFolder::Sub(const std::string& name) const {
  platform::WritableFolder sub;
  if (!folder_.OpenSub(name, &sub)) Fail(Path() + "/" + name, errno);
  return OutputFolder(std::move(sub));
}

std::string OutputFolder::Reserve(const std::string& name) {
  for (int number = 0; number <= kMaxNumber; ++number) {
    const std::string candidate = number ? NumberedName(name, number) : name;
    if (given_.insert(candidate).second) return candidate;
  }
  Fail(Path() + "/" + name, EEXIST);
}

bool OutputFolder::Holds(const std::string& name) const {
  platform::PathInfo info;
  return folder_.StatNoFollow(name, &info) && info.regular && !info.link;
}

bool OutputFolder::Holds(const std::string& name, uint64_t size) const {
  platform::PathInfo info;
  return folder_.StatNoFollow(name, &info) && info.regular && !info.link && info.size == size;
}

OutputFolder::NewFile OutputFolder::Create(const std::string& name) {
  const std::string temporary = kTemporaryPrefix + name;
  // Never an existing file, never through a link. A name left by a run that
  // was killed is taken back.
  for (int tries = 0; tries < 2; ++tries) {
    yh::Fd fd(folder_.CreateNew(temporary));
    if (fd) return NewFile(*this, name, temporary, std::move(fd));
    if (errno != EEXIST || !folder_.Remove(temporary)) break;
  }
  Fail(Path() + "/" + name, errno);
}

void OutputFolder::Remove(const std::string& name) const {
  if (!folder_.Remove(name) && errno != ENOENT) Fail(Path() + "/" + name, errno);
}

// Folders are walked without following links, so nothing outside is touched.
void OutputFolder::RemoveLeftovers(const std::string& path) {
  for (const std::string& name : platform::ListFolder(path)) {
    const std::string entry = path + "/" + name;
    platform::PathInfo info;
    if (!platform::StatNoFollow(entry, &info)) continue;
    if (!info.folder && name.rfind(kTemporaryPrefix, 0) == 0) {
      platform::RemoveFile(entry);
    } else if (info.folder && !info.link) {
      RemoveLeftovers(entry);
    }
  }
}

}  // namespace yh
