#include "kinds/PersonTexts.h"

#include <string_view>

#include "common/PlistHelpers.h"

PackedTexts WithProperties(const PackedTexts& texts, const std::vector<std::string>& properties) {
  std::vector<std::string_view> all;
  all.reserve(kPersonTextCount + properties.size());
  for (size_t at = 0; at < kPersonTextCount; ++at) all.push_back(texts.View(at));
  all.insert(all.end(), properties.begin(), properties.end());
  return PackedTexts(all.data(), all.size());
}

void InsertPersonTexts(int64_t id, const char* name, const PackedTexts& texts, plist_t dict) {
  plist_dict_set_item(dict, "id", plist_new_uint(static_cast<uint64_t>(id)));
  InsertPlistDictString(dict, "name", name);
  InsertPackedTexts(dict, texts,
                    {{"organization", kPersonOrganization},
                     {"department", kPersonDepartment},
                     {"note", kPersonNote},
                     {"birthday", kPersonBirthday},
                     {"jobTitle", kPersonJobTitle},
                     {"nickName", kPersonNickname},
                     {"creationDate", kPersonCreationDate}});
  plist_t properties = plist_new_dict();
  plist_dict_set_item(dict, "properties", properties);
  for (size_t property = 0; property < PersonPropertyCount(texts); ++property) {
    InsertPlistDictString(properties, texts.AsCString(PersonLabel(property)), texts.AsCString(PersonValue(property)));
  }
}
