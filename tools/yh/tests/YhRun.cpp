#include "YhRun.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>

extern char** environ;

namespace yhtool {
namespace {

std::vector<std::string> Environment(const std::vector<std::string>& changes) {
  std::vector<std::string> env;
  for (char** entry = environ; *entry; ++entry) env.emplace_back(*entry);
  for (const std::string& change : changes) {
    const std::string name = change.substr(0, change.find('=') + 1);
    for (auto it = env.begin(); it != env.end();) it = it->compare(0, name.size(), name) == 0 ? env.erase(it) : it + 1;
    env.push_back(change);
  }
  return env;
}

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

const char kOldSample[] = "5d2f3b8e9a1c4d7f6e0b2a9c8d7e6f5a4b3c2d1e";
const char kNewSample[] = "00008101-001C24E83A91401E";

YhResult Yh(const std::vector<std::string>& args, const std::vector<std::string>& env) {
  std::vector<std::string> argv{YH_COMMAND};
  argv.insert(argv.end(), args.begin(), args.end());
  std::vector<std::string> changes{"TZ=UTC"};
  changes.insert(changes.end(), env.begin(), env.end());
  std::vector<std::string> envp = Environment(changes);
  std::vector<char*> argPointers = Pointers(argv);
  std::vector<char*> envPointers = Pointers(envp);

  int outPipe[2];
  int errPipe[2];
  YhResult run;
  if (pipe(outPipe) != 0 || pipe(errPipe) != 0) return run;
  const pid_t child = fork();
  if (child == 0) {
    dup2(outPipe[1], STDOUT_FILENO);
    dup2(errPipe[1], STDERR_FILENO);
    for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) close(fd);
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

std::string OutOf(const YhResult& run) {
  EXPECT_EQ(run.code, 0) << run.err;
  return run.out;
}

std::string Samples() { return YH_SAMPLE_BACKUPS; }

yh::Plist Answer(const std::string& path, int contentType, bool classic) {
  setenv("TZ", "UTC", 1);
  tzset();
  const yh::Library library(classic);
  const yh::DeviceList list = library.List(path);
  if (list.Devices().size() != 1 || !library.Analyze(*list.Devices().front())) return yh::Plist();
  return library.Content(*list.Devices().front(), contentType);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

::testing::AssertionResult Contains(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos)
    return ::testing::AssertionSuccess() << "\"" << text << "\" holds \"" << part << "\"";
  return ::testing::AssertionFailure() << "\"" << text << "\" does not hold \"" << part << "\"";
}

nlohmann::ordered_json WithoutCopyPaths(nlohmann::ordered_json json) {
  if (json.is_object()) {
    json.erase("exported_path");
    json.erase("preview_path");
  }
  if (json.is_structured()) {
    for (auto& item : json) item = WithoutCopyPaths(std::move(item));
  }
  return json;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace yhtool
