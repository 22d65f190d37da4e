#ifndef YH_TESTS_SUPPORT_PLISTDUMP_H
#define YH_TESTS_SUPPORT_PLISTDUMP_H

#include <plist/plist.h>

#include <string>

namespace yhtest {

// A compact one-line text of a plist tree that shows keys in order, node
// types and values, so a test can state an exact expected answer:
//   arrays [a,b]  dictionaries {"key":value,...}  strings "text"
//   unsigned integers 5u  booleans true/false  reals 1.5r  dates 12d
//   data <hex>  NULL tree: null
// Quotes and backslashes inside strings are escaped with a backslash; other
// bytes are written as they are.
std::string Dump(plist_t node);

// Dump() of the tree, then plist_free() of it.
std::string DumpAndFree(plist_t node);

// The text under `key` of a dictionary; "" when it holds none.
std::string StringAt(plist_t dict, const char* key);

}  // namespace yhtest

#endif
