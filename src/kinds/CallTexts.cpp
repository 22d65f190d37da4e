#include "kinds/CallTexts.h"

#include "common/PlistHelpers.h"

void InsertCallTexts(const PackedTexts& texts, plist_t dict) {
  InsertPlistDictString(dict, "name", texts.AsCString(kCallName));
  InsertPlistDictString(dict, "address", texts.AsCString(kCallAddress));
  InsertPlistDictString(dict, "date", texts.AsCString(kCallDate));
  InsertPlistDictString(dict, "type", texts.AsCString(kCallType));
  InsertPlistDictString(dict, "duration", texts.AsCString(kCallDuration));
  InsertPlistDictString(dict, "country_code", texts.AsCString(kCallCountryCode));
  InsertPlistDictString(dict, "network_code", texts.AsCString(kCallNetworkCode));
  InsertPlistDictString(dict, "location", texts.AsCString(kCallLocation));
}
