// Times the library on a backup written by yh_bench_backup, against the floor
// of the same backup measured in the same run: yh_bench FOLDER [ROUNDS].
// Every figure is the median of ROUNDS rounds (5 unless given), with the
// spread of the rounds; each round runs each service twice, each time in a
// child process of its own: once timed, once copying every answer to time
// libplist alone.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "BackupFolder.h"
#include "Floor.h"
#include "Isolated.h"
#include "Library.h"
#include "RecordedQueries.h"
#include "Rounds.h"
#include "Stopwatch.h"

namespace {

using bench::FloorTimes;
using bench::kContentTypes;
using bench::LibraryTimes;
using bench::Service;
using bench::Spread;
using bench::SpreadOf;
using bench::Verdict;

const char* const kTypeNames[kContentTypes] = {
    "call history", "contacts",   "messages",        "attachments",    "notes",     "Safari",         "events",
    "reminders",    "recordings", "camera pictures", "other pictures", "voicemail", "WhatsApp chats", "WhatsApp calls"};

// The library against what no reader can avoid: the floor of the requests
// made plus making the answers' trees.
const double kMaxRatio = 1.15;
const double kMaxAnalysisRatio = 1.3;  // AnalyzeBackup against listing the index
const double kMaxPeakMb = 200;
// The current service's peak against what it must hold at once: the largest
// answer's tree beside the analysed index.
const double kPeakAllowanceMb = 25;

void PrintFigure(const char* label, const Spread& spread, const char* unit = "") {
  std::printf("%-40s %9.1f%s  (%.1f to %.1f)\n", label, spread.median, unit, spread.least, spread.most);
}

void PrintRatio(const char* label, const Spread& spread, double target, bool below = false) {
  const bool met = below ? spread.median < target : spread.median <= target;
  std::printf("%-40s %9.2f  (%.2f to %.2f; target %s %.2f: %s)\n", label, spread.median, spread.least, spread.most,
              below ? "<" : "<=", target, Verdict(met));
}

// What one round measured of one service.
struct ServiceRound {
  LibraryTimes timed;
  double trees = 0;
  double floorAsRequested = 0;
  double listing = 0;
  double peakMb = 0;
  // WhatsApp's two kinds alone: the floor of their databases' queries and
  // the trees of their answers.
  double whatsAppFloor = 0;
  double whatsAppTrees = 0;
  // Resident MB: the analysed index, and the largest copy of an answer.
  double indexMb = 0;
  double largestTreeMb = 0;
  int largestTreeType = 0;
  double Ratio() const { return timed.Total() / (floorAsRequested + trees); }
  double WhatsApp() const {
    double library = 0;
    for (int type : {ContentWhatsApp, ContentWhatsAppCalls}) library += timed.first[type] + timed.second[type];
    return library;
  }
  double WhatsAppRatio() const { return WhatsApp() / (whatsAppFloor + whatsAppTrees); }
};

void PrintService(const char* name, const std::vector<ServiceRound>& rounds) {
  std::printf("\n%s service\n", name);
  PrintFigure("discovery", SpreadOf(rounds, [](auto& r) { return r.timed.discovery; }));
  PrintFigure("AnalyzeBackup", SpreadOf(rounds, [](auto& r) { return r.timed.analysis; }));
  for (int type = 0; type < kContentTypes; ++type) {
    std::printf("%2d %-16s first %8.1f  second %8.1f  %7zu entries\n", type, kTypeNames[type],
                SpreadOf(rounds, [type](auto& r) { return r.timed.first[type]; }).median,
                SpreadOf(rounds, [type](auto& r) { return r.timed.second[type]; }).median,
                rounds.front().timed.items[type]);
  }
  PrintFigure("library total", SpreadOf(rounds, [](auto& r) { return r.timed.Total(); }));
  PrintFigure("floor as requested", SpreadOf(rounds, [](auto& r) { return r.floorAsRequested; }));
  PrintFigure("answer trees made by libplist alone", SpreadOf(rounds, [](auto& r) { return r.trees; }));
  PrintRatio("ratio to floor as requested + trees", SpreadOf(rounds, [](auto& r) { return r.Ratio(); }), kMaxRatio);
  if (rounds.front().WhatsApp() > 0 && rounds.front().whatsAppFloor > 0) {
    PrintFigure("WhatsApp kinds: library", SpreadOf(rounds, [](auto& r) { return r.WhatsApp(); }));
    PrintFigure("WhatsApp kinds: floor of their queries", SpreadOf(rounds, [](auto& r) { return r.whatsAppFloor; }));
    PrintFigure("WhatsApp kinds: answer trees", SpreadOf(rounds, [](auto& r) { return r.whatsAppTrees; }));
    PrintRatio("WhatsApp kinds: ratio to floor + trees", SpreadOf(rounds, [](auto& r) { return r.WhatsAppRatio(); }),
               kMaxRatio);
  }
  PrintRatio("AnalyzeBackup / index listing", SpreadOf(rounds, [](auto& r) { return r.timed.analysis / r.listing; }),
             kMaxAnalysisRatio);
  const double peak = SpreadOf(rounds, [](auto& r) { return r.peakMb; }).most;
  std::printf("%-40s %9.1f  (largest of the rounds; target <= %.0f MB: %s)\n", "peak resident memory, MB", peak,
              kMaxPeakMb, Verdict(peak <= kMaxPeakMb));
}

void PrintPeakAgainstContents(const std::vector<ServiceRound>& rounds) {
  const double peak = SpreadOf(rounds, [](auto& r) { return r.peakMb; }).most;
  const Spread index = SpreadOf(rounds, [](auto& r) { return r.indexMb; });
  const Spread tree = SpreadOf(rounds, [](auto& r) { return r.largestTreeMb; });
  PrintFigure("analysed index, resident MB", index);
  const std::string label = std::string("largest tree (") + kTypeNames[rounds.front().largestTreeType] + "), MB";
  PrintFigure(label.c_str(), tree);
  const double target = tree.median + index.median + kPeakAllowanceMb;
  std::printf("%-40s %9.1f  (target <= tree + index + %.0f = %.1f MB: %s)\n", "peak against tree + index, MB", peak,
              kPeakAllowanceMb, target, Verdict(peak <= target));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: yh_bench FOLDER [ROUNDS]\n");
    return 2;
  }
  const std::string folder = argv[1];
  const int roundCount = argc == 3 ? std::max(1, std::atoi(argv[2])) : 5;
  const std::string backup = bench::BackupIn(folder);
  if (backup.empty()) {
    std::fprintf(stderr, "no backup in %s\n", folder.c_str());
    return 1;
  }
  const auto measure = [&folder](Service service, bool copyAnswers) {
    return [&folder, service, copyAnswers](LibraryTimes* times) {
      return bench::MeasureLibrary(folder, service, copyAnswers, times);
    };
  };

