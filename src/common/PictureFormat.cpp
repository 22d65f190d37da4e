#include "common/PictureFormat.h"

#include <cstddef>

namespace {

struct Signature {
  size_t offset;
  std::string_view bytes;
  PictureFormat format;
};

using namespace std::string_view_literals;

// HEIC is an ISO media file: a "ftyp" box first, whose brand names it.
const Signature kSignatures[] = {
    {0, "\xFF\xD8\xFF"sv, {"image/jpeg", "jpg"}},
    {0, "\x89PNG\r\n\x1A\n"sv, {"image/png", "png"}},
    {0, "GIF8"sv, {"image/gif", "gif"}},
    {4, "ftypheic"sv, {"image/heic", "heic"}},
    {4, "ftypheix"sv, {"image/heic", "heic"}},
    {4, "ftypmif1"sv, {"image/heif", "heif"}},
};

}  // namespace

const PictureFormat* PictureFormatOf(std::string_view bytes) {
  for (const Signature& signature : kSignatures) {
    if (bytes.size() >= signature.offset + signature.bytes.size() &&
        bytes.substr(signature.offset, signature.bytes.size()) == signature.bytes) {
      return &signature.format;
    }
  }
  return nullptr;
}
