#ifndef YH_PLATFORM_TERMINAL_H
#define YH_PLATFORM_TERMINAL_H

#include <optional>
#include <string>
#include <vector>

// What a command-line program asks of its terminal and its command line.
namespace platform {

// The program's arguments as UTF-8, the program's name first. POSIX systems
// give argv as it is; Windows reads the UTF-16 command line, whatever the
// code page.
std::vector<std::string> CommandLineArguments(int argc, char** argv);

// Makes the standard streams carry bytes as written (no "\r" added on
// Windows) and lets a Windows console show UTF-8 and "\x1b[" sequences.
void PrepareStandardStreams();

enum class Stream { Input, Output, Error };
// Whether the stream is a terminal (a console on Windows).
bool IsTerminal(Stream stream);

// One line typed at the terminal without showing it, as UTF-8 and without
// its line end; nothing when standard input is not a terminal.
std::optional<std::string> ReadHiddenLine();

}  // namespace platform

#endif
