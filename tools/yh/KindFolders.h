#ifndef YH_TOOL_KINDFOLDERS_H
#define YH_TOOL_KINDFOLDERS_H

#include <map>
#include <optional>
#include <string>

#include "OutputFolder.h"

namespace yh {

// The folders <name>/<kind>/ of an output folder, each made when first asked
// for, so that kinds without files leave no empty folders.
class KindFolders {
 public:
  KindFolders(OutputFolder& out, std::string name) : out_(out), name_(std::move(name)) {}

  OutputFolder& Of(const std::string& kind) {
    if (!top_) top_ = out_.Sub(name_);
    auto found = folders_.find(kind);
    if (found == folders_.end()) found = folders_.emplace(kind, top_->Sub(kind)).first;
    return found->second;
  }

 private:
  OutputFolder& out_;
  std::string name_;
  std::optional<OutputFolder> top_;
  std::map<std::string, OutputFolder> folders_;
};

}  // namespace yh

#endif
