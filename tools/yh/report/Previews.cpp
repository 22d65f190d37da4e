#include "Previews.h"

#include <algorithm>
#include <cctype>

#include "AmrWav.h"
#include "Fd.h"
#include "FileIo.h"
#include "HeifThumbnail.h"
#include "platform/FileSystem.h"

namespace yh {
namespace {

// Larger copies get no preview rather than hold the memory.
constexpr uint64_t kLargestCopy = 64 << 20;

std::string Extension(const std::string& name) {
  const size_t dot = name.rfind('.');
  std::string extension = dot == std::string::npos ? "" : name.substr(dot + 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

// The preview's extension for a copy, "" when browsers need none.
std::string PreviewExtension(const std::string& copy) {
  const std::string extension = Extension(copy);
  if (extension == "heic" || extension == "heif" || extension == "heics" || extension == "heifs" ||
      extension == "hif") {
    return ".jpg";
  }
  if (extension == "amr") return ".wav";
  return "";
}

// The bytes of a copy yh wrote, never through a link.
std::string ReadCopy(const std::string& path) {
  Fd fd(platform::OpenForReadingNoFollow(path));
  platform::PathInfo info;
  if (!fd || !platform::StatOpen(fd.Get(), &info) || !info.regular || info.size > kLargestCopy) return "";
  return ReadAll(fd.Get());
}

}  // namespace

const char kPreviewPathKey[] = "preview_path";

Previews::Previews(OutputFolder& out, bool resumed) : path_(out.Path()), resumed_(resumed), previews_(out, "previews") {}

void Previews::Add(const Kind& kind, plist_t record, const std::string& copy) {
  auto found = made_.find(copy);
  if (found == made_.end()) found = made_.emplace(copy, Make(kind, copy)).first;
  if (!found->second.empty()) plist_dict_set_item(record, kPreviewPathKey, plist_new_string(found->second.c_str()));
}

std::string Previews::Make(const Kind& kind, const std::string& copy) {
  const std::string extension = PreviewExtension(copy);
  if (extension.empty()) return "";
  const std::string bytes = ReadCopy(path_ + "/" + copy);
  const std::string preview = extension == ".jpg" ? HeifThumbnail(bytes) : AmrToWav(bytes);
  if (preview.empty()) return "";
  OutputFolder& folder = previews_.Of(kind.name);
  const std::string name = folder.Reserve(copy.substr(copy.rfind('/') + 1) + extension);
  if (resumed_ && folder.Holds(name)) return "previews/" + kind.name + "/" + name;
  OutputFolder::NewFile file = folder.Create(name);
  WriteAll(file.Fd(), preview, file.Path());
  return "previews/" + kind.name + "/" + file.Keep();
}

}  // namespace yh
