#include "crypto/BackupKeys.h"

#include <plist/plist.h>

#include "common/PlistHelpers.h"
#include "crypto/KeyBag.h"
#include "crypto/KeyWrap.h"
#include "crypto/PasswordKey.h"
#include "crypto/StoredKey.h"

namespace {

constexpr uint32_t kWrappedByPassword = 2;

struct PlistFree {
  void operator()(void* node) const { plist_free(static_cast<plist_t>(node)); }
};
using Plist = std::unique_ptr<void, PlistFree>;

std::string DataOf(plist_t node) {
  if (!node || plist_get_node_type(node) != PLIST_DATA) return std::string();
  char* bytes = nullptr;
  uint64_t length = 0;
  plist_get_data_val(node, &bytes, &length);
  std::string data(bytes ? bytes : "", bytes ? length : 0);
  free(bytes);
  return data;
}

}  // namespace

BackupKeys::Unlock BackupKeys::Open(const std::string& backupPath, std::string_view password,
                                    std::unique_ptr<BackupKeys>* keys) {
  const Plist manifest(ReadPlist((backupPath + "Manifest.plist").c_str()));
  if (!manifest || plist_get_node_type(manifest.get()) != PLIST_DICT) return Unlock::KeyBagDamaged;
  if (!PlistGetBool(plist_dict_get_item(manifest.get(), "IsEncrypted"))) return Unlock::NotEncrypted;
  const std::optional<KeyBag> bag = ParseKeyBag(DataOf(plist_dict_get_item(manifest.get(), "BackupKeyBag")));
  if (!bag) return Unlock::KeyBagDamaged;
  auto unlocked = std::make_unique<BackupKeys>();
  unlocked->manifestKey_ = DataOf(plist_dict_get_item(manifest.get(), "ManifestKey"));
  const SecureBytes passwordKey = DerivePasswordKey(*bag, password);
  if (passwordKey.Empty()) return Unlock::KeyBagDamaged;
  size_t failed = 0;
  for (const KeyBag::ClassKey& entry : bag->classKeys) {
    if (!(entry.wrap & kWrappedByPassword)) continue;
    SecureBytes key = UnwrapKey(passwordKey, entry.wrappedKey);
    if (key.Empty()) {
      ++failed;
      continue;
    }
    unlocked->classKeys_[entry.protectionClass] = std::move(key);
  }
  // A wrong password fails every wrap; a bag where only some fail is damaged.
  if (unlocked->classKeys_.empty()) return failed > 0 ? Unlock::WrongPassword : Unlock::KeyBagDamaged;
  if (failed > 0) return Unlock::KeyBagDamaged;
  *keys = std::move(unlocked);
  return Unlock::Unlocked;
}

SecureBytes BackupKeys::FileKey(std::string_view classAndWrappedKey) const {
  const std::optional<StoredKey> key = SplitStoredKey(classAndWrappedKey);
  return key ? FileKey(*key) : SecureBytes();
}

SecureBytes BackupKeys::FileKey(const StoredKey& key) const {
  const auto found = classKeys_.find(key.protectionClass);
  if (found == classKeys_.end()) return SecureBytes();
  return UnwrapKey(found->second, key.wrappedKey);
}

SecureBytes BackupKeys::ManifestKey() const { return FileKey(manifestKey_); }
