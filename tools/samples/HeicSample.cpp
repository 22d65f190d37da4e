#include "MediaFiles.h"
#include "SampleData.h"

namespace samples {

std::string HeicSample(int width, int height, unsigned /*seed*/) { return yhmedia::HeicPicture(width, height); }

}  // namespace samples
