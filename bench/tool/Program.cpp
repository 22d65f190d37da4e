#include "Program.h"

#include <fcntl.h>
#include <unistd.h>

#include "Isolated.h"
#include "Stopwatch.h"

namespace bench {

ProgramRun RunProgram(const std::vector<std::string>& args) {
  std::vector<char*> argv;
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  ProgramRun run;
  run.ms = Milliseconds([&] {
    const pid_t child = fork();
    if (child < 0) return;
    if (child == 0) {
      const int null = open("/dev/null", O_WRONLY);
      if (null < 0 || dup2(null, STDOUT_FILENO) < 0 || dup2(null, STDERR_FILENO) < 0) _exit(127);
      execv(argv[0], argv.data());
      _exit(127);
    }
    run.ok = Reap(child, &run.peakMb);
  });
  return run;
}

}  // namespace bench
