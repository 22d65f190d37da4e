#ifndef YH_BENCH_TOOL_TEMPFOLDER_H
#define YH_BENCH_TOOL_TEMPFOLDER_H

#include <string>

namespace bench {

// A new folder in the system's temporary folder, removed with all it holds
// when the object goes. The removal is then written out (sync), so that the
// next timed run does not pay for it.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // False when no folder could be made.
  explicit operator bool() const { return !path_.empty(); }
  // The path of `name` inside the folder.
  std::string operator/(const std::string& name) const { return path_ + name; }

 private:
  std::string path_;  // ends in "/"
};

}  // namespace bench

#endif
