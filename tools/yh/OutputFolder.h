#ifndef YH_TOOL_OUTPUTFOLDER_H
#define YH_TOOL_OUTPUTFOLDER_H

#include <string>

#include "Fd.h"

namespace yh {

// A folder that files are only ever added to. Each file is made anew under
// the name asked for or, when that is taken, the first free NumberedName;
// nothing is reached through a symbolic link, so nothing lands outside.
class OutputFolder {
 public:
  struct NewFile {
    Fd fd;
    std::string name;
  };

  // Opens the folder, creating it and the folders above it when missing.
  static OutputFolder Open(const std::string& path);

  // The sub-folder `name` (one path component), created when missing.
  OutputFolder Sub(const std::string& name) const;

  // A new, empty file named `name` (one path component) or a numbered
  // variant of it.
  NewFile Create(const std::string& name) const;

  const std::string& Path() const { return path_; }

 private:
  OutputFolder(Fd fd, std::string path) : fd_(std::move(fd)), path_(std::move(path)) {}

  Fd fd_;
  std::string path_;
};

}  // namespace yh

#endif
