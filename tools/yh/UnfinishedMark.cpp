#include "UnfinishedMark.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "Failure.h"
#include "FileIo.h"
#include "TerminalText.h"

namespace yh {
namespace {

namespace fs = std::filesystem;

// Paths are UTF-8 on every system, hence fs::u8path.
bool IsEmpty(const std::string& folder) {
  std::error_code error;
  return fs::is_empty(fs::u8path(folder), error) && !error;
}

std::string MarkText(const std::string& path) {
  std::error_code error;
  const fs::path mark = fs::u8path(path + "/" + UnfinishedMark::kName);
  if (!fs::is_regular_file(fs::symlink_status(mark, error))) return "";
  std::ifstream in(mark, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Why `out` may not be written, with the ways out; "" when it may.
std::string Refusal(const std::string& out, const std::string& command, const std::string& backup, bool resume) {
  std::error_code error;
  if (!fs::is_directory(fs::u8path(out), error)) return "";  // made, or found unwritable, when opened
  const std::string folder = "--out " + Printable(out);
  const std::string mark = MarkText(out);
  if (mark.empty()) {
    if (IsEmpty(out)) return "";
    return folder + " is not empty and holds no interrupted " + command +
           "; give a new or empty folder (--resume only finishes an interrupted " + command + ")";
  }
  if (mark != UnfinishedMark::Text(command, backup)) {
    return folder + " holds an interrupted run of another command or backup; give a new or empty folder";
  }
  if (resume) return "";
  return folder + " holds an interrupted " + command + "; run the same command with --resume to finish it, " +
         "or give a new or empty folder";
}

}  // namespace

const char UnfinishedMark::kName[] = "yh-incomplete.txt";

std::string UnfinishedMark::Text(const std::string& command, const std::string& backup) {
  return "This folder is incomplete: yh " + command + " was interrupted while writing it.\n" +
         "Run the same command again with --resume to finish it; nothing is copied twice.\n\n" +
         "command: " + command + "\nbackup: " + backup + "\n";
}

UnfinishedMark::UnfinishedMark(const std::string& out, const std::string& command, const std::string& backup,
                               bool resume)
    : folder_([&] {
        const std::string refusal = Refusal(out, command, backup, resume);
        if (!refusal.empty()) throw Failure(refusal);
        return OutputFolder::Open(out);
      }()),
      resumed_(folder_.Holds(kName)) {
  const std::string name = folder_.Reserve(kName);
  if (resumed_) {
    OutputFolder::RemoveLeftovers(out);
    return;
  }
  OutputFolder::NewFile file = folder_.Create(name);
  WriteAll(file.Fd(), Text(command, backup), file.Path());
  file.Keep();
}

void UnfinishedMark::Finish() { folder_.Remove(kName); }

}  // namespace yh
