#include "RunProcess.h"

#include <windows.h>

#include <thread>

#include "YhRun.h"
#include "platform/windows/Wide.h"

namespace yhtool {
namespace {

// One argument as the C runtime's command-line parser reads it back:
// quoted, with backslashes doubled before a quote.
std::wstring Quoted(const std::wstring& argument) {
  std::wstring quoted = L"\"";
  size_t backslashes = 0;
  for (wchar_t unit : argument) {
    if (unit == L'\\') {
      ++backslashes;
      continue;
    }
    quoted.append(unit == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
    backslashes = 0;
    quoted.push_back(unit);
  }
  quoted.append(backslashes * 2, L'\\');
  return quoted + L"\"";
}

void ReadAll(HANDLE pipe, std::string* sink) {
  char buffer[4096];
  DWORD got = 0;
  while (::ReadFile(pipe, buffer, sizeof buffer, &got, nullptr) && got > 0) sink->append(buffer, got);
  CloseHandle(pipe);
}

}  // namespace

std::vector<std::string> CurrentEnvironment() {
  std::vector<std::string> env;
  wchar_t* block = GetEnvironmentStringsW();
  for (const wchar_t* entry = block; entry && *entry; entry += wcslen(entry) + 1) {
    if (entry[0] != L'=') env.push_back(platform::Narrow(entry));  // "=C:=C:\..." are the shell's
  }
  FreeEnvironmentStringsW(block);
  return env;
}

YhResult RunProcess(const std::vector<std::string>& argv, const std::vector<std::string>& env) {
  YhResult run;
  std::wstring commandLine;
  for (const std::string& argument : argv) commandLine += (commandLine.empty() ? L"" : L" ") + Quoted(platform::Wide(argument));
  std::wstring block;
  for (const std::string& entry : env) block += platform::Wide(entry) + L'\0';
  block += L'\0';

  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE outRead, outWrite, errRead, errWrite;
  if (!CreatePipe(&outRead, &outWrite, &inherited, 0)) return run;
  if (!CreatePipe(&errRead, &errWrite, &inherited, 0)) return run;
  SetHandleInformation(outRead, HANDLE_FLAG_INHERIT, 0);
  SetHandleInformation(errRead, HANDLE_FLAG_INHERIT, 0);
  HANDLE nothing = CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);

  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = nothing;
  startup.hStdOutput = outWrite;
  startup.hStdError = errWrite;
  PROCESS_INFORMATION process{};
  const BOOL started = CreateProcessW(platform::Wide(argv.at(0)).c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                                      CREATE_UNICODE_ENVIRONMENT | CREATE_NO_WINDOW, block.data(), nullptr, &startup,
                                      &process);
  CloseHandle(outWrite);
  CloseHandle(errWrite);
  CloseHandle(nothing);
  std::thread errors(ReadAll, errRead, &run.err);
  ReadAll(outRead, &run.out);
  errors.join();
  if (!started) return run;
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 0;
  if (GetExitCodeProcess(process.hProcess, &code)) run.code = static_cast<int>(code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return run;
}

}  // namespace yhtool
