#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "Kinds.h"
#include "UnfinishedMark.h"
#include "YhRun.h"
#include "common/CivilTime.h"
#include "platform/FileSystem.h"
#include "support/BackupBuilder.h"
#include "support/NoteStoreBody.h"
#include "support/SystemFiles.h"
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
void CollectMedia(const nlohmann::ordered_json& list, const std::vector<std::string>& keys, size_t depth,
                  std::vector<nlohmann::ordered_json>& media) {
  if (!list.is_array()) return;
  for (const nlohmann::ordered_json& item : list) {
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

  // Each record that names a picture names its copy, media/<kind>/ plus the
  // picture's own name, as large as the answer says; the CSV is what yh
  // show gives with the copies' column after it.
  void ExpectPictureCopies(const yh::Kind& kind, const nlohmann::ordered_json& exported, const std::string& shownCsv) {
    size_t pictures = 0;
    for (const nlohmann::ordered_json& record : exported) {
      const std::string picture = record.at(kind.picturePathKey).get<std::string>();
      const std::string copy = record.at("exported_path").get<std::string>();
      if (picture.empty()) {
        EXPECT_EQ(copy, "");
        continue;
      }
      ++pictures;
      EXPECT_EQ(copy, "media/" + kind.name + "/" + picture.substr(picture.rfind('/') + 1));
      EXPECT_EQ(fs::file_size(out_ + "/" + copy), record.at("picture_size").get<uint64_t>()) << copy;
    }
    EXPECT_EQ(pictures ? Entries(out_ + "/media/" + kind.name).size() : 0u, pictures);
    const std::vector<std::string> csv = Lines(WithoutPrivateFolders(ReadFile(out_ + "/" + kind.name + ".csv")));
    const std::vector<std::string> shown = Lines(WithoutPrivateFolders(shownCsv));
    ASSERT_EQ(csv.size(), shown.size());
    EXPECT_EQ(csv[0], shown[0] + ",exported_path");
    for (size_t i = 1; i < csv.size(); ++i) EXPECT_EQ(csv[i].rfind(shown[i] + ",", 0), 0u) << csv[i];
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
      if (!kind.IsMedia() || !kind.mediaLists.empty()) {
        // Messages name their attachments' copies; the attachments kind checks those.
        const nlohmann::ordered_json exported =
            nlohmann::ordered_json::parse(ReadFile(out_ + "/" + kind.name + ".json"));
        EXPECT_EQ(WithoutCopyPaths(exported), WithoutCopyPaths(nlohmann::ordered_json::parse(show("json"))));
        if (!kind.picturePathKey.empty()) {
          ExpectPictureCopies(kind, exported, show("csv"));
        } else if (kind.name != "messages" && kind.name != "whatsapp") {
          EXPECT_EQ(ReadFile(out_ + "/" + kind.name + ".csv"), show("csv"));
        }
        // WhatsApp's media lie in its chats' messages.
        std::vector<nlohmann::ordered_json> media;
        CollectMedia(exported, kind.mediaLists, 0, media);
        if (!kind.IsMedia() || media.empty()) continue;
        EXPECT_EQ(Entries(out_ + "/media/" + kind.name).size(), media.size());
        for (const nlohmann::ordered_json& medium : media) {
          const std::string copy = medium.at("exported_path").get<std::string>();
          EXPECT_EQ(copy.rfind("media/" + kind.name + "/", 0), 0U) << copy;
          EXPECT_EQ(ReadFile(out_ + "/" + copy), ReadFile(medium["path"])) << copy;
        }
        continue;
      }
      // The answer as shown, each record with the path of its copy.
      const nlohmann::ordered_json shown = nlohmann::ordered_json::parse(show("json"));
      const nlohmann::ordered_json exported = nlohmann::ordered_json::parse(ReadFile(out_ + "/" + kind.name + ".json"));
      ASSERT_EQ(exported.size(), shown.size());
      EXPECT_EQ(Entries(out_ + "/media/" + kind.name).size(), shown.size());
      for (size_t i = 0; i < shown.size(); ++i) {
        const std::string original = shown[i].value("original_name", "");
        const std::string name = original.empty() ? shown[i][kind.fileNameKey].get<std::string>() : original;
        const std::string copy = "media/" + kind.name + "/" + name;
        nlohmann::ordered_json expected = shown[i];
        expected["exported_path"] = copy;
        EXPECT_EQ(exported[i], expected);
        EXPECT_EQ(ReadFile(out_ + "/" + copy), ReadFile(shown[i]["path"])) << copy;
        EXPECT_EQ(fs::file_size(out_ + "/" + copy), shown[i]["size"].get<uint64_t>());
      }
      const std::vector<std::string> csv = Lines(ReadFile(out_ + "/" + kind.name + ".csv"));
      const std::vector<std::string> shownCsv = Lines(show("csv"));
      ASSERT_EQ(csv.size(), shownCsv.size());
      EXPECT_EQ(csv[0], shownCsv[0] + ",exported_path");
      for (size_t i = 1; i < csv.size(); ++i) {
        EXPECT_EQ(csv[i], shownCsv[i] + "," + exported[i - 1]["exported_path"].get<std::string>());
      }
    }
    std::set<std::string> folders{"attachments", "camera-photos", "other-photos", "recordings", "voicemail"};
    if (sample == std::string(kNewSample)) folders.insert({"contacts", "whatsapp"});
    EXPECT_EQ(Entries(out_ + "/media"), folders);
    EXPECT_EQ(Entries(out_).size(), 2 * yh::Kinds().size() + 1);
  }
}

