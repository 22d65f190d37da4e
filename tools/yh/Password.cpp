#include "Password.h"

#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "Failure.h"
#include "libYH.h"

namespace yh {
namespace {

std::string FromFile(const std::string& path, const std::string& backup) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Failure("backup " + backup + ": cannot read the password file " + path);
  std::string password;
  std::getline(in, password);
  if (!password.empty() && password.back() == '\r') password.pop_back();
  return password;
}

// Echo stays off only while the line is read.
std::string FromTerminal(const std::string& backup) {
  std::cerr << "Password for backup " << backup << ": " << std::flush;
  termios saved{};
  const bool terminal = tcgetattr(STDIN_FILENO, &saved) == 0;
  if (terminal) {
    termios quiet = saved;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
  }
  std::string password;
  std::getline(std::cin, password);
  if (terminal) tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
  std::cerr << '\n';
  return password;
}

}  // namespace

std::string BackupPassword(const std::string& passwordFile, const std::string& backup) {
  if (!passwordFile.empty()) return FromFile(passwordFile, backup);
  if (const char* fromEnvironment = std::getenv("YH_BACKUP_PASSWORD")) return fromEnvironment;
  if (isatty(STDIN_FILENO) != 1) {
    throw Failure("backup " + backup +
                  " is encrypted: give its password with --password-file FILE or the YH_BACKUP_PASSWORD "
                  "environment variable");
  }
  return FromTerminal(backup);
}

std::string UnlockProblem(int32_t result) {
  switch (result) {
    case YHWrongPassword: return "wrong password";
    case YHNotEncrypted: return "the backup is not encrypted";
    case YHKeyBagDamaged: return "the key bag of Manifest.plist is missing or damaged";
    case YHNoBackup: return "no readable index";
    case YHOutputNotEmpty: return "the output folder is not empty";
    default: return "the copy could not be written";
  }
}

void Wipe(std::string* text) {
  volatile char* bytes = text->data();
  for (size_t i = 0; i < text->size(); ++i) bytes[i] = 0;
  text->clear();
}

}  // namespace yh
