#ifndef YH_BENCH_COMMON_STOPWATCH_H
#define YH_BENCH_COMMON_STOPWATCH_H

#include <chrono>

namespace bench {

// Milliseconds that `work` takes on the wall clock.
template <class Work>
double Milliseconds(Work work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace bench

#endif
