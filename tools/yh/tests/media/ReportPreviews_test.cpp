#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "MediaBackup.h"
#include "MediaFiles.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"

namespace yhtool {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

// HEIF pictures get JPEG thumbnails and AMR sounds WAV files that a browser
// shows and plays; files that need none, or cannot be decoded, get none.
TEST(YhReportPreviews, MakeJpegsOfHeifPicturesAndWavsOfAmrSounds) {
  yhtest::TempDir dir;
  const std::string out = dir.Path() + "report";
  const std::string backup = yhmedia::WriteMediaBackup(dir.Path() + "backups");
  const YhResult run = Yh({"report", backup, "--out", out});
  ASSERT_EQ(run.code, 0) << run.err;
  const ordered_json photos = ReportData(out + "/data/camera-photos.js", "camera-photos")["records"];
  ASSERT_GE(photos.size(), 3u);
  EXPECT_EQ(photos[0]["preview_path"], "previews/camera-photos/IMG_0101.HEIC.jpg");
  const yhmedia::Pixels thumbnail = yhmedia::DecodeJpeg(ReadFile(out + "/previews/camera-photos/IMG_0101.HEIC.jpg"));
  EXPECT_EQ(thumbnail.width, 480);
  EXPECT_EQ(thumbnail.height, 360);
  EXPECT_FALSE(photos[1].contains("preview_path")) << "a browser shows a JPEG";
  EXPECT_FALSE(photos[2].contains("preview_path")) << "a video plays as it is";
  const ordered_json voicemail = ReportData(out + "/data/voicemail.js", "voicemail")["records"];
  ASSERT_EQ(voicemail.size(), 2u);
  const ordered_json& heard = voicemail[0]["file_name"] == "1.amr" ? voicemail[0] : voicemail[1];
  EXPECT_EQ(heard["preview_path"], "previews/voicemail/1.amr.wav");
  EXPECT_EQ(ReadFile(out + "/previews/voicemail/1.amr.wav").substr(0, 4), "RIFF");

  fs::remove_all(out);
  ASSERT_EQ(Yh({"report", kNewSample, "--root", Samples(), "--out", out}).code, 0);
  EXPECT_TRUE(fs::exists(out + "/previews/camera-photos/IMG_0415.HEIC.jpg"));
  EXPECT_FALSE(fs::exists(out + "/previews/other-photos")) << "a JPEG needs no preview";
}

}  // namespace
}  // namespace yhtool
