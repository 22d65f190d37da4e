// Writes the sample backups that the README runs yh on into
// FOLDER/MobileSync/Backup, and the hostile backup of the report's tests into
// FOLDER/hostile.
#include <filesystem>
#include <iostream>

#include "Samples.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: yh_make_samples FOLDER\n";
    return 2;
  }
  const std::filesystem::path backups = std::filesystem::path(argv[1]) / "MobileSync" / "Backup";
  // Databases are written by running SQL, so old files must go first.
  std::filesystem::remove_all(backups);
  samples::WriteIPhone5Backup(backups.string());
  samples::WriteIPhone12Backup(backups.string());
  const std::filesystem::path hostile = std::filesystem::path(argv[1]) / "hostile";
  std::filesystem::remove_all(hostile);
  samples::WriteHostileBackup(hostile.string());
  return 0;
}
