// Times yh on a backup written by yh_bench_backup against the library alone:
// yh_bench_yh FOLDER [ROUNDS] [YH]. Each round runs, each in a child process
// of its own, AnalyzeBackup alone, the library's array answers of `yh show
// BACKUP all`, then `yh show BACKUP all` in every format, `yh export` into a
// new temporary folder with `cp -r` of the media it wrote, and `yh report`.
// Figures are medians of ROUNDS (5 unless given) with their least and
// greatest values, each yh run set against its targets.
//
// yh_bench_yh FOLDER --limit-mb MB [YH] instead runs `yh show BACKUP all`
// and `yh report` with their address space limited to MB and without, and
// fails unless all finish with the same output.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "BackupFolder.h"
#include "LimitCheck.h"
#include "YhRound.h"
#include "YhTable.h"

namespace {

int Usage() {
  std::fprintf(stderr, "usage: yh_bench_yh FOLDER [ROUNDS] [YH]\n       yh_bench_yh FOLDER --limit-mb MB [YH]\n");
  return 2;
}

int TimeRounds(const std::string& yh, const std::string& backup, int roundCount) {
  std::vector<bench::YhRound> rounds;
  for (int i = 0; i < roundCount; ++i) {
    rounds.push_back(bench::RunYhRound(yh, backup));
    if (!bench::AllRan(rounds.back())) {
      std::fprintf(stderr, "a run failed on %s (yh: %s)\n", backup.c_str(), yh.c_str());
      return 1;
    }
  }
  bench::PrintYhTable(rounds);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const bool limited = argc >= 3 && std::strcmp(argv[2], "--limit-mb") == 0;
  const int yhArgument = limited ? 4 : 3;
  if (argc < 2 || argc > yhArgument + 1) return Usage();
  const double limitMb = limited && argc > 3 ? std::atof(argv[3]) : 0;
  if (limited && limitMb <= 0) return Usage();
  const std::string folder = argv[1];
  const std::string yh = argc > yhArgument ? argv[yhArgument] : YH_COMMAND;
  std::string backup = bench::BackupIn(folder);
  if (backup.empty()) {
    std::fprintf(stderr, "no backup in %s\n", folder.c_str());
    return 1;
  }
  backup.pop_back();  // yh names the folder without its last slash

  std::printf("%s\n%s\n", backup.c_str(), yh.c_str());
  if (limited) return bench::CheckUnderLimit(yh, backup, limitMb) ? 0 : 1;
  return TimeRounds(yh, backup, argc >= 3 ? std::max(1, std::atoi(argv[2])) : 5);
}
