#ifndef YH_TOOL_REPORT_PREVIEWS_H
#define YH_TOOL_REPORT_PREVIEWS_H

#include <plist/plist.h>

#include <map>
#include <string>

#include "KindFolders.h"
#include "Kinds.h"
#include "OutputFolder.h"

namespace yh {

// The key a record gains when its copy has a preview: the preview's path
// relative to the report's folder.
extern const char kPreviewPathKey[];

// What a browser shows or plays in place of copies it cannot: a JPEG
// thumbnail of a HEIF picture, a WAV of an AMR sound, each written into
// previews/<kind>/ under the copy's name plus ".jpg" or ".wav". A copy that
// cannot be decoded gets none; the page then links the copy alone.
class Previews {
 public:
  // With `resumed`, a preview already there under its name is kept.
  Previews(OutputFolder& out, bool resumed);

  // Makes the preview of a record's copy (`copy`, relative to the folder)
  // when it needs one, once per copy, and gives the record its path.
  void Add(const Kind& kind, plist_t record, const std::string& copy);

 private:
  std::string Make(const Kind& kind, const std::string& copy);

  const std::string path_;
  bool resumed_;
  KindFolders previews_;
  std::map<std::string, std::string> made_;  // copy to preview, "" for none
};

}  // namespace yh

#endif
