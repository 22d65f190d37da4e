#include "platform/Terminal.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>

#include "platform/windows/Wide.h"

namespace platform {

std::vector<std::string> CommandLineArguments(int, char**) {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!wide) return arguments;
  for (int i = 0; i < count; ++i) arguments.push_back(Narrow(wide[i]));
  LocalFree(wide);
  return arguments;
}

void PrepareStandardStreams() {
  for (FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  for (DWORD which : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    const HANDLE console = GetStdHandle(which);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode)) SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  }
}

bool IsTerminal(Stream stream) {
  const DWORD which = stream == Stream::Input    ? STD_INPUT_HANDLE
                      : stream == Stream::Output ? STD_OUTPUT_HANDLE
                                                 : STD_ERROR_HANDLE;
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(which), &mode) != 0;
}

// The console gives UTF-16 whatever its code page; echo stays off only
// while the line is read.
std::optional<std::string> ReadHiddenLine() {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD saved = 0;
  if (!GetConsoleMode(input, &saved)) return std::nullopt;
  SetConsoleMode(input, (saved | ENABLE_LINE_INPUT) & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  std::wstring line;
  wchar_t unit = 0;
  DWORD read = 0;
  while (ReadConsoleW(input, &unit, 1, &read, nullptr) && read == 1 && unit != L'\n') {
    if (unit != L'\r') line.push_back(unit);
  }
  SetConsoleMode(input, saved);
  return Narrow(line);
}

}  // namespace platform
