#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "Kinds.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"
#include "support/TreeSnapshot.h"

namespace yhtool {
namespace {

namespace fs = std::filesystem;

const char* const kSamples[] = {kOldSample, kNewSample};

// Names of the entries of a folder.
std::set<std::string> Entries(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
  return names;
}

// The media records of an answer: its records, or the dictionaries of the
// nested lists `keys` lead to.
void CollectMedia(const nlohmann::json& list, const std::vector<std::string>& keys, size_t depth,
                  std::vector<nlohmann::json>& media) {
  if (!list.is_array()) return;
  for (const nlohmann::json& item : list) {
    if (depth == keys.size()) {
      media.push_back(item);
    } else if (item.is_object() && item.contains(keys[depth])) {
      CollectMedia(item[keys[depth]], keys, depth + 1, media);
    }
  }
}

class YhExport : public ::testing::Test {
 protected:
  YhResult Exported(const char* sample, const std::vector<std::string>& more = {}) {
    std::vector<std::string> args{"export", sample, "--root", Samples(), "--out", out_};
    args.insert(args.end(), more.begin(), more.end());
    return Yh(args);
  }

  yhtest::TempDir dir_;
  const std::string out_ = dir_.Path() + "out";
};

TEST_F(YhExport, WritesEachKindAsJsonAndCsvAndCopiesTheMedia) {
  for (const char* sample : kSamples) {
    SCOPED_TRACE(sample);
    fs::remove_all(out_);
    const std::string backup = Samples() + "/" + sample;
    const std::string before = yhtest::SnapshotTree(backup);
    const YhResult run = Exported(sample);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, "") << "no progress when standard error is no terminal";
    EXPECT_EQ(yhtest::SnapshotTree(backup), before) << "the backup is left as it was";

    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(kind.name);
      const auto show = [&](const char* format) {
        return OutOf(Yh({"show", sample, kind.name, "--root", Samples(), "--format", format}));
      };
      EXPECT_EQ(ReadFile(out_ + "/" + kind.name + ".json"), show("json"));
      EXPECT_EQ(ReadFile(out_ + "/" + kind.name + ".csv"), show("csv"));
      if (!kind.IsMedia()) continue;
      std::vector<nlohmann::json> media;
      CollectMedia(nlohmann::json::parse(show("json")), kind.mediaLists, 0, media);
      if (media.empty()) continue;
      EXPECT_EQ(Entries(out_ + "/media/" + kind.name).size(), media.size());
      for (const nlohmann::json& record : media) {
        const std::string original = record.value("original_name", "");
        const std::string name = original.empty() ? record[kind.fileNameKey].get<std::string>() : original;
        const std::string copy = out_ + "/media/" + kind.name + "/" + name;
        EXPECT_EQ(ReadFile(copy), ReadFile(record["path"])) << copy;
        EXPECT_EQ(fs::file_size(copy), record["size"].get<uint64_t>());
      }
    }
    std::set<std::string> folders{"attachments", "camera-photos", "other-photos", "recordings", "voicemail"};
    if (sample == std::string(kNewSample)) folders.insert("whatsapp");
    EXPECT_EQ(Entries(out_ + "/media"), folders);
    EXPECT_EQ(Entries(out_).size(), 2 * yh::Kinds().size() + 1);
  }
}

TEST_F(YhExport, CopiesKeepTheirOriginalNamesWhereTheRecordHasOne) {
  const char kCameraRoll[] = "CameraRollDomain";
  const std::string library =
      yhtest::Schema("Photos.sqlite-ios7") +
      "INSERT INTO ZGENERICASSET (Z_PK, ZDIRECTORY, ZFILENAME) VALUES (1, 'DCIM/100APPLE', 'IMG_0001.HEIC'), "
      "(2, 'DCIM/100APPLE', 'IMG_0002.MOV'), (3, 'DCIM/100APPLE', 'IMG_0003.JPG');\n"
      "INSERT INTO ZADDITIONALASSETATTRIBUTES (ZASSET, ZORIGINALFILENAME) VALUES (1, 'Beach.heic'), (3, '');\n";
  const std::string backup = yhtest::BackupBuilder(yhtest::IndexKind::ManifestDb)
                                 .AddDatabase(kCameraRoll, "Media/PhotoData/Photos.sqlite", library)
                                 .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0001.HEIC", "heic")
                                 .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0002.MOV", "mov")
                                 .AddFile(kCameraRoll, "Media/DCIM/100APPLE/IMG_0003.JPG", "jpg")
                                 .Write(dir_.Path() + "backup");
  const YhResult run = Yh({"export", backup, "--out", out_, "--kinds", "camera-photos"});
  ASSERT_EQ(run.code, 0) << run.err;
  const std::string media = out_ + "/media/camera-photos/";
  EXPECT_EQ(Entries(media), (std::set<std::string>{"Beach.heic", "IMG_0002.MOV", "IMG_0003.JPG"}));
  EXPECT_EQ(ReadFile(media + "Beach.heic"), "heic");

  fs::remove_all(out_);
  const YhResult classic = Yh({"export", backup, "--out", out_, "--kinds", "camera-photos", "--classic"});
  ASSERT_EQ(classic.code, 0) << classic.err;
  EXPECT_EQ(Entries(media), (std::set<std::string>{"IMG_0001.HEIC", "IMG_0002.MOV", "IMG_0003.JPG"}))
      << "records without original names keep their file names";
}

