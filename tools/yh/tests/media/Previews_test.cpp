#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "AmrWav.h"
#include "HeifThumbnail.h"
#include "MediaFiles.h"

namespace yhtool {
namespace {

// The colour of the pixel at (x, y): 0 red, 1 green, 2 blue.
int Channel(const yhmedia::Pixels& pixels, int x, int y) {
  const auto* at = reinterpret_cast<const uint8_t*>(pixels.rgb.data()) + (y * pixels.width + x) * 3;
  int strongest = 0;
  for (int c = 1; c < 3; ++c) {
    if (at[c] > at[strongest]) strongest = c;
  }
  return strongest;
}

TEST(HeifThumbnail, IsAJpegOfThePictureAtMostTheThumbnailSide) {
  const yhmedia::Pixels pixels = yhmedia::DecodeJpeg(yh::HeifThumbnail(yhmedia::HeicPicture(1200, 900)));
  EXPECT_EQ(pixels.width, yh::kThumbnailSide);
  EXPECT_EQ(pixels.height, yh::kThumbnailSide * 3 / 4);
  EXPECT_EQ(Channel(pixels, pixels.width / 6, pixels.height / 2), 0);
  EXPECT_EQ(Channel(pixels, pixels.width / 2, pixels.height / 2), 1);
  EXPECT_EQ(Channel(pixels, pixels.width * 5 / 6, pixels.height / 2), 2);
}

TEST(HeifThumbnail, KeepsTheSizeOfASmallPicture) {
  const yhmedia::Pixels pixels = yhmedia::DecodeJpeg(yh::HeifThumbnail(yhmedia::HeicPicture(320, 240)));
  EXPECT_EQ(pixels.width, 320);
  EXPECT_EQ(pixels.height, 240);
}

TEST(HeifThumbnail, GivesNothingForWhatIsNoPicture) {
  const std::string heic = yhmedia::HeicPicture(64, 64);
  EXPECT_EQ(yh::HeifThumbnail(""), "");
  EXPECT_EQ(yh::HeifThumbnail(std::string("\0\0\0\x18" "ftypheic", 12) + std::string(4000, 'x')), "");
  EXPECT_EQ(yh::HeifThumbnail(heic.substr(0, heic.size() / 2)), "");
  EXPECT_EQ(yh::HeifThumbnail(yhmedia::JpegPicture(64, 64)), "");
}

uint32_t Le32(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
  return value;
}

TEST(AmrToWav, DecodesEachFrameIntoEightKilohertzPcm) {
  const std::string wav = yh::AmrToWav(yhmedia::AmrSound(1000));
  ASSERT_GE(wav.size(), 44u);
  EXPECT_EQ(wav.substr(0, 4), "RIFF");
  EXPECT_EQ(wav.substr(8, 8), "WAVEfmt ");
  EXPECT_EQ(Le32(wav, 24), 8000u) << "sample rate";
  EXPECT_EQ(wav.substr(36, 4), "data");
  EXPECT_EQ(Le32(wav, 40), 8000u * 2) << "one second of 16-bit samples";
  EXPECT_EQ(Le32(wav, 4), wav.size() - 8);
  int loudest = 0;
  for (size_t at = 44; at + 1 < wav.size(); at += 2) {
    const int sample = static_cast<int16_t>(static_cast<uint8_t>(wav[at]) | static_cast<uint8_t>(wav[at + 1]) << 8);
    loudest = std::max(loudest, std::abs(sample));
  }
  EXPECT_GT(loudest, 2000) << "the tone is heard";
}

TEST(AmrToWav, StopsAtAFrameCutShortAndRefusesOtherFiles) {
  const std::string amr = yhmedia::AmrSound(1000);
  const std::string cut = yh::AmrToWav(amr.substr(0, amr.size() - 10));
  EXPECT_EQ(Le32(cut, 40), (8000u - 160) * 2);
  EXPECT_EQ(yh::AmrToWav("#!AMR-WB\n" + std::string(100, '\0')), "");
  EXPECT_EQ(yh::AmrToWav("#!AMR\n"), "");
  EXPECT_EQ(yh::AmrToWav("RIFF"), "");
}

}  // namespace
}  // namespace yhtool
