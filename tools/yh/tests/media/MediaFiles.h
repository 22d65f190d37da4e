#ifndef YH_TOOL_TESTS_MEDIA_MEDIAFILES_H
#define YH_TOOL_TESTS_MEDIA_MEDIAFILES_H

#include <string>

namespace yhmedia {

// Real media files for the report's previews, made with the same libraries:
// a HEIC picture (libheif's HEVC encoder) and a JPEG (libjpeg) of bands of
// red, green and blue from left to right, and an AMR narrow-band sound
// (opencore-amrnb) of a 440 Hz tone.
std::string HeicPicture(int width, int height);
std::string JpegPicture(int width, int height);
std::string AmrSound(int milliseconds);

// A decoded JPEG: its size and RGB pixels, row after row; 0 by 0 when the
// bytes are no JPEG.
struct Pixels {
  int width = 0;
  int height = 0;
  std::string rgb;
};
Pixels DecodeJpeg(const std::string& jpeg);

}  // namespace yhmedia

#endif
