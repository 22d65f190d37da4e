#ifndef YH_PLATFORM_FOLDER_H
#define YH_PLATFORM_FOLDER_H

#include <cstdint>
#include <string>

// A backup folder held open while its index is read, so that each of a
// quarter of a million existence tests resolves only the name below the
// folder instead of walking the whole path from the root again.
class Folder {
 public:
  // `path` names the folder and ends in "/". Any other text is put before
  // each name as it stands, and the joined paths are tested.
  explicit Folder(const std::string& path);
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  // What the system finds of a name below the folder.
  struct Entry {
    uint64_t size;
    bool regular;  // a plain file, or a link to one
  };

  // Whether stat() finds `name`, a path below the folder: folders and links
  // to existing things count, as they do for VQIsFileExists. When it does and
  // `entry` is given, it gets what stat() found.
  bool Has(const std::string& name, Entry* entry = nullptr) const;
  // The same for a name ending with a zero byte; safe from any thread.
  bool Has(const char* name, Entry* entry = nullptr) const;

 private:
  // `below`: the name is relative and may be resolved from the held folder.
  bool Stat(const char* name, bool below, Entry* entry) const;

  std::string path_;
  int handle_ = -1;   // -1 when the folder could not be held open
};

#endif