TEST_F(YhExport, PrintsASummary) {
  const YhResult run = Exported(kOldSample);
  EXPECT_EQ(run.out, "Exported 5d2f3b8e9a1c4d7f6e0b2a9c8d7e6f5a4b3c2d1e (Grace’s iPhone) to " + out_ +
                         "\n"
                         "kind            records  files  bytes  skipped\n"
                         "calls           4        -      -      -\n"
                         "contacts        3        -      -      -\n"
                         "messages        2        -      -      -\n"
                         "attachments     2        2      4816   0\n"
                         "notes           2        -      -      -\n"
                         "safari          4        -      -      -\n"
                         "events          3        -      -      -\n"
                         "reminders       3        -      -      -\n"
                         "recordings      2        2      6524   0\n"
                         "camera-photos   3        3      10228  0\n"
                         "other-photos    1        1      2610   0\n"
                         "voicemail       1        1      2206   0\n"
                         "whatsapp        0        0      0      0\n"
                         "whatsapp-calls  0        -      -      -\n"
                         "total           30       9      26384  0\n");
}

TEST_F(YhExport, KindsCanBeChosen) {
  const YhResult run = Exported(kNewSample, {"--kinds", "notes,9,notes"});
  ASSERT_EQ(run.code, 0);
  EXPECT_EQ(Entries(out_),
            (std::set<std::string>{"notes.json", "notes.csv", "camera-photos.json", "camera-photos.csv", "media"}));
  EXPECT_EQ(Entries(out_ + "/media"), std::set<std::string>{"camera-photos"});
  EXPECT_TRUE(Contains(run.out, "\nnotes          2"));
  EXPECT_EQ(Lines(run.out).size(), 5u) << "title, header, two kinds, total";
}

TEST_F(YhExport, VoicemailHasNoFilesWithTheDescribedService) {
  const YhResult run = Exported(kNewSample, {"--kinds", "voicemail", "--classic"});
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(Entries(out_), (std::set<std::string>{"voicemail.json", "voicemail.csv"}));
  EXPECT_TRUE(Contains(run.out, "\nvoicemail  0        0      0      0\n"));
}

TEST_F(YhExport, NothingIsEverOverwritten) {
  ASSERT_EQ(Exported(kOldSample).code, 0);
  const std::string before = yhtest::SnapshotTree(out_);
  const YhResult again = Exported(kOldSample);
  ASSERT_EQ(again.code, 0);
  // Every earlier file is as it was; the second export sits beside it.
  const std::string after = yhtest::SnapshotTree(out_);
  for (const std::string& line : Lines(before)) {
    if (line.find(" f ") != std::string::npos) {
      EXPECT_TRUE(Contains(after, line));
    }
  }
  EXPECT_EQ(ReadFile(out_ + "/calls-1.json"), ReadFile(out_ + "/calls.json"));
  EXPECT_EQ(ReadFile(out_ + "/media/camera-photos/IMG_0001-1.JPG"),
            ReadFile(out_ + "/media/camera-photos/IMG_0001.JPG"));
}

TEST_F(YhExport, PlantedLinksInTheOutputAreNeverFollowed) {
  const std::string elsewhere = dir_.Path() + "elsewhere/";
  yhtest::WriteFile(elsewhere + "calls.json", "keep me");
  fs::create_directories(out_);
  fs::create_symlink(elsewhere + "calls.json", out_ + "/calls.json");
  fs::create_symlink(elsewhere, out_ + "/media");
  const std::string outside = yhtest::SnapshotTree(elsewhere);

  const YhResult run = Exported(kOldSample);
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "cannot write " + out_ + "/media: "));
  EXPECT_EQ(yhtest::SnapshotTree(elsewhere), outside);
  EXPECT_TRUE(fs::is_regular_file(out_ + "/calls-1.json"));
  EXPECT_TRUE(fs::is_symlink(out_ + "/calls.json"));
}

TEST_F(YhExport, NeverIntoTheBackup) {
  const std::string backup = Samples() + "/" + kNewSample;
  const std::string before = yhtest::SnapshotTree(backup);
  for (const std::string& out : {backup, backup + "/export", backup + "/../" + kNewSample + "/x/y"}) {
    SCOPED_TRACE(out);
    const YhResult run = Yh({"export", backup, "--out", out});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, "yh: --out " + out + " lies inside the backup; yh never writes into a backup\n");
  }
  fs::create_symlink(backup, dir_.Path() + "link");
  EXPECT_EQ(Yh({"export", backup, "--out", dir_.Path() + "link/x"}).code, 1);
  EXPECT_EQ(yhtest::SnapshotTree(backup), before);
}

TEST_F(YhExport, AnOutputThatCannotBeMadeFails) {
  yhtest::WriteFile(out_, "a file");
  const YhResult run = Exported(kOldSample);
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "yh: cannot write " + out_ + ": "));
  EXPECT_EQ(run.out, "");
}

}  // namespace
}  // namespace yhtool
