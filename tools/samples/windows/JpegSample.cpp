// The Windows build has no libjpeg for its samples: they hold stand-ins
// with JPEG's signature.
#include "SampleData.h"

namespace samples {

std::string JpegSample(int /*width*/, int /*height*/, unsigned seed) { return MediaFile(kJpeg, 3000, seed); }

}  // namespace samples
