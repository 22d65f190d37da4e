#ifndef YH_TOOL_PLISTXML_H
#define YH_TOOL_PLISTXML_H

#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "Library.h"

namespace yh {

// libplist's XML document of a tree; of an empty array when there is none,
// as a property list has no null.
void WriteXml(std::ostream& out, plist_t tree);

// The XML document of a dictionary written one entry at a time (each an
// XmlArrayWriter's). Each entry is made the only one of a dictionary of its
// own, whose document shows it as the whole dictionary's would.
class XmlDictionaryWriter {
 public:
  explicit XmlDictionaryWriter(std::ostream& out) : out_(out) {}

  // Ends the document.
  void Finish();
  // The text of the only entry of the dictionary whose document is
  // `document`, as this document shows it; the document's head is written
  // before the first entry.
  std::string_view Entry(std::string_view document);

 private:
  std::ostream& out_;
  std::string end_;  // what follows the entries; known from the first entry on
};

// An array's XML written one element at a time, each element shown as the
// whole array's document shows it: the array with that element alone is
// rendered and the element cut out, so no more than one is ever held. The
// array is the document, or the entry `key` of an XmlDictionaryWriter.
class XmlArrayWriter {
 public:
  explicit XmlArrayWriter(std::ostream& out) : out_(out) {}
  XmlArrayWriter(std::ostream& out, XmlDictionaryWriter& dictionary, std::string key)
      : out_(out), dictionary_(&dictionary), key_(std::move(key)) {}

  // Copies the element.
  void Add(plist_t element);
  // Ends the array (the whole empty array when nothing was added).
  void Finish();

 private:
  // The text that stands for `array` where this array stands.
  std::string Rendered(Plist array);

  std::ostream& out_;
  XmlDictionaryWriter* dictionary_ = nullptr;
  std::string key_;
  std::string end_;  // what follows the elements; known from the first element on
};

}  // namespace yh

#endif
