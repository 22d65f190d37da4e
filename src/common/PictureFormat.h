#ifndef YH_COMMON_PICTUREFORMAT_H
#define YH_COMMON_PICTUREFORMAT_H

#include <string_view>

// What picture a file's bytes hold, told by their signature.
struct PictureFormat {
  const char* mimeType;   // "image/jpeg"...
  const char* extension;  // "jpg"...
};

// The format of JPEG, PNG, GIF and HEIC bytes; NULL for any other bytes.
const PictureFormat* PictureFormatOf(std::string_view bytes);

#endif
