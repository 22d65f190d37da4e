#ifndef YH_TOOL_PRIVATEFOLDER_H
#define YH_TOOL_PRIVATEFOLDER_H

#include <string>

namespace yh {

// A folder of mode 0700 in the temporary folder ($TMPDIR, else /tmp),
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
