#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "UnfinishedMark.h"
#include "YhRun.h"
#include "support/BackupBuilder.h"

namespace yhtool {
namespace {

namespace fs = std::filesystem;
using yhtest::BackupBuilder;
using yhtest::IndexKind;

constexpr int kPictures = 60;
constexpr size_t kPictureBytes = 768 << 10;
const char kPartialPrefix[] = ".yh-partial-";

// A backup whose pictures take a while to copy, so that yh can be stopped
// while it copies them.
std::string WritePictures(const std::string& folder) {
  std::string sql = yhtest::Schema("Photos.sqlite-ios7");
  BackupBuilder builder(IndexKind::ManifestDb);
  for (int i = 0; i < kPictures; ++i) {
    const std::string name = "IMG_" + std::to_string(1000 + i) + ".JPG";
    sql += "INSERT INTO ZGENERICASSET (ZDIRECTORY, ZFILENAME) VALUES ('DCIM/100APPLE', '" + name + "');\n";
    builder.AddFile("CameraRollDomain", "Media/DCIM/100APPLE/" + name, std::string(kPictureBytes, char('a' + i % 26)));
  }
  return builder.AddDatabase("CameraRollDomain", "Media/PhotoData/Photos.sqlite", sql)
      .InfoString("Device Name", "Slow Phone")
      .Write(folder);
}

// Relative path to bytes of every regular file below a folder.
std::map<std::string, std::string> Contents(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files[fs::relative(entry.path(), folder).string()] = ReadFile(entry.path().string());
  }
  return files;
}

std::map<std::string, ino_t> Inodes(const std::string& folder) {
  std::map<std::string, ino_t> inodes;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    struct stat status {};
    if (entry.is_regular_file() && ::stat(entry.path().c_str(), &status) == 0) {
      inodes[fs::relative(entry.path(), folder).string()] = status.st_ino;
    }
  }
  return inodes;
}

size_t FileCount(const std::string& folder) {
  std::error_code error;
  size_t count = 0;
  for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (it->is_regular_file(error)) ++count;
  }
  return count;
}

// A run of yh stopped by `signal` once its folder holds `files` files (or
// when it ends first); its exit status and error output.
struct Stopped {
  bool ended = false;  // it finished before it could be stopped
  int status = 0;
  std::string err;
};

Stopped StopWhen(const std::vector<std::string>& args, const std::string& out, size_t files, int signal,
                 const std::string& errFile) {
  const pid_t child = fork();
  if (child == 0) {
    FILE* err = std::freopen(errFile.c_str(), "w", stderr);
    FILE* nothing = std::freopen("/dev/null", "w", stdout);
    if (!err || !nothing) _exit(126);
    std::vector<std::string> argv{YH_COMMAND};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> pointers;
    for (std::string& arg : argv) pointers.push_back(arg.data());
    pointers.push_back(nullptr);
    setenv("TZ", "UTC", 1);
    execv(pointers[0], pointers.data());
    _exit(127);
  }
  Stopped stopped;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < deadline) {
    if (waitpid(child, &stopped.status, WNOHANG) == child) {
      stopped.ended = true;
      break;
    }
    if (FileCount(out) >= files) {
      kill(child, signal);
      waitpid(child, &stopped.status, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  stopped.err = ReadFile(errFile);
  return stopped;
}

class YhInterrupt : public ::testing::TestWithParam<const char*> {
 protected:
  static void SetUpTestSuite() {
    dir_ = new yhtest::TempDir();
    backup_ = new std::string(WritePictures(dir_->Path() + "backup"));
  }
  static void TearDownTestSuite() {
    delete backup_;
    delete dir_;
  }

  std::string Command() const { return GetParam(); }
  std::vector<std::string> Args(const std::string& out, bool resume = false) const {
    std::vector<std::string> args{Command(), *backup_, "--out", out};
    if (resume) args.push_back("--resume");
    return args;
  }

  static yhtest::TempDir* dir_;
  static std::string* backup_;
  yhtest::TempDir work_;
};

yhtest::TempDir* YhInterrupt::dir_ = nullptr;
std::string* YhInterrupt::backup_ = nullptr;

// Stopped at any point, by Ctrl-C or by SIGKILL, the folder holds no file cut
// short under its own name and says it is incomplete; the same command
// refuses it without --resume and with --resume finishes it without copying
// again what was copied, into what one uninterrupted run writes.
TEST_P(YhInterrupt, AnyPointCanBeFinishedWithResume) {
  const std::string reference = work_.Path() + "reference";
  ASSERT_EQ(Yh(Args(reference)).code, 0);
  const std::map<std::string, std::string> whole = Contents(reference);
  size_t tested = 0;
  for (int signal : {SIGINT, SIGKILL}) {
    for (size_t files : {2, 4, 12, 30, 55}) {
      SCOPED_TRACE(std::string(signal == SIGINT ? "SIGINT" : "SIGKILL") + " after " + std::to_string(files) + " files");
      const std::string out = work_.Path() + "out-" + std::to_string(signal) + "-" + std::to_string(files);
      const Stopped stopped = StopWhen(Args(out), out, files, signal, work_.Path() + "err");
      if (stopped.ended) continue;  // this machine was faster than the watcher
      ++tested;
      if (signal == SIGINT) {
        EXPECT_TRUE(WIFEXITED(stopped.status) && WEXITSTATUS(stopped.status) == 1) << stopped.status;
        EXPECT_TRUE(Contains(stopped.err, "yh: interrupted: " + out +
                                              " is incomplete; run the same command with --resume to finish it\n"));
      } else {
        EXPECT_TRUE(WIFSIGNALED(stopped.status));
      }
      const std::map<std::string, std::string> left = Contents(out);
      EXPECT_TRUE(left.count(yh::UnfinishedMark::kName));
      EXPECT_FALSE(left.count("data/overview.js")) << "the report's page says it is incomplete";
      for (const auto& [name, bytes] : left) {
        if (name == yh::UnfinishedMark::kName) continue;
        if (fs::path(name).filename().string().rfind(kPartialPrefix, 0) == 0) {
          EXPECT_EQ(signal, SIGKILL) << name << ": Ctrl-C removes the file it was writing";
          continue;
        }
        ASSERT_TRUE(whole.count(name)) << name;
        EXPECT_EQ(bytes, whole.at(name)) << name << " is whole";
      }

      const YhResult refused = Yh(Args(out));
      EXPECT_EQ(refused.code, 1);
      EXPECT_EQ(refused.err, "yh: --out " + out + " holds an interrupted " + Command() +
                                 "; run the same command with --resume to finish it, or give a new or empty folder\n");

      const std::map<std::string, ino_t> before = Inodes(out);
      const YhResult resumed = Yh(Args(out, true));
      ASSERT_EQ(resumed.code, 0) << resumed.err;
      size_t copies = 0;
      for (const auto& [name, inode] : before) {
        if (name.rfind("media/", 0) != 0 || fs::path(name).filename().string().rfind(kPartialPrefix, 0) == 0) continue;
        ++copies;
        EXPECT_EQ(Inodes(out)[name], inode) << name << " is not copied again";
      }
      EXPECT_TRUE(Contains(resumed.out, "Finished an interrupted " + Command() + ": " + std::to_string(copies) +
                                            " files were already copied\n"));
      EXPECT_EQ(Contents(out), whole) << "the finished folder is what one run writes";
    }
  }
  EXPECT_GT(tested, 4u) << "yh was stopped at several points";
}

INSTANTIATE_TEST_SUITE_P(ExportAndReport, YhInterrupt, ::testing::Values("export", "report"));

}  // namespace
}  // namespace yhtool
