#include "PlistXml.h"

#include <memory>
#include <string_view>
#include <utility>

namespace yh {
namespace {

struct XmlFree {
  void operator()(char* xml) const { plist_to_xml_free(xml); }
};

class XmlText {
 public:
  explicit XmlText(plist_t tree) {
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(tree, &xml, &length);
    xml_.reset(xml);
    length_ = length;
  }

  std::string_view View() const { return {xml_.get(), length_}; }

 private:
  std::unique_ptr<char, XmlFree> xml_;
  size_t length_ = 0;
};

void Write(std::ostream& out, std::string_view text) { out.write(text.data(), static_cast<std::streamsize>(text.size())); }

}  // namespace

void WriteXml(std::ostream& out, plist_t tree) {
  if (tree) {
    Write(out, XmlText(tree).View());
    return;
  }
  const Plist empty(plist_new_array());
  Write(out, XmlText(empty.get()).View());
}

std::string_view XmlDictionaryWriter::Entry(std::string_view document) {
  // The document's head ends with the dictionary's opening tag and its tail
  // starts with the closing one; the entry lies between them.
  static const std::string_view kOpen = "<dict>\n";
  const size_t start = document.find(kOpen) + kOpen.size();
  const size_t end = document.rfind("</dict>\n");
  if (end_.empty()) {
    Write(out_, document.substr(0, start));
    end_ = document.substr(end);
  }
  return document.substr(start, end - start);
}

void XmlDictionaryWriter::Finish() {
  if (!end_.empty()) {
    out_ << end_;
    return;
  }
  const Plist empty(plist_new_dict());
  WriteXml(out_, empty.get());
}

std::string XmlArrayWriter::Rendered(Plist array) {
  if (!dictionary_) return std::string(XmlText(array.get()).View());
  const Plist entry(plist_new_dict());
  plist_dict_set_item(entry.get(), key_.c_str(), array.release());
  return std::string(dictionary_->Entry(XmlText(entry.get()).View()));
}

void XmlArrayWriter::Add(plist_t element) {
  Plist array(plist_new_array());
  plist_array_append_item(array.get(), plist_copy(element));
  const std::string text = Rendered(std::move(array));
  static const std::string_view kOpen = "<array>\n";
  const size_t start = text.find(kOpen) + kOpen.size();
  // The closing tag's line, with its indentation.
  const size_t end = text.rfind('\n', text.rfind("</array>\n")) + 1;
  if (end_.empty()) {
    Write(out_, std::string_view(text).substr(0, start));
    end_ = text.substr(end);
  }
  Write(out_, std::string_view(text).substr(start, end - start));
}

void XmlArrayWriter::Finish() {
  if (!end_.empty()) {
    out_ << end_;
    return;
  }
  Write(out_, Rendered(Plist(plist_new_array())));
}

}  // namespace yh
