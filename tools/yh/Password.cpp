#include "Password.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <iostream>

#include "Failure.h"
#include "libYH.h"
#include "platform/Terminal.h"

namespace yh {
namespace {

std::string FromFile(const std::string& path, const std::string& backup) {
  std::ifstream in(std::filesystem::u8path(path), std::ios::binary);
  if (!in) throw Failure("backup " + backup + ": cannot read the password file " + path);
  std::string password;
  std::getline(in, password);
  if (!password.empty() && password.back() == '\r') password.pop_back();
  return password;
}

std::string FromTerminal(const std::string& backup) {
  std::cerr << "Password for backup " << backup << ": " << std::flush;
  std::optional<std::string> password = platform::ReadHiddenLine();
  std::cerr << '\n';
  return password.value_or("");
}

}  // namespace

std::string BackupPassword(const std::string& passwordFile, const std::string& backup) {
  if (!passwordFile.empty()) return FromFile(passwordFile, backup);
  if (const char* fromEnvironment = std::getenv("YH_BACKUP_PASSWORD")) return fromEnvironment;
  if (!platform::IsTerminal(platform::Stream::Input)) {
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
