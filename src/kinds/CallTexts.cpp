#include "kinds/CallTexts.h"

#include "common/PlistHelpers.h"

void InsertCallTexts(const PackedTexts& texts, plist_t dict) {
  InsertPackedTexts(dict, texts,
                    {{"name", kCallName},
                     {"address", kCallAddress},
                     {"date", kCallDate},
                     {"type", kCallType},
                     {"duration", kCallDuration},
                     {"country_code", kCallCountryCode},
                     {"network_code", kCallNetworkCode},
                     {"location", kCallLocation}});
}