// Beside each kind's files, its deleted records as yh show --deleted gives
// them; the summary counts them.
TEST_F(YhExport, DeletedRecordsGoBesideTheLiveFiles) {
  const YhResult run = Exported(kNewSample, {"--deleted"});
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(Entries(out_).size(), 4 * yh::Kinds().size() + 1);
  for (const yh::Kind& kind : yh::Kinds()) {
    SCOPED_TRACE(kind.name);
    const auto show = [&](const char* format, bool deleted) {
      std::vector<std::string> args{"show", kNewSample, kind.name, "--root", Samples(), "--format", format};
      if (deleted) args.push_back("--deleted");
      return OutOf(Yh(args));
    };
    EXPECT_EQ(WithoutCopyPaths(nlohmann::ordered_json::parse(ReadFile(out_ + "/" + kind.name + "-deleted.json"))),
              WithoutCopyPaths(nlohmann::ordered_json::parse(show("json", true))));
    EXPECT_EQ(WithoutCopyPaths(nlohmann::ordered_json::parse(ReadFile(out_ + "/" + kind.name + ".json"))),
              WithoutCopyPaths(nlohmann::ordered_json::parse(show("json", false))));
    if (!kind.HasFiles()) {
      EXPECT_EQ(ReadFile(out_ + "/" + kind.name + "-deleted.csv"), show("csv", true));
    }
  }
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 3 + yh::Kinds().size());
  EXPECT_EQ(lines[1], "kind            records  deleted  files  bytes  skipped  missing");
  EXPECT_EQ(lines[2], "calls           4        1        -      -      -        -");
  EXPECT_EQ(lines[4], "messages        2        1        -      -      -        -");
  EXPECT_EQ(lines[14].rfind("whatsapp        2        1        ", 0), 0u) << lines[14];
  EXPECT_EQ(lines.back().rfind("total           32       3        ", 0), 0u) << lines.back();
}

