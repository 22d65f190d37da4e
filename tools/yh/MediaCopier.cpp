#include "MediaCopier.h"

#include <iostream>

#include "FileIo.h"
#include "PlistJson.h"
#include "SafeName.h"
#include "TerminalText.h"

namespace yh {
namespace {

const char kUnnamed[] = "unnamed";

std::string StringAt(plist_t record, const std::string& key) {
  plist_t node = plist_dict_get_item(record, key.c_str());
  return node && plist_get_node_type(node) == PLIST_STRING ? CellText(node) : "";
}

// A copy keeps the name the file had before the device renamed it, where
// the record knows one.
std::string CopyName(const Kind& kind, plist_t record) {
  const std::string original = StringAt(record, "original_name");
  return original.empty() ? StringAt(record, kind.fileNameKey) : original;
}

// The media records of an answer in order: its records, or for a kind whose
// media lie deeper, the dictionaries of the lists `keys` lead to.
void CollectMedia(plist_t node, const std::vector<std::string>& keys, size_t depth, std::vector<plist_t>& media) {
  if (plist_get_node_type(node) != PLIST_ARRAY) return;
  const uint32_t size = plist_array_get_size(node);
  for (uint32_t i = 0; i < size; ++i) {
    plist_t item = plist_array_get_item(node, i);
    if (depth == keys.size()) {
      media.push_back(item);
    } else if (plist_get_node_type(item) == PLIST_DICT) {
      CollectMedia(plist_dict_get_item(item, keys[depth].c_str()), keys, depth + 1, media);
    }
  }
}

}  // namespace

MediaCopier::MediaCopier(const std::string& backupPath, const std::string& copies, const OutputFolder& out,
                         Progress& progress)
    : files_(backupPath, copies), out_(out), progress_(progress) {}

std::vector<std::string> MediaCopier::Copy(const Kind& kind, plist_t answer, KindExport& result) {
  kindMedia_.reset();  // each kind has its own folder
  std::vector<plist_t> media;
  CollectMedia(answer, kind.mediaLists, 0, media);
  std::vector<std::string> copies;
  copies.reserve(media.size());
  for (size_t i = 0; i < media.size(); ++i) {
    copies.push_back(plist_get_node_type(media[i]) == PLIST_DICT ? CopyOne(kind, media[i], result) : "");
    progress_.Show("copying " + kind.name, i + 1, media.size(), std::to_string(result.bytes / 1000000) + " MB");
  }
  progress_.Finish();
  return copies;
}

std::string MediaCopier::CopyOne(const Kind& kind, plist_t record, KindExport& result) {
  const std::string name = CopyName(kind, record);
  const std::string path = StringAt(record, "path");
  BackupFiles::Source source = files_.Open(path);
  if (!source.problem.empty()) {
    progress_.Finish();
    std::cerr << "yh: skipped " << kind.name << " file \"" << Printable(name) << "\": " << source.problem << " ("
              << Printable(path) << ")\n";
    ++result.skipped;
    return "";
  }
  const OutputFolder& folder = MediaFolder(kind);
  const OutputFolder::NewFile copy = folder.Create(SafeFileName(name, kUnnamed));
  result.bytes += CopyFile(source.fd.Get(), copy.fd.Get(), folder.Path() + "/" + copy.name);
  ++result.files;
  return copy.name;
}

const OutputFolder& MediaCopier::MediaFolder(const Kind& kind) {
  // Made on the first copy, so kinds without files leave no empty folders.
  if (!media_) media_ = out_.Sub("media");
  if (!kindMedia_) kindMedia_ = media_->Sub(kind.name);
  return *kindMedia_;
}

}  // namespace yh
