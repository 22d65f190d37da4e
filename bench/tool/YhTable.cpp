#include "YhTable.h"

#include <cstdio>
#include <string>

#include "Rounds.h"

namespace bench {

namespace {

const double kMaxTimeRatio = 1.2;
const double kPeakRatio = 1.5;
const double kPeakAllowanceMb = 40;

std::string Shown(const Spread& spread) {
  char text[64];
  std::snprintf(text, sizeof text, "%8.0f (%.0f-%.0f)", spread.median, spread.least, spread.most);
  return text;
}

// A run's time and peak over the rounds, `run` picking it from a round.
template <class Run>
void PrintFigures(const char* name, const std::vector<YhRound>& rounds, Run run) {
  std::printf("%-30s %22s %22s", name, Shown(SpreadOf(rounds, [&](const YhRound& r) { return run(r).ms; })).c_str(),
              Shown(SpreadOf(rounds, [&](const YhRound& r) { return run(r).peakMb; })).c_str());
}

}  // namespace

void PrintYhTable(const std::vector<YhRound>& rounds) {
  const double libraryMs = MedianOf(rounds, [](const YhRound& r) { return r.library.ms; });
  const double copyBaseMs = MedianOf(rounds, [](const YhRound& r) { return r.library.ms + r.copy.ms; });
  const double peakLimitMb =
      kPeakRatio * MedianOf(rounds, [](const YhRound& r) { return r.analysis.peakMb; }) + kPeakAllowanceMb;

  std::printf("median of %zu rounds (least-most)\n", rounds.size());
  std::printf("%-30s %22s %22s  %-23s%5s\n", "", "milliseconds", "peak MB", "time / base", "peak");
  PrintFigures("library, AnalyzeBackup alone", rounds, [](const YhRound& r) { return r.analysis; });
  std::printf("\n");
  PrintFigures("library, array answers", rounds, [](const YhRound& r) { return r.library; });
  std::printf("\n");
  PrintFigures("cp -r of the exported media", rounds, [](const YhRound& r) { return r.copy; });
  std::printf("\n");
  for (size_t i = 0; i < YhRunNames().size(); ++i) {
    PrintFigures(YhRunNames()[i].c_str(), rounds, [i](const YhRound& r) { return r.yh[i]; });
    const double time = MedianOf(rounds, [i](const YhRound& r) { return r.yh[i].ms; }) /
                        (CopiesMedia(i) ? copyBaseMs : libraryMs);
    const double peak = MedianOf(rounds, [i](const YhRound& r) { return r.yh[i].peakMb; });
    std::printf("  %5.2f %-16s %5.0f %s\n", time, Verdict(time <= kMaxTimeRatio), peak,
                Verdict(peak <= peakLimitMb));
  }
  std::printf("targets: time <= %.2f x the library's array answers (yh export and report: x the array answers + cp -r "
              "of the media); peak <= %.1f x AnalyzeBackup's + %.0f MB = %.0f MB\n",
              kMaxTimeRatio, kPeakRatio, kPeakAllowanceMb, peakLimitMb);
}

}  // namespace bench
