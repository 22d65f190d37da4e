#ifndef YH_FUZZ_PLISTSHAPES_H
#define YH_FUZZ_PLISTSHAPES_H

#include <fuzzer/FuzzedDataProvider.h>
#include <plist/plist.h>

#include <string>
#include <vector>

namespace yhfuzz {

// A property-list tree grown from fuzzer bytes: nodes of every type, and
// dictionaries whose keys are mostly the ones a reader looks for, so that
// those keys turn up holding values of the wrong type. The caller frees it.
plist_t GrowPlist(FuzzedDataProvider& bytes, const std::vector<std::string>& keys, int depth);
// The same, always a dictionary: the root that readers expect.
plist_t GrowDict(FuzzedDataProvider& bytes, const std::vector<std::string>& keys, int depth);

// The tree's bytes in libplist's binary or XML form; the tree is freed.
std::string PlistFileBytes(plist_t root, bool binary);

}  // namespace yhfuzz

#endif
