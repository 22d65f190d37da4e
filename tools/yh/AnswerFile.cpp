#include "AnswerFile.h"

namespace yh {

AnswerFile::AnswerFile(OutputFolder& folder, const std::string& name, bool resumed) {
  const std::string own = folder.Reserve(name);
  if (resumed && folder.Holds(own)) return;
  file_.emplace(folder.Create(own));
  stream_.emplace(file_->Fd(), file_->Path());
}

std::ostream& AnswerFile::Stream() { return stream_ ? static_cast<std::ostream&>(*stream_) : nowhere_; }

void AnswerFile::Keep() {
  if (!file_) return;
  stream_->Finish();
  file_->Keep();
}

}  // namespace yh
