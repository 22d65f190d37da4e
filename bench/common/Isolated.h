#ifndef YH_BENCH_COMMON_ISOLATED_H
#define YH_BENCH_COMMON_ISOLATED_H

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <type_traits>

namespace bench {

// Waits for a child process; `peakMb` gets its peak resident memory. True
// when it exited with 0.
inline bool Reap(pid_t child, double* peakMb) {
  int status = 0;
  struct rusage usage {};
  if (wait4(child, &status, 0, &usage) != child) return false;
  *peakMb = static_cast<double>(usage.ru_maxrss) / 1024.0;  // kilobytes on Linux
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Runs `work(&result)` in a child process, so that each round starts from a
// fresh heap and its peak resident memory is its own. Returns false when the
// child fails; `peakMb` gets the child's peak resident memory.
template <class Result, class Work>
bool RunIsolated(Work work, Result* result, double* peakMb) {
  static_assert(std::is_trivially_copyable_v<Result>, "the result crosses a pipe as bytes");
  int ends[2];
  if (pipe(ends) != 0) return false;
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    close(ends[0]);
    Result mine{};
    const bool ok = work(&mine);
    const bool sent = write(ends[1], &mine, sizeof mine) == static_cast<ssize_t>(sizeof mine);
    _exit(ok && sent ? 0 : 1);
  }
  close(ends[1]);
  const bool received = read(ends[0], result, sizeof *result) == static_cast<ssize_t>(sizeof *result);
  close(ends[0]);
  const bool exited = Reap(child, peakMb);
  return received && exited;
}

}  // namespace bench

#endif
