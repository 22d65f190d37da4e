#include "HostSystem.h"

#include <direct.h>
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

int MakeTemporaryRoot(char* root, size_t size) {
  char base[MAX_PATH];
  if (!GetTempPathA(sizeof base, base)) return -1;
  snprintf(root, size, "%syh-c-host-%lu", base, (unsigned long)GetCurrentProcessId());
  return _mkdir(root);
}

int MakeFolder(const char* path) { return _mkdir(path); }

/* The classic install's folder below %APPDATA%. */
int MakeDefaultLocation(const char* root, char* folder, size_t size) {
  snprintf(folder, size, "%s\\Apple Computer", root);
  if (MakeFolder(folder) != 0) return -1;
  snprintf(folder, size, "%s\\Apple Computer\\MobileSync", root);
  if (MakeFolder(folder) != 0) return -1;
  snprintf(folder, size, "%s\\Apple Computer\\MobileSync\\Backup", root);
  if (MakeFolder(folder) != 0) return -1;
  if (_putenv_s("USERPROFILE", root) != 0) return -1;
  return _putenv_s("APPDATA", root);
}

int RemoveRoot(const char* root) {
  char command[600];
  snprintf(command, sizeof command, "rmdir /s /q \"%s\"", root);
  return system(command);
}
