#include "platform/Folder.h"

#include "platform/FileSystem.h"

// Windows resolves each path from the root: there is no handle to search
// below, so every name is tested by its full path.
Folder::Folder(const std::string& path) : path_(path) {}

Folder::~Folder() = default;

bool Folder::Has(const std::string& name, Entry* entry) const { return Stat(name.c_str(), false, entry); }

bool Folder::Has(const char* name, Entry* entry) const { return Stat(name, false, entry); }

bool Folder::Stat(const char* name, bool, Entry* entry) const {
  platform::PathInfo info;
  if (!platform::Stat(path_ + name, &info)) return false;
  if (entry) *entry = {info.size, info.regular};
  return true;
}
