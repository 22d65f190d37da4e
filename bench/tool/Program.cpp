#include "Program.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "Isolated.h"
#include "Stopwatch.h"

namespace bench {

namespace {

// Makes `stream` write to `path`, created or truncated.
bool Redirect(int stream, const char* path) {
  const int fd = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (fd < 0) return false;
  const bool moved = dup2(fd, stream) >= 0;
  close(fd);
  return moved;
}

// In the child, before exec: false when the output or the limit cannot be set.
bool Prepare(const RunOptions& options) {
  if (!Redirect(STDOUT_FILENO, options.output.empty() ? "/dev/null" : options.output.c_str())) return false;
  if (!Redirect(STDERR_FILENO, "/dev/null")) return false;
  if (options.limitMb <= 0) return true;
  const auto bytes = static_cast<rlim_t>(options.limitMb * 1024 * 1024);
  const struct rlimit limit {bytes, bytes};
  return setrlimit(RLIMIT_AS, &limit) == 0;
}

}  // namespace

ProgramRun RunProgram(const std::vector<std::string>& args, const RunOptions& options) {
  std::vector<char*> argv;
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  ProgramRun run;
  run.ms = Milliseconds([&] {
    const pid_t child = fork();
    if (child < 0) return;
    if (child == 0) {
      if (!Prepare(options)) _exit(127);
      execvp(argv[0], argv.data());
      _exit(127);
    }
    run.ok = Reap(child, &run.peakMb);
  });
  return run;
}

}  // namespace bench
