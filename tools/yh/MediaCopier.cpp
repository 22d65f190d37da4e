#include "MediaCopier.h"

#include <iostream>

#include "FileDate.h"
#include "FileIo.h"
#include "Interruption.h"
#include "PlistJson.h"
#include "SafeName.h"
#include "TerminalText.h"

namespace yh {
namespace {

const char kUnnamed[] = "unnamed";

std::string StringAt(plist_t record, const char* key) {
  plist_t node = plist_dict_get_item(record, key);
  return node && plist_get_node_type(node) == PLIST_STRING ? CellText(node) : "";
}

bool IsFalse(plist_t record, const char* key) {
  plist_t node = plist_dict_get_item(record, key);
  uint8_t value = 1;
  if (node && plist_get_node_type(node) == PLIST_BOOLEAN) plist_get_bool_val(node, &value);
  return value == 0;
}

// A copy keeps the name the file had before the device renamed it, where
// the record knows one.
std::string CopyName(const Kind& kind, plist_t record) {
  const std::string original = StringAt(record, "original_name");
  return original.empty() ? StringAt(record, kind.fileNameKey.c_str()) : original;
}

template <typename Visit>
void ForEachDictionary(plist_t array, Visit visit) {
  if (!array || plist_get_node_type(array) != PLIST_ARRAY) return;
  const uint32_t size = plist_array_get_size(array);
  for (uint32_t i = 0; i < size; ++i) {
    plist_t item = plist_array_get_item(array, i);
    if (plist_get_node_type(item) == PLIST_DICT) visit(item);
  }
}

// Visits what the lists `keys` name from `depth` on lead to below a record:
// the record itself once none is left.
template <typename Visit>
void ForEachMedium(plist_t record, const std::vector<std::string>& keys, size_t depth, Visit& visit) {
  if (depth == keys.size()) return visit(record);
  ForEachDictionary(plist_dict_get_item(record, keys[depth].c_str()),
                    [&](plist_t item) { ForEachMedium(item, keys, depth + 1, visit); });
}

}  // namespace

const char kExportedPathKey[] = "exported_path";

MediaCopier::MediaCopier(const std::string& backupPath, const std::string& copies, OutputFolder& out,
                         Progress& progress, bool resumed)
    : files_(backupPath, copies), media_(out, "media"), progress_(progress), resumed_(resumed) {}

void MediaCopier::CopyOf(const Kind& kind, plist_t record, size_t done, KindExport& result) {
  if (plist_get_node_type(record) != PLIST_DICT) return;
  if (kind.IsMedia()) CopyAll(kind, kind.mediaLists, record, result);
  if (!kind.picturePathKey.empty()) CopyPicture(kind, record, result);
  if (kind.name == "messages") {
    const Kind& attachments = *FindKind("attachments");
    KindExport ignored{&attachments};
    CopyAll(attachments, {"message", "attachments"}, record, ignored);
  }
  progress_.Count("reading " + kind.name, done, "records, " + std::to_string(bytes_ / 1000000) + " MB copied");
}

void MediaCopier::CopyAll(const Kind& kind, const std::vector<std::string>& lists, plist_t record,
                          KindExport& result) {
  auto copy = [&](plist_t medium) { CopyRecord(kind, medium, result); };
  ForEachMedium(record, lists, 0, copy);
}

void MediaCopier::CopyPicture(const Kind& kind, plist_t record, KindExport& result) {
  StopIfInterrupted();
  const std::string path = StringAt(record, kind.picturePathKey.c_str());
  if (path.empty()) {
    plist_dict_set_item(record, kExportedPathKey, plist_new_string(""));
  } else {
    CopyMedium(kind, record, {path, path.substr(path.find_last_of("/\\") + 1), StringAt(record, "modification_date")},
               result);
  }
}

void MediaCopier::CopyRecord(const Kind& kind, plist_t record, KindExport& result) {
  StopIfInterrupted();
  const Medium medium{StringAt(record, "path"), CopyName(kind, record), StringAt(record, "date")};
  if (medium.path.empty() || IsFalse(record, "present")) {
    ++result.missing;
    plist_dict_set_item(record, kExportedPathKey, plist_new_string(""));
    return;
  }
  CopyMedium(kind, record, medium, result);
}

void MediaCopier::CopyMedium(const Kind& kind, plist_t record, const Medium& medium, KindExport& result) {
  Copied copy;
  if (const auto found = copied_.find(medium.path); found != copied_.end()) {
    copy = found->second;
    copy.relative.empty() ? ++result.skipped : ++result.files;
    result.bytes += copy.size;
  } else {
    copy = CopyFileOf(kind, medium, result);
    copied_.emplace(medium.path, copy);
  }
  plist_dict_set_item(record, kExportedPathKey, plist_new_string(copy.relative.c_str()));
  if (onCopy_ && !copy.relative.empty()) onCopy_(kind, record, copy.relative);
}

MediaCopier::Copied MediaCopier::CopyFileOf(const Kind& kind, const Medium& medium, KindExport& result) {
  BackupFiles::Source source = files_.Open(medium.path);
  if (!source.problem.empty()) {
    progress_.Finish();
    std::cerr << "yh: skipped " << kind.name << " file \"" << Printable(medium.name) << "\": " << source.problem
              << " (" << Printable(medium.path) << ")\n";
    ++result.skipped;
    return {};
  }
  OutputFolder& folder = media_.Of(kind.name);
  std::string copyName = folder.Reserve(SafeFileName(medium.name, kUnnamed));
  if (resumed_ && folder.Holds(copyName, source.size)) {
    ++result.kept;
  } else {
    OutputFolder::NewFile copy = folder.Create(copyName);
    CopyFile(source.fd.Get(), copy.Fd(), copy.Path());
    DateFile(copy.Fd(), medium.date);
    copyName = copy.Keep();
  }
  ++result.files;
  result.bytes += source.size;
  bytes_ += source.size;
  return {"media/" + kind.name + "/" + copyName, source.size};
}

}  // namespace yh
