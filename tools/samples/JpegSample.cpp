#include "MediaFiles.h"
#include "SampleData.h"

namespace samples {

std::string JpegSample(int width, int height, unsigned /*seed*/) { return yhmedia::JpegPicture(width, height); }

}  // namespace samples
