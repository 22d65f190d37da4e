// The readers of an encrypted backup's own input: the first byte chooses
// the key bag of Manifest.plist (parsed, and when its iteration counts are
// small, stretched and every class key unwrapped), the keyed archive of a
// Manifest.db `file` column, or the records of a Manifest.mbdb read for
// their keys.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "crypto/ArchivedFile.h"
#include "crypto/KeyBag.h"
#include "crypto/KeyWrap.h"
#include "crypto/MbdbEntries.h"
#include "crypto/PasswordKey.h"

namespace {

constexpr uint32_t kMostIterations = 64;

void UnwrapAll(const KeyBag& bag) {
  if (bag.iterations > kMostIterations || bag.doubleProtectionIterations > kMostIterations) return;
  const SecureBytes key = DerivePasswordKey(bag, "password");
  for (const KeyBag::ClassKey& entry : bag.classKeys) UnwrapKey(key, entry.wrappedKey);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 3) {
    case 0:
      if (const auto bag = ParseKeyBag(bytes)) UnwrapAll(*bag);
      break;
    case 1:
      ReadArchivedFileKey(bytes.data(), bytes.size());
      break;
    default:
      if (const auto entries = ReadMbdbEntries(bytes)) {
        for (const MbdbEntry& entry : *entries) entry.PlainBytes(entry.Size());
      }
  }
  return 0;
}
