#ifndef YH_TOOL_OUTPUTFOLDER_H
#define YH_TOOL_OUTPUTFOLDER_H

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "Fd.h"
#include "platform/WritableFolder.h"

namespace yh {

// A folder that files are only ever added to. Each file is written under a
// temporary name and takes its own name only when complete, so a name never
// stands for a file cut short; nothing is reached through a symbolic link, so
// nothing lands outside. Names are given in the order they are asked for, the
// same in every run over the same answers: a run that finishes an interrupted
// one finds the files it would write under the names it would give them.
class OutputFolder {
 public:
  // A file being written. It takes its name when kept, and is removed when
  // dropped before that (an error, an interruption).
  class NewFile {
   public:
    NewFile(NewFile&& other) noexcept;
    NewFile& operator=(NewFile&&) = delete;
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    int Fd() const { return fd_.Get(); }
    // The file's path, for messages.
    std::string Path() const;
    // Gives the complete file its name, or the next free numbered one should
    // another file have taken it meanwhile; returns the name.
    std::string Keep();

   private:
    friend class OutputFolder;
    NewFile(OutputFolder& folder, std::string name, std::string temporary, yh::Fd fd);

    OutputFolder* folder_;
    std::string name_;
    std::string temporary_;
    yh::Fd fd_;
  };

  // Opens the folder, creating it and the folders above it when missing.
  static OutputFolder Open(const std::string& path);

  // The sub-folder `name` (one path component), created when missing.
  OutputFolder Sub(const std::string& name) const;

  // A name for a new file: `name` (one path component), or its first
  // numbered variant that this folder has not given yet.
  std::string Reserve(const std::string& name);

  // Whether the folder holds a regular file `name` (of `size` bytes when
  // given), left by an earlier run.
  bool Holds(const std::string& name) const;
  bool Holds(const std::string& name, uint64_t size) const;

  // A new, empty file to be named `name` (a name Reserve gave).
  NewFile Create(const std::string& name);

  // Removes the file `name`, when there.
  void Remove(const std::string& name) const;

  const std::string& Path() const { return folder_.Path(); }

  // Removes what interrupted runs left under temporary names in `path` and
  // the folders below it.
  static void RemoveLeftovers(const std::string& path);

 private:
  explicit OutputFolder(platform::WritableFolder folder) : folder_(std::move(folder)) {}

  platform::WritableFolder folder_;
  std::set<std::string> given_;
};

}  // namespace yh

#endif
