#ifndef YH_PLATFORM_WRITABLEFOLDER_H
#define YH_PLATFORM_WRITABLEFOLDER_H

#include <cstdint>
#include <string>

#include "platform/FileSystem.h"

namespace platform {

// A folder that a program adds files to, held so that nothing below it is
// reached through a link: POSIX systems hold it open and resolve each name
// below the descriptor without following links; Windows holds it open so
// that it cannot be renamed or removed, and refuses symbolic links,
// junctions and other reparse points by path. Names are one path component.
// Every call that fails leaves errno telling why.
class WritableFolder {
 public:
  WritableFolder() = default;
  WritableFolder(WritableFolder&& other) noexcept;
  WritableFolder& operator=(WritableFolder&& other) noexcept;
  ~WritableFolder();
  WritableFolder(const WritableFolder&) = delete;
  WritableFolder& operator=(const WritableFolder&) = delete;

  // Opens the folder at `path`, making it and the folders above it when
  // missing; false when it cannot be opened.
  bool Open(const std::string& path);
  // The sub-folder `name`, made when missing; false when it cannot be made
  // or opened, or when `name` is a link or no folder.
  bool OpenSub(const std::string& name, WritableFolder* sub) const;

  // A new file `name` opened for writing: never a file that exists (errno
  // EEXIST), never through a link. -1 when it cannot be made.
  int CreateNew(const std::string& name) const;
  // Gives `from` the name `to` unless something is called `to` (errno EEXIST).
  bool RenameNew(const std::string& from, const std::string& to) const;
  // What is at `name`, a link itself rather than what it leads to; errno is
  // ENOENT when nothing is there.
  bool StatNoFollow(const std::string& name, PathInfo* info) const;
  // Removes the file `name` (a link itself); errno ENOENT when nothing is there.
  bool Remove(const std::string& name) const;

  const std::string& Path() const { return path_; }

 private:
  void Close();

  std::string path_;
  intptr_t held_ = -1;  // a descriptor on POSIX systems, a HANDLE on Windows
};

}  // namespace platform

#endif
