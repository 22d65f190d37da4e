#ifndef YH_BENCH_COMMON_RESIDENT_H
#define YH_BENCH_COMMON_RESIDENT_H

#include <unistd.h>

#include <fstream>

namespace bench {

// The resident memory of this process now, in MB (Linux: /proc/self/statm);
// 0 when it cannot be read.
inline double ResidentMb() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0;
  long resident = 0;
  if (!(statm >> pages >> resident)) return 0;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

}  // namespace bench

#endif
