#ifndef YH_COMMON_PLISTDICTENTRIES_H
#define YH_COMMON_PLISTDICTENTRIES_H

#include <plist/plist.h>

#include <string>

// Walks a dictionary's entries in their stored order.
class PlistDictEntries {
 public:
  explicit PlistDictEntries(plist_t dict);
  ~PlistDictEntries();
  PlistDictEntries(const PlistDictEntries&) = delete;
  PlistDictEntries& operator=(const PlistDictEntries&) = delete;

  // The next entry's key and value; false after the last one.
  bool Next(std::string* key, plist_t* value);

 private:
  plist_t dict_;
  plist_dict_iter iter_ = nullptr;
};

#endif
