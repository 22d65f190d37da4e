#ifndef YH_TOOL_ANSWERFILE_H
#define YH_TOOL_ANSWERFILE_H

#include <optional>
#include <ostream>
#include <string>

#include "FileStream.h"
#include "OutputFolder.h"

namespace yh {

// A file of an output folder written as a stream while the records come,
// named once kept. A run that finishes an interrupted one keeps the whole
// file that run wrote under the same name: what is written then goes nowhere.
class AnswerFile {
 public:
  AnswerFile(OutputFolder& folder, const std::string& name, bool resumed);
  AnswerFile(const AnswerFile&) = delete;
  AnswerFile& operator=(const AnswerFile&) = delete;

  std::ostream& Stream();
  // Writes what is still held and gives the complete file its name.
  void Keep();

 private:
  std::optional<OutputFolder::NewFile> file_;
  std::optional<FileStream> stream_;
  std::ostream nowhere_{nullptr};
};

}  // namespace yh

#endif
