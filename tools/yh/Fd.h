#ifndef YH_TOOL_FD_H
#define YH_TOOL_FD_H

#include <utility>

#include "platform/FileSystem.h"

namespace yh {

// An open file descriptor, closed when the object goes.
class Fd {
 public:
  Fd() = default;
  explicit Fd(int fd) : fd_(fd) {}
  Fd(Fd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Fd& operator=(Fd&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  ~Fd() { Close(); }
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;

  int Get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }

 private:
  void Close() {
    if (fd_ >= 0) platform::CloseFile(fd_);
    fd_ = -1;
  }

  int fd_ = -1;
};

}  // namespace yh

#endif
