#include "common/PlistDictEntries.h"

#include <cstdlib>

#include "common/PlistHelpers.h"

PlistDictEntries::PlistDictEntries(plist_t dict) : dict_(dict) { plist_dict_new_iter(dict_, &iter_); }

PlistDictEntries::~PlistDictEntries() { std::free(iter_); }

bool PlistDictEntries::Next(std::string* key, plist_t* value) {
  char* name = nullptr;
  *value = nullptr;
  plist_dict_next_item(dict_, iter_, &name, value);
  if (name) {
    *key = name;
    plist_std_free(name);
  }
  return *value != nullptr;
}
