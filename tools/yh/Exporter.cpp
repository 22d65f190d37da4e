#include "Exporter.h"

#include <iostream>
#include <sstream>

#include "FileIo.h"
#include "PlistJson.h"
#include "Render.h"
#include "SafeName.h"
#include "TerminalText.h"

namespace yh {
namespace {

const char kUnnamed[] = "unnamed";

std::string StringAt(plist_t record, const std::string& key) {
  plist_t node = plist_dict_get_item(record, key.c_str());
  return node && plist_get_node_type(node) == PLIST_STRING ? CellText(node) : "";
}

}  // namespace

Exporter::Exporter(const Library& library, BackupDevice& device, const std::string& out)
    : library_(library), device_(device), files_(Text(device.backupPath)), out_(OutputFolder::Open(out)) {}

KindExport Exporter::Export(const Kind& kind) {
  const Answer answer{&kind, library_.Content(device_, kind.contentType)};
  KindExport result{&kind};
  result.records = RecordCount(answer.tree.get());
  WriteAnswerFile(kind.name + ".json", Format::Json, answer);
  WriteAnswerFile(kind.name + ".csv", Format::Csv, answer);
  if (kind.IsMedia()) CopyMedia(kind, answer.tree.get(), result);
  return result;
}

void Exporter::WriteAnswerFile(const std::string& name, Format format, const Answer& answer) {
  std::ostringstream text;
  WriteAnswer(text, format, answer);
  const OutputFolder::NewFile file = out_.Create(name);
  WriteAll(file.fd.Get(), text.str(), out_.Path() + "/" + file.name);
}

void Exporter::CopyMedia(const Kind& kind, plist_t answer, KindExport& result) {
  kindMedia_.reset();  // each kind has its own folder
  if (!answer || plist_get_node_type(answer) != PLIST_ARRAY) return;
  const uint32_t total = plist_array_get_size(answer);
  for (uint32_t i = 0; i < total; ++i) {
    plist_t record = plist_array_get_item(answer, i);
    if (plist_get_node_type(record) == PLIST_DICT) CopyOne(kind, record, result);
    progress_.Show(kind.name, i + 1, total, result.bytes);
  }
  progress_.Finish();
}

void Exporter::CopyOne(const Kind& kind, plist_t record, KindExport& result) {
  const std::string name = StringAt(record, kind.fileNameKey);
  const std::string path = StringAt(record, "path");
  BackupFiles::Source source = files_.Open(path);
  if (!source.problem.empty()) {
    progress_.Finish();
    std::cerr << "yh: skipped " << kind.name << " file \"" << Printable(name) << "\": " << source.problem << " ("
              << Printable(path) << ")\n";
    ++result.skipped;
    return;
  }
  const OutputFolder& folder = MediaFolder(kind);
  const OutputFolder::NewFile copy = folder.Create(SafeFileName(name, kUnnamed));
  result.bytes += CopyAll(source.fd.Get(), copy.fd.Get(), folder.Path() + "/" + copy.name);
  ++result.files;
}

const OutputFolder& Exporter::MediaFolder(const Kind& kind) {
  // Made on the first copy, so kinds without files leave no empty folders.
  if (!media_) media_ = out_.Sub("media");
  if (!kindMedia_) kindMedia_ = media_->Sub(kind.name);
  return *kindMedia_;
}

}  // namespace yh
