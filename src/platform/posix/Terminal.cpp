#include "platform/Terminal.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>

namespace platform {

std::vector<std::string> CommandLineArguments(int argc, char** argv) { return {argv, argv + argc}; }

void PrepareStandardStreams() {}

bool IsTerminal(Stream stream) {
  const int fd = stream == Stream::Input ? STDIN_FILENO : stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
  return isatty(fd) == 1;
}

// Echo stays off only while the line is read.
std::optional<std::string> ReadHiddenLine() {
  termios saved{};
  if (tcgetattr(STDIN_FILENO, &saved) != 0) return std::nullopt;
  termios quiet = saved;
  quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
  std::string line;
  std::getline(std::cin, line);
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
  return line;
}

}  // namespace platform
