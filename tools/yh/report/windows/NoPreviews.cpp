// The Windows build has no libheif, libjpeg or opencore-amrnb: its reports
// make no previews, and the page links those copies instead.
#include "AmrWav.h"
#include "HeifThumbnail.h"

namespace yh {

std::string HeifThumbnail(const std::string&) { return ""; }

std::string AmrToWav(const std::string&) { return ""; }

}  // namespace yh