  // The current service's queries follow each database's schema: its floor
  // runs again what it was seen running.
  const std::string recording = "/tmp/yh_bench_queries." + std::to_string(getpid());
  LibraryTimes ignored;
  double ignoredPeak = 0;
  const bool recorded = bench::RunIsolated(
      [&](LibraryTimes* times) {
        bench::StartRecording();
        const bool analysed = measure(Service::Current, false)(times);
        return bench::SaveQueries(bench::StopRecording(), recording) && analysed;
      },
      &ignored, &ignoredPeak);
  const bench::RecordedQueries currentQueries = bench::LoadQueries(recording);
  // Every WhatsApp table's name begins so; no other kind's does.
  const bench::RecordedQueries whatsAppQueries = bench::ConnectionsMentioning(currentQueries, "ZWA");
  std::filesystem::remove(recording);
  if (!recorded) {
    std::fprintf(stderr, "the library could not analyse %s\n", backup.c_str());
    return 1;
  }

  std::vector<FloorTimes> floors;
  std::vector<ServiceRound> described(roundCount);
  std::vector<ServiceRound> current(roundCount);
  for (int round = 0; round < roundCount; ++round) {
    const FloorTimes floor = bench::MeasureFloor(backup);
    floors.push_back(floor);
    const double replayed = bench::Milliseconds([&] { bench::ReplayQueries(currentQueries); });
    described[round].floorAsRequested = floor.TotalForTwoRequests();
    current[round].floorAsRequested = floor.listing + floor.propertyLists + replayed;
    current[round].whatsAppFloor = bench::Milliseconds([&] { bench::ReplayQueries(whatsAppQueries); });
    for (ServiceRound* service : {&described[round], &current[round]}) service->listing = floor.listing;

    const Service services[] = {Service::Described, Service::Current};
    ServiceRound* results[] = {&described[round], &current[round]};
    for (int which = 0; which < 2; ++which) {
      LibraryTimes copied;
      double copiedPeakMb = 0;
      if (!bench::RunIsolated(measure(services[which], false), &results[which]->timed, &results[which]->peakMb) ||
          !bench::RunIsolated(measure(services[which], true), &copied, &copiedPeakMb)) {
        std::fprintf(stderr, "the library could not analyse %s\n", backup.c_str());
        return 1;
      }
      results[which]->trees = copied.answerTrees;
      results[which]->indexMb = results[which]->timed.indexMb;
      results[which]->largestTreeMb = copied.largestTreeMb;
      results[which]->largestTreeType = copied.largestTreeType;
      results[which]->whatsAppTrees = copied.trees[ContentWhatsApp] + copied.trees[ContentWhatsAppCalls];
    }
  }

  std::printf("%s\nmedian of %d rounds (lowest to highest), milliseconds\n", backup.c_str(), roundCount);
  PrintFigure("floor: index listing + existence", SpreadOf(floors, [](auto& f) { return f.listing; }));
  for (const auto& kind : floors.front().byKind) {
    const std::string label = "floor: " + kind.first + " queries";
    PrintFigure(label.c_str(), SpreadOf(floors, [&](auto& f) { return f.byKind.at(kind.first); }));
  }
  PrintFigure("floor total, each query once", SpreadOf(floors, [](auto& f) { return f.Total(); }));
  std::printf("current service statements recorded: %zu on %zu connections\n", currentQueries.statements.size(),
              currentQueries.opened.size());
  PrintService("described", described);
  PrintService("current", current);
  PrintPeakAgainstContents(current);
  PrintRatio("current / described total",
             SpreadOf(current, [&](auto& r) { return r.timed.Total() / described[&r - &current[0]].timed.Total(); }),
             1.2);
  return 0;
}
