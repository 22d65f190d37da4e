#include "RunProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "YhRun.h"

extern char** environ;

namespace yhtool {
namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Reads both pipes to their ends, whichever has data first.
void Drain(int outFd, int errFd, YhResult& run) {
  pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
  std::string* sinks[2] = {&run.out, &run.err};
  int open = 2;
  while (open > 0) {
    if (poll(fds, 2, -1) < 0) return;
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP))) continue;
      char buffer[4096];
      const ssize_t got = read(fds[i].fd, buffer, sizeof buffer);
      if (got > 0) {
        sinks[i]->append(buffer, static_cast<size_t>(got));
      } else {
        close(fds[i].fd);
        fds[i].fd = -1;
        --open;
      }
    }
  }
}

}  // namespace

std::vector<std::string> CurrentEnvironment() {
  std::vector<std::string> env;
  for (char** entry = environ; *entry; ++entry) env.emplace_back(*entry);
  return env;
}

YhResult RunProcess(const std::vector<std::string>& argv, const std::vector<std::string>& env) {
  std::vector<std::string> args = argv;
  std::vector<std::string> envp = env;
  std::vector<char*> argPointers = Pointers(args);
  std::vector<char*> envPointers = Pointers(envp);

  int outPipe[2];
  int errPipe[2];
  YhResult run;
  if (pipe(outPipe) != 0 || pipe(errPipe) != 0) return run;
  const pid_t child = fork();
  if (child == 0) {
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    dup2(outPipe[1], STDOUT_FILENO);
    dup2(errPipe[1], STDERR_FILENO);
    for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1], nothing}) close(fd);
    execve(argPointers[0], argPointers.data(), envPointers.data());
    _exit(127);
  }
  close(outPipe[1]);
  close(errPipe[1]);
  Drain(outPipe[0], errPipe[0], run);
  int status = 0;
  waitpid(child, &status, 0);
  run.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return run;
}

}  // namespace yhtool
