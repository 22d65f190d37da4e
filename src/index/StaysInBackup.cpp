#include "index/StaysInBackup.h"

bool StaysInBackup(std::string_view fileId) {
  return fileId.find_first_of("/\\") == std::string_view::npos && fileId.substr(0, 2) != "..";
}
