#ifndef YH_TOOL_REPORT_HEIFTHUMBNAIL_H
#define YH_TOOL_REPORT_HEIFTHUMBNAIL_H

#include <string>

namespace yh {

// The longest side of a thumbnail, in pixels.
constexpr int kThumbnailSide = 480;

// A JPEG thumbnail of a HEIF picture (HEIC, HEIF, the still of a Live
// Photo, the first picture of a sequence) for browsers that show none:
// the primary image, from the thumbnail the file holds when it is large
// enough, else decoded whole, scaled to at most kThumbnailSide. "" for bytes
// that libheif cannot decode.
std::string HeifThumbnail(const std::string& heif);

}  // namespace yh

#endif
