#include "common/PictureFormat.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string MimeTypeOf(const std::string& bytes) {
  const PictureFormat* format = PictureFormatOf(bytes);
  return format ? std::string(format->mimeType) + " " + format->extension : "none";
}

TEST(PictureFormat, ToldByTheSignature) {
  EXPECT_EQ(MimeTypeOf(std::string("\xFF\xD8\xFF\xE0\0\x10JFIF", 10)), "image/jpeg jpg");
  EXPECT_EQ(MimeTypeOf(std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)), "image/png png");
  EXPECT_EQ(MimeTypeOf("GIF89a"), "image/gif gif");
  EXPECT_EQ(MimeTypeOf(std::string("\0\0\0\x18" "ftypheic", 12)), "image/heic heic");
  EXPECT_EQ(MimeTypeOf(std::string("\0\0\0\x18" "ftypheix", 12)), "image/heic heic");
  EXPECT_EQ(MimeTypeOf(std::string("\0\0\0\x1C" "ftypmif1", 12)), "image/heif heif");
}

TEST(PictureFormat, OtherOrCutBytesAreNone) {
  EXPECT_EQ(MimeTypeOf(""), "none");
  EXPECT_EQ(MimeTypeOf("\xFF\xD8"), "none");
  EXPECT_EQ(MimeTypeOf(std::string("\0\0\0\x18" "ftypqt  ", 12)), "none");
  EXPECT_EQ(MimeTypeOf(std::string("\0\x10\x20\x30\x40\x50", 6)), "none");
  EXPECT_EQ(MimeTypeOf("%PDF-1.7"), "none");
}

}  // namespace