// A message's attachments name the copies the attachments kind names, made once.
TEST_F(YhExport, MessagesNameTheCopiesOfTheirAttachments) {
  ASSERT_EQ(Exported(kNewSample).code, 0);
  const auto chats = nlohmann::json::parse(ReadFile(out_ + "/messages.json"));
  EXPECT_EQ(chats[0]["message"][2]["attachments"][0]["exported_path"], "media/attachments/IMG_0412.HEIC");
  EXPECT_EQ(chats[1]["message"][0]["attachments"][0]["exported_path"], "media/attachments/Itinerary.pdf");
  EXPECT_EQ(Entries(out_ + "/media/attachments"), (std::set<std::string>{"IMG_0412.HEIC", "Itinerary.pdf"}));
  EXPECT_TRUE(Contains(ReadFile(out_ + "/messages.csv"), R"(""exported_path"":""media/attachments/Itinerary.pdf"")"));
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

// The pictures the library writes out of the address book's images
// database, plain or encrypted, are copied under the names it gave them and
// dated when the person was last changed.
TEST_F(YhExport, ContactPicturesAreCopiedUnderTheirIdsAndDated) {
  const std::string jpeg = std::string("\xFF\xD8\xFF\xE0", 4) + "Ada";
  const std::string png = std::string("\x89PNG\r\n\x1A\n", 8) + "Grace";
  const std::string people =
      yhtest::Schema("AddressBook.sqlitedb-ios15") +
      "INSERT INTO ABPerson (ROWID, First, ModificationDate) VALUES (1, 'Ada', 583675200), (2, 'Grace', NULL), "
      "(3, 'Alan', NULL);\n";
  const std::string images = yhtest::Schema("AddressBookImages.sqlitedb-ios9") +
                             "INSERT INTO ABFullSizeImage (record_id, data) VALUES (1, " + yhtest::SqlBlob(jpeg) +
                             ");\nINSERT INTO ABThumbnailImage (record_id, format, data) VALUES (2, 0, " +
                             yhtest::SqlBlob(png) + ");\n";
  for (bool encrypted : {false, true}) {
    SCOPED_TRACE(encrypted ? "encrypted" : "plain");
    yhtest::BackupBuilder builder(yhtest::IndexKind::ManifestDb);
    builder.AddDatabase("HomeDomain", "Library/AddressBook/AddressBook.sqlitedb", people)
        .AddDatabase("HomeDomain", "Library/AddressBook/AddressBookImages.sqlitedb", images);
    if (encrypted) builder.Encrypt({"pw", 1, 1});
    const std::string backup = builder.Write(dir_.Path() + (encrypted ? "encrypted" : "plain"));
    const std::string password = dir_.Path() + "password";
    yhtest::WriteFile(password, "pw");
    fs::remove_all(out_);
    const YhResult run = Yh({"export", backup, "--out", out_, "--kinds", "contacts", "--password-file", password});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_TRUE(Contains(run.out, "\ncontacts  3        2      " + std::to_string(jpeg.size() + png.size())));
    const std::string media = out_ + "/media/contacts/";
    EXPECT_EQ(Entries(media), (std::set<std::string>{"1.jpg", "2.png"}));
    EXPECT_EQ(ReadFile(media + "1.jpg"), jpeg);
    EXPECT_EQ(ReadFile(media + "2.png"), png);
    platform::PathInfo status;
    ASSERT_TRUE(platform::Stat(media + "1.jpg", &status));
    EXPECT_EQ(status.modified, (583675200 + 978307200) * 1000000000LL);
    const auto exported = nlohmann::json::parse(ReadFile(out_ + "/contacts.json"));
    EXPECT_EQ(exported[0]["exported_path"], "media/contacts/1.jpg");
    EXPECT_EQ(exported[1]["exported_path"], "media/contacts/2.png");
    EXPECT_EQ(exported[2]["exported_path"], "");
  }
}

TEST_F(YhExport, PrintsASummary) {
  const YhResult run = Exported(kOldSample);
  EXPECT_EQ(run.out, "Exported 5d2f3b8e9a1c4d7f6e0b2a9c8d7e6f5a4b3c2d1e (Grace’s iPhone) to " + out_ +
                         "\n"
                         "kind            records  files  bytes  skipped  missing\n"
                         "calls           4        -      -      -        -\n"
                         "contacts        3        0      0      0        0\n"
                         "messages        2        -      -      -        -\n"
                         "attachments     2        2      4816   0        0\n"
                         "notes           2        -      -      -        -\n"
                         "safari          4        -      -      -        -\n"
                         "events          3        -      -      -        -\n"
                         "reminders       3        -      -      -        -\n"
                         "recordings      2        2      6524   0        0\n"
                         "camera-photos   3        3      10228  0        0\n"
                         "other-photos    1        1      2610   0        0\n"
                         "voicemail       1        1      2206   0        0\n"
                         "whatsapp        0        0      0      0        0\n"
                         "whatsapp-calls  0        -      -      -        -\n"
                         "total           30       9      26384  0        0\n");
}

// A copy is dated when its record says the content was made; without a
// date, when it was copied.
TEST_F(YhExport, CopiesCarryTheRecordsDate) {
  const int64_t started = time(nullptr);
  ASSERT_EQ(Exported(kNewSample, {"--kinds", "recordings,voicemail"}).code, 0);
  ASSERT_EQ(Yh({"export", kOldSample, "--root", Samples(), "--out", out_ + "-old", "--kinds", "camera-photos"}).code, 0);
  const auto modified = [](const std::string& path) {
    platform::PathInfo info;
    EXPECT_TRUE(platform::Stat(path, &info)) << path;
    return info.modified / 1000000000;
  };
  // yh runs under TZ=UTC: a record's date is its UTC instant.
  const auto instant = [](const std::string& date) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    EXPECT_EQ(std::sscanf(date.c_str(), "%d-%d-%d %d:%d:%d", &year, &month, &day, &hour, &minute, &second), 6) << date;
    return DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second;
  };
  for (const std::string kind : {"recordings", "voicemail"}) {
    for (const auto& record : nlohmann::json::parse(ReadFile(out_ + "/" + kind + ".json"))) {
      EXPECT_EQ(modified(out_ + "/" + record["exported_path"].get<std::string>()), instant(record["date"]))
          << record["date"];
    }
  }
  for (const auto& record : nlohmann::json::parse(ReadFile(out_ + "-old/camera-photos.json"))) {
    ASSERT_EQ(record["date"], "");
    EXPECT_GE(modified(out_ + "-old/" + record["exported_path"].get<std::string>()), started);
  }
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
  EXPECT_TRUE(Contains(run.out, "\nvoicemail  0        0      0      0        0\n"));
}

