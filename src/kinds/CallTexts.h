#ifndef YH_KINDS_CALLTEXTS_H
#define YH_KINDS_CALLTEXTS_H

#include <plist/plist.h>

#include "common/PackedTexts.h"

// The texts both services keep for a call, in the order of the answer's keys.
enum CallText {
  kCallName,         // stored with the call, or found in the address book
  kCallAddress,      // number or address as stored
  kCallDate,         // local date text
  kCallType,         // "Incoming", "Outgoing" or "Unknown"
  kCallDuration,     // "hh:mm:ss"
  kCallCountryCode,
  kCallNetworkCode,
  kCallLocation,
  kCallTextCount,
};

// Inserts the keys of those texts, name to location.
void InsertCallTexts(const PackedTexts& texts, plist_t dict);

#endif
