#ifndef YH_TOOL_PRIVATEFOLDER_H
#define YH_TOOL_PRIVATEFOLDER_H

#include <string>

namespace yh {

// A folder only the user may read, in the system's temporary folder,
// removed with everything in it when the object goes. Path() is "" when it
// could not be made.
class PrivateFolder {
 public:
  PrivateFolder();
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace yh

#endif
