#ifndef YH_KINDS_PERSONTEXTS_H
#define YH_KINDS_PERSONTEXTS_H

#include <plist/plist.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/PackedTexts.h"

// The texts both services keep for a person besides the name, in the order
// of the answer's keys. Each property's label and value follow them, in row
// order, in the same block.
enum PersonText {
  kPersonOrganization,
  kPersonDepartment,
  kPersonNote,
  kPersonBirthday,     // the database's text in the described service
  kPersonJobTitle,
  kPersonNickname,
  kPersonCreationDate,  // local date text
  kPersonTextCount,
};

inline size_t PersonPropertyCount(const PackedTexts& texts) {
  return texts.Count() > kPersonTextCount ? (texts.Count() - kPersonTextCount) / 2 : 0;
}
inline size_t PersonLabel(size_t property) { return kPersonTextCount + 2 * property; }
inline size_t PersonValue(size_t property) { return PersonLabel(property) + 1; }

// The person's texts followed by `properties`, labels and values alternating.
PackedTexts WithProperties(const PackedTexts& texts, const std::vector<std::string>& properties);

// Inserts the keys "id" to "creationDate" and the "properties" dictionary,
// one insertion per property: a label met again replaces the earlier value.
void InsertPersonTexts(int64_t id, const char* name, const PackedTexts& texts, plist_t dict);

#endif
