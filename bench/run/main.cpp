// Times the library on a backup written by yh_bench_backup, against the floor
// of the same backup measured in the same run: yh_bench FOLDER [ROUNDS].
// Every figure is the median of ROUNDS rounds (3 unless given); each round
// runs the library twice, each time in a child process of its own: once
// timed, once copying every answer to time libplist alone.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "BackupFolder.h"
#include "Floor.h"
#include "Isolated.h"
#include "Library.h"
#include "Rounds.h"

namespace {

using bench::FloorTimes;
using bench::kContentTypes;
using bench::LibraryTimes;
using bench::MedianOf;
using bench::Verdict;

const char* const kTypeNames[kContentTypes] = {"call history", "contacts",        "messages",      "attachments",
                                               "notes",        "Safari",          "events",        "reminders",
                                               "recordings",   "camera pictures", "other pictures"};
// Messages and notes read their databases again on every request.
bool Rereads(int type) { return type == 2 || type == 4; }

const double kMaxRatio = 1.5;
const double kMaxCurrentRatio = 1.2;  // the current service against the described one
const double kMaxLaterRequestMs = 200;
const double kMaxPeakMb = 400;

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: yh_bench FOLDER [ROUNDS]\n");
    return 2;
  }
  const std::string folder = argv[1];
  const int roundCount = argc == 3 ? std::max(1, std::atoi(argv[2])) : 3;
  const std::string backup = bench::BackupIn(folder);
  if (backup.empty()) {
    std::fprintf(stderr, "no backup in %s\n", folder.c_str());
    return 1;
  }

  std::vector<FloorTimes> floors;
  std::vector<LibraryTimes> runs;
  std::vector<LibraryTimes> currentRuns;
  double peakMb = 0;
  double currentPeakMb = 0;
  for (int round = 0; round < roundCount; ++round) {
    floors.push_back(bench::MeasureFloor(backup));
    runs.emplace_back();
    LibraryTimes copied;
    double roundPeakMb = 0;
    double copiedPeakMb = 0;
    currentRuns.emplace_back();
    double currentRoundPeakMb = 0;
    const auto measure = [&folder](bench::Service service, bool copyAnswers) {
      return [&folder, service, copyAnswers](LibraryTimes* times) {
        return bench::MeasureLibrary(folder, service, copyAnswers, times);
      };
    };
    if (!bench::RunIsolated(measure(bench::Service::Described, false), &runs.back(), &roundPeakMb) ||
        !bench::RunIsolated(measure(bench::Service::Described, true), &copied, &copiedPeakMb) ||
        !bench::RunIsolated(measure(bench::Service::Current, false), &currentRuns.back(), &currentRoundPeakMb)) {
      std::fprintf(stderr, "the library could not analyse %s\n", backup.c_str());
      return 1;
    }
    runs.back().answerTrees = copied.answerTrees;
    peakMb = std::max(peakMb, roundPeakMb);
    currentPeakMb = std::max(currentPeakMb, currentRoundPeakMb);
  }

  std::printf("%s\nmedian of %d rounds, milliseconds\n", backup.c_str(), roundCount);
  std::printf("%-36s %9.1f\n", "discovery", MedianOf(runs, [](auto& r) { return r.discovery; }));
  std::printf("%-36s %9.1f\n", "AnalyzeBackup", MedianOf(runs, [](auto& r) { return r.analysis; }));
  bool laterRequestsMet = true;
  for (int type = 0; type < kContentTypes; ++type) {
    const double first = MedianOf(runs, [type](auto& r) { return r.first[type]; });
    const double second = MedianOf(runs, [type](auto& r) { return r.second[type]; });
    if (!Rereads(type) && second >= kMaxLaterRequestMs) laterRequestsMet = false;
    std::printf("%2d %-16s first %8.1f  second %8.1f  %7zu entries\n", type, kTypeNames[type], first, second,
                runs.front().items[type]);
  }
  const double total = MedianOf(runs, [](auto& r) { return r.Total(); });
  std::printf("%-36s %9.1f\n", "library total", total);

  std::printf("%-36s %9.1f\n", "floor: index listing + existence", MedianOf(floors, [](auto& f) { return f.listing; }));
  for (const auto& kind : floors.front().byKind) {
    const std::string label = "floor: " + kind.first + " queries";
    std::printf("%-36s %9.1f\n", label.c_str(), MedianOf(floors, [&](auto& f) { return f.byKind.at(kind.first); }));
  }
  const double floorOnce = MedianOf(floors, [](auto& f) { return f.Total(); });
  const double floorTwice = MedianOf(floors, [](auto& f) { return f.TotalForTwoRequests(); });
  std::printf("%-36s %9.1f\n", "floor total, each query once", floorOnce);
  std::printf("%-36s %9.1f\n", "floor total, as two requests need", floorTwice);
  std::printf("%-36s %9.2f  (target <= %.1f: %s)\n", "ratio to the floor, queries once", total / floorOnce, kMaxRatio,
              Verdict(total / floorOnce <= kMaxRatio));
  std::printf("%-36s %9.2f  (messages, notes, Safari queried twice: %s)\n", "ratio to the floor, as requested",
              total / floorTwice, Verdict(total / floorTwice <= kMaxRatio));
  // No reader can hand over the answers without making their trees; this
  // shows how much of the distance to the floor that alone accounts for.
  const double trees = MedianOf(runs, [](auto& r) { return r.answerTrees; });
  std::printf("%-36s %9.1f\n", "answer trees made by libplist alone", trees);
  std::printf("%-36s %9.2f\n", "ratio to floor as requested + trees", total / (floorTwice + trees));
  std::printf("%-36s %9s  (target < %.0f ms but messages, notes: %s)\n", "later requests", "", kMaxLaterRequestMs,
              Verdict(laterRequestsMet));
  std::printf("%-36s %9.1f  (target < %.0f MB: %s)\n", "peak resident memory, MB", peakMb, kMaxPeakMb,
              Verdict(peakMb < kMaxPeakMb));

  std::printf("current service\n");
  for (int type = 0; type < kContentTypes; ++type) {
    std::printf("%2d %-16s first %8.1f  second %8.1f  %7zu entries\n", type, kTypeNames[type],
                MedianOf(currentRuns, [type](auto& r) { return r.first[type]; }),
                MedianOf(currentRuns, [type](auto& r) { return r.second[type]; }), currentRuns.front().items[type]);
  }
  const double currentTotal = MedianOf(currentRuns, [](auto& r) { return r.Total(); });
  std::printf("%-36s %9.1f\n", "current service total", currentTotal);
  std::printf("%-36s %9.2f  (target <= %.1f: %s)\n", "current / described total", currentTotal / total,
              kMaxCurrentRatio, Verdict(currentTotal / total <= kMaxCurrentRatio));
  std::printf("%-36s %9.1f\n", "current service peak memory, MB", currentPeakMb);
  return 0;
}
