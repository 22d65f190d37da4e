#ifndef YH_COMMON_PLISTHELPERS_H
#define YH_COMMON_PLISTHELPERS_H

#include <plist/plist.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "common/PackedTexts.h"

// Reads a binary or XML property list; NULL for an empty, missing or
// unparsable file. A string holding a zero byte ends there. The caller
// frees the tree with plist_free.
plist_t ReadPlist(const char* path);
// A tree that frees itself.
struct FreePlistTree {
  void operator()(plist_t node) const { plist_free(node); }
};
using OwnedPlist = std::unique_ptr<void, FreePlistTree>;
// 1 when the file opens and begins with "bplist00".
int IsBinPlist(const char* path);
void PrintPlist(plist_t node);
// Releases a text that libplist handed out.
void plist_std_free(const char* p);

// Result builders: NULL values never leave holes in a dictionary.
void InsertPlistDictString(plist_t dict, const char* key, const char* value);
// Inserts, in the order given, each key with the packed text at its index.
void InsertPackedTexts(plist_t dict, const PackedTexts& texts,
                       std::initializer_list<std::pair<const char*, size_t>> keys);
void AddNoneValuePlistDictString(plist_t dict, const char* key, const char* value);
void AppendPlistArrayString(plist_t array, const char* value);
plist_t PlistCopyZero(plist_t node);
plist_t PlistCopyEmptyString(plist_t node);

// Typed readers. libplist leaves its output untouched for a node of another
// type, so each reader checks the type itself: a NULL node or a node of the
// wrong type reads as absent (false) or as 0.
// Copies a string node's text into *out; false, with *out untouched, otherwise.
bool PlistGetString(plist_t node, std::string* out);
// Whole seconds of a date node since 2001-01-01 00:00:00 UTC (libplist's epoch
// for both encodings); 0 for anything else.
int64_t PlistGetDateSeconds(plist_t node);
// 1 or 0 for a boolean node; 0 for anything else.
uint32_t PlistGetBool(plist_t node);

#endif