TEST_F(YhExport, AFolderNotEmptyIsRefusedAndLeftAsItWas) {
  ASSERT_EQ(Exported(kOldSample).code, 0);
  const std::string before = yhtest::SnapshotTree(out_);
  for (const std::vector<std::string>& more : {std::vector<std::string>{}, {"--resume"}}) {
    const YhResult again = Exported(kOldSample, more);
    EXPECT_EQ(again.code, 1);
    EXPECT_EQ(again.err, "yh: --out " + out_ +
                             " is not empty and holds no interrupted export; give a new or empty folder (--resume "
                             "only finishes an interrupted export)\n");
  }
  EXPECT_EQ(yhtest::SnapshotTree(out_), before);
}

// An interrupted export whose folder someone has since planted links in.
TEST_F(YhExport, PlantedLinksInTheOutputAreNeverFollowed) {
  if (!yhtest::HasLinks()) GTEST_SKIP() << yhtest::WhyNoLinks();
  const std::string elsewhere = dir_.Path() + "elsewhere/";
  yhtest::WriteFile(elsewhere + "calls.json", "keep me");
  yhtest::WriteFile(out_ + "/" + yh::UnfinishedMark::kName, yh::UnfinishedMark::Text("export", kOldSample));
  fs::create_symlink(elsewhere + "calls.json", out_ + "/calls.json");
  fs::create_symlink(elsewhere, out_ + "/media");
  const std::string outside = yhtest::SnapshotTree(elsewhere);

  const YhResult run = Exported(kOldSample, {"--resume"});
  EXPECT_EQ(run.code, 1);
  EXPECT_TRUE(Contains(run.err, "cannot write " + out_ + "/media: "));
  EXPECT_EQ(yhtest::SnapshotTree(elsewhere), outside);
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
  if (!yhtest::HasLinks()) GTEST_SKIP() << "the path tests ran; " << yhtest::WhyNoLinks();
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
