// Times yh on a backup written by yh_bench_backup against the library alone
// making the same requests: yh_bench_yh FOLDER [ROUNDS] [YH]. Each round runs,
// each in a child process of its own, the library's requests of `yh show
// BACKUP all`, then `yh show BACKUP all` in every format and `yh export`
// into a new temporary folder. Figures are medians of ROUNDS (5 unless given)
// with their least and greatest values.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "BackupFolder.h"
#include "Isolated.h"
#include "Program.h"
#include "Rounds.h"
#include "ShowRequests.h"
#include "Stopwatch.h"

namespace {

using bench::ProgramRun;
using bench::Spread;

const double kMaxTimeRatio = 1.3;
const double kMaxPeakRatio = 1.25;

const char* const kFormats[] = {"json", "xml", "csv", "table"};

// The runs of one round: the library first, then yh's.
using Round = std::vector<ProgramRun>;

ProgramRun RunLibrary(const std::string& backup) {
  ProgramRun run;
  bool done = false;
  run.ms = bench::Milliseconds([&] {
    run.ok = bench::RunIsolated([&backup](bool* ok) { return *ok = bench::MakeShowRequests(backup); }, &done,
                                &run.peakMb);
  });
  return run;
}

ProgramRun RunExport(const std::string& yh, const std::string& backup) {
  std::string folder = (std::filesystem::temp_directory_path() / "yh_bench_yh.XXXXXX").string();
  if (!mkdtemp(folder.data())) return {};
  const ProgramRun run = bench::RunProgram({yh, "export", backup, "--out", folder + "/out"});
  std::filesystem::remove_all(folder);
  return run;
}

Round RunRound(const std::string& yh, const std::string& backup) {
  Round round{RunLibrary(backup)};
  for (const char* format : kFormats) {
    round.push_back(bench::RunProgram({yh, "show", backup, "all", "--format", format}));
  }
  round.push_back(RunExport(yh, backup));
  return round;
}

std::string Shown(const Spread& spread) {
  char text[64];
  std::snprintf(text, sizeof text, "%8.0f (%.0f-%.0f)", spread.median, spread.least, spread.most);
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 4) {
    std::fprintf(stderr, "usage: yh_bench_yh FOLDER [ROUNDS] [YH]\n");
    return 2;
  }
  const std::string folder = argv[1];
  const int roundCount = argc >= 3 ? std::max(1, std::atoi(argv[2])) : 5;
  const std::string yh = argc == 4 ? argv[3] : YH_COMMAND;
  std::string backup = bench::BackupIn(folder);
  if (backup.empty()) {
    std::fprintf(stderr, "no backup in %s\n", folder.c_str());
    return 1;
  }
  backup.pop_back();  // yh names the folder without its last slash

  std::vector<Round> rounds;
  for (int i = 0; i < roundCount; ++i) {
    rounds.push_back(RunRound(yh, backup));
    for (const ProgramRun& run : rounds.back()) {
      if (!run.ok) {
        std::fprintf(stderr, "a run failed on %s (yh: %s)\n", backup.c_str(), yh.c_str());
        return 1;
      }
    }
  }

  std::vector<std::string> labels{"library, the same requests"};
  for (const char* format : kFormats) labels.push_back(std::string("yh show all --format ") + format);
  labels.push_back("yh export");

  std::printf("%s\n%s\nmedian of %d rounds (least-most)\n", backup.c_str(), yh.c_str(), roundCount);
  std::printf("%-32s %22s %22s  %-18s %s\n", "", "milliseconds", "peak MB", "time / library",
              "peak / library");
  const Spread libraryMs = bench::SpreadOf(rounds, [](const Round& r) { return r[0].ms; });
  const Spread libraryMb = bench::SpreadOf(rounds, [](const Round& r) { return r[0].peakMb; });
  for (size_t i = 0; i < labels.size(); ++i) {
    const Spread ms = bench::SpreadOf(rounds, [i](const Round& r) { return r[i].ms; });
    const Spread mb = bench::SpreadOf(rounds, [i](const Round& r) { return r[i].peakMb; });
    std::printf("%-32s %22s %22s", labels[i].c_str(), Shown(ms).c_str(), Shown(mb).c_str());
    if (i) {
      const double time = ms.median / libraryMs.median;
      const double peak = mb.median / libraryMb.median;
      std::printf("  %4.2f %-13s %4.2f %s", time, bench::Verdict(time <= kMaxTimeRatio), peak,
                  bench::Verdict(peak <= kMaxPeakRatio));
    }
    std::printf("\n");
  }
  std::printf("targets: time <= %.2f, peak <= %.2f times the library's\n", kMaxTimeRatio, kMaxPeakRatio);
  return 0;
}
