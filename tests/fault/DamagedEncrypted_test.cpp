#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "fault/Damage.h"
#include "fault/FaultBench.h"
#include "fault/SampleBackup.h"

// Encrypted stored files cut short, emptied, bit-flipped, removed or
// replaced by a folder, one at a time: the decrypted copy answers as the
// plain sample except for the answers that file feeds, and the backup is
// left as it was.
namespace {

namespace fs = std::filesystem;
using yhtest::IndexKind;
namespace sample = yhtest::sample;

struct Target {
  std::string domain;
  std::string path;
  std::vector<iDeviceContentType> feeds;
};

std::vector<Target> Targets(IndexKind kind) {
  std::vector<Target> targets;
  for (const auto& database : sample::Databases(kind)) targets.push_back({database.domain, database.path, database.feeds});
  for (const auto& file : sample::Files(kind)) targets.push_back({file.domain, file.path, file.feeds});
  return targets;
}

struct Damage {
  const char* name;
  std::function<void(const std::string&)> apply;
};

const Damage kDamages[] = {
    {"cut by five bytes",
     [](const std::string& path) { fs::resize_file(path, fs::file_size(path) - 5); }},
    {"emptied", [](const std::string& path) { fs::resize_file(path, 0); }},
    {"bit-flipped",
     [](const std::string& path) {
       std::string bytes = yhtest::ReadBytes(path);
       bytes[bytes.size() / 2] ^= 0x10;
       yhtest::WriteFile(path, bytes);
     }},
    {"removed", [](const std::string& path) { fs::remove(path); }},
    {"a folder", [](const std::string& path) { yhtest::fault::ReplaceWithFolder(path); }},
};

class DamagedEncrypted : public ::testing::TestWithParam<IndexKind> {};

TEST_P(DamagedEncrypted, ADamagedStoredFileChangesOnlyItsOwnAnswers) {
  yhtest::TempDir root;
  const std::string plain = sample::Builder(GetParam()).Write(root.Path() + "plain");
  const std::string pristine = sample::Builder(GetParam()).Encrypt({"pw", 1, 1}).Write(root.Path() + "pristine");
  const std::vector<std::string> baseline =
      yhtest::fault::Normalized(yhtest::fault::AskEverything(plain), plain);
  const std::string work = root.Path() + "work/";
  const std::string copy = root.Path() + "copy/";
  for (const Target& target : Targets(GetParam())) {
    for (const Damage& damage : kDamages) {
      SCOPED_TRACE(target.path + " " + damage.name);
      fs::remove_all(work);
      fs::remove_all(copy);
      yhtest::CopyTree(pristine, work);
      damage.apply(work + yhtest::BackupBuilder(GetParam()).StoredPath(target.domain, target.path));
      const std::string before = yhtest::SnapshotTree(work);
      const int32_t result = DecryptBackup(work.c_str(), copy.c_str(), "pw", nullptr, nullptr);
      EXPECT_TRUE(result == YHDecryptedWithGaps || result == YHUnlocked) << result;
      EXPECT_EQ(yhtest::SnapshotTree(work), before);
      const std::vector<std::string> answers =
          yhtest::fault::Normalized(yhtest::fault::AskEverything(copy), copy);
      ASSERT_EQ(answers.size(), baseline.size());
      for (size_t i = 0; i < answers.size(); ++i) {
        const auto type = static_cast<iDeviceContentType>(i % yhtest::fault::kContentTypes);
        if (std::find(target.feeds.begin(), target.feeds.end(), type) != target.feeds.end()) continue;
        EXPECT_EQ(answers[i], baseline[i]) << "content type " << type;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(BothIndexes, DamagedEncrypted, ::testing::Values(IndexKind::Mbdb, IndexKind::ManifestDb),
                         [](const auto& info) { return yhtest::fault::IndexName(info.param); });

}  // namespace
