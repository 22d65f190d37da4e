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

}  // namespace

MediaCopier::MediaCopier(const std::string& backupPath, const std::string& copies, const OutputFolder& out,
                         Progress& progress)
    : files_(backupPath, copies), out_(out), progress_(progress) {}

std::vector<std::string> MediaCopier::Copy(const Kind& kind, plist_t answer, KindExport& result) {
  kindMedia_.reset();  // each kind has its own folder
  std::vector<std::string> copies;
  if (!answer || plist_get_node_type(answer) != PLIST_ARRAY) return copies;
  const uint32_t total = plist_array_get_size(answer);
  copies.reserve(total);
  for (uint32_t i = 0; i < total; ++i) {
    plist_t record = plist_array_get_item(answer, i);
    copies.push_back(plist_get_node_type(record) == PLIST_DICT ? CopyOne(kind, record, result) : "");
    progress_.Show("copying " + kind.name, i + 1, total, std::to_string(result.bytes / 1000000) + " MB");
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
