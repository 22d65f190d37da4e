// The Windows build has no libheif (see tools/yh/CMakeLists.txt): its
// samples hold stand-ins with HEIC's signature, which its reports link.
#include "SampleData.h"

namespace samples {

std::string HeicSample(int /*width*/, int /*height*/, unsigned seed) {
  return MediaFile(std::string("\0\0\0\x18" "ftypheic", 12), 4000, seed);
}

}  // namespace samples
