/* What the C host test asks of the operating system, one file per system. */
#ifndef YH_TESTS_C_HOST_HOSTSYSTEM_H
#define YH_TESTS_C_HOST_HOSTSYSTEM_H

#include <stddef.h>

/* A new empty folder for the test; 0 on success. */
int MakeTemporaryRoot(char* root, size_t size);
/* Makes the folder where the sync software keeps backups below `root`, points
 * the user's default location there and writes its path to `folder`; 0 on
 * success. */
int MakeDefaultLocation(const char* root, char* folder, size_t size);
int MakeFolder(const char* path);
/* Removes the folder and everything in it; 0 on success. */
int RemoveRoot(const char* root);

#endif
