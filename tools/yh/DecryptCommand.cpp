#include <iostream>

#include "BackupFinder.h"
#include "Commands.h"
#include "Failure.h"
#include "Password.h"
#include "Progress.h"
#include "TerminalText.h"

namespace yh {
namespace {

struct Run {
  Progress progress;
  std::vector<std::string> skipped;
};

std::string Megabytes(uint64_t bytes) { return std::to_string(bytes / 1000000) + " MB"; }

void Report(const YHDecryptProgress* status, void* user) {
  auto* run = static_cast<Run*>(user);
  if (status->skipped) run->skipped.push_back(status->skipped);
  const uint64_t percent = status->bytesTotal ? status->bytesDone * 100 / status->bytesTotal : 100;
  run->progress.Line("decrypting: " + std::to_string(percent) + "%, " + std::to_string(status->filesDone) + "/" +
                     std::to_string(status->filesTotal) + " files, " + Megabytes(status->bytesDone) + " of " +
                     Megabytes(status->bytesTotal));
}

}  // namespace

int RunDecrypt(const DecryptOptions& options, std::ostream& out) {
  const Library library(options.classic);
  const FoundBackup backup = LocateBackup(library, options.backup, options.root);
  const std::string name = Describe(*backup.device);
  if (!backup.device->isEncrypted) throw Failure("backup " + name + ": " + UnlockProblem(YHNotEncrypted));
  std::string password = BackupPassword(options.passwordFile, name);
  std::cerr << "Checking the password (backups of iOS 10.2 and later take a few seconds)...\n";
  Run run;
  const int32_t result =
      DecryptBackup(backup.device->backupPath, options.out.c_str(), password.c_str(), Report, &run);
  Wipe(&password);
  run.progress.Finish();
  if (result != YHUnlocked && result != YHDecryptedWithGaps) {
    throw Failure("backup " + name + ": " + UnlockProblem(result) + (result == YHOutputNotEmpty ? " (" + Printable(options.out) + ")" : ""));
  }
  for (const std::string& file : run.skipped) {
    std::cerr << "yh: skipped stored file " << file << ": missing or damaged\n";
  }
  out << "Decrypted " << name << " to " << Printable(options.out) << " (" << run.skipped.size()
      << " files skipped)\n";
  return 0;
}

}  // namespace yh
