#include "platform/WritableFolder.h"

#include <utility>

namespace platform {

WritableFolder::WritableFolder(WritableFolder&& other) noexcept
    : path_(std::move(other.path_)), held_(std::exchange(other.held_, -1)) {}

WritableFolder& WritableFolder::operator=(WritableFolder&& other) noexcept {
  if (this != &other) {
    Close();
    path_ = std::move(other.path_);
    held_ = std::exchange(other.held_, -1);
  }
  return *this;
}

WritableFolder::~WritableFolder() { Close(); }

}  // namespace platform
