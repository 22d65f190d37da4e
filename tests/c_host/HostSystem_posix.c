#define _GNU_SOURCE
#include "HostSystem.h"

#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>

int MakeTemporaryRoot(char* root, size_t size) {
  snprintf(root, size, "/tmp/yh-c-host-XXXXXX");
  return mkdtemp(root) ? 0 : -1;
}

int MakeFolder(const char* path) { return mkdir(path, 0755); }

int MakeDefaultLocation(const char* root, char* folder, size_t size) {
  snprintf(folder, size, "%s/MobileSync", root);
  if (MakeFolder(folder) != 0) return -1;
  snprintf(folder, size, "%s/MobileSync/Backup", root);
  if (MakeFolder(folder) != 0) return -1;
  return setenv("XDG_DATA_HOME", root, 1);
}

int RemoveRoot(const char* root) {
  char command[600];
  snprintf(command, sizeof command, "rm -rf '%s'", root);
  return system(command);
}
