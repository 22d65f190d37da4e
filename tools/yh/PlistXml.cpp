#include "PlistXml.h"

#include <memory>
#include <string_view>

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

void XmlDictionaryWriter::Add(const std::string& key, Plist value) {
  const Plist entry(plist_new_dict());
  plist_dict_set_item(entry.get(), key.c_str(), value ? value.release() : plist_new_array());
  const XmlText xml(entry.get());
  const std::string_view text = xml.View();
  // The document's head ends with the dictionary's opening tag and its tail
  // starts with the closing one; the entry lies between them.
  static const std::string_view kOpen = "<dict>\n";
  const size_t start = text.find(kOpen) + kOpen.size();
  const size_t end = text.rfind("</dict>\n");
  if (end_.empty()) {
    Write(out_, text.substr(0, start));
    end_ = text.substr(end);
  }
  Write(out_, text.substr(start, end - start));
}

void XmlDictionaryWriter::Finish() {
  if (!end_.empty()) {
    out_ << end_;
    return;
  }
  const Plist empty(plist_new_dict());
  WriteXml(out_, empty.get());
}

}  // namespace yh
