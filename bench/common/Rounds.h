#ifndef YH_BENCH_COMMON_ROUNDS_H
#define YH_BENCH_COMMON_ROUNDS_H

#include <algorithm>
#include <vector>

namespace bench {

// One figure over the rounds: its median, least and greatest value.
struct Spread {
  double median = 0;
  double least = 0;
  double most = 0;
};

template <class Round, class Figure>
Spread SpreadOf(const std::vector<Round>& rounds, Figure figure) {
  std::vector<double> values;
  for (const Round& round : rounds) values.push_back(figure(round));
  std::sort(values.begin(), values.end());
  return {values[values.size() / 2], values.front(), values.back()};
}

// The median over the rounds of one figure.
template <class Round, class Figure>
double MedianOf(const std::vector<Round>& rounds, Figure figure) {
  return SpreadOf(rounds, figure).median;
}

// How a figure stands against its target.
inline const char* Verdict(bool met) { return met ? "met" : "NOT MET"; }

}  // namespace bench

#endif
