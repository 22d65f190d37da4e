// Writes the media backup of the report's browser tests into the folder
// given, in place of the one an earlier run wrote.
#include <exception>
#include <filesystem>
#include <iostream>

#include "MediaBackup.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: yh_make_media_backup FOLDER\n";
    return 2;
  }
  try {
    std::filesystem::remove_all(std::filesystem::path(argv[1]) / yhmedia::kMediaBackupFolder);
    std::cout << yhmedia::WriteMediaBackup(argv[1]) << '\n';
  } catch (const std::exception& error) {
    std::cerr << "yh_make_media_backup: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
