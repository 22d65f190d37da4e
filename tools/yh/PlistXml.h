#ifndef YH_TOOL_PLISTXML_H
#define YH_TOOL_PLISTXML_H

#include <ostream>
#include <string>

#include "Library.h"

namespace yh {

// libplist's XML document of a tree; of an empty array when there is none,
// as a property list has no null.
void WriteXml(std::ostream& out, plist_t tree);

// The XML document of a dictionary written one entry at a time. Each entry is
// made the only one of a dictionary of its own, whose document shows it as
// the whole dictionary's would; so no more than one entry is ever held.
class XmlDictionaryWriter {
 public:
  explicit XmlDictionaryWriter(std::ostream& out) : out_(out) {}

  // Takes the value (NULL stands for an empty array).
  void Add(const std::string& key, Plist value);
  // Ends the document.
  void Finish();

 private:
  std::ostream& out_;
  std::string end_;  // what follows the entries; known from the first entry on
};

}  // namespace yh

#endif
