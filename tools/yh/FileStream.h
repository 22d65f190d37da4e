#ifndef YH_TOOL_FILESTREAM_H
#define YH_TOOL_FILESTREAM_H

#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace yh {

// An output stream into an open file, written in blocks as it fills. A write
// that fails throws Failure, naming `what`, out of the call that writes.
class FileStream : public std::ostream {
 public:
  FileStream(int fd, std::string what);

  // Writes what is still held; throws Failure when that fails.
  void Finish();

 private:
  class Blocks : public std::streambuf {
   public:
    Blocks(int fd, std::string what);
    void Flush();

   protected:
    int_type overflow(int_type c) override;
    int sync() override;

   private:
    int fd_;
    std::string what_;
    std::vector<char> block_;
  };

  Blocks blocks_;
};

}  // namespace yh

#endif
