#include "support/BackupEncryptor.h"

#include <gcrypt.h>
#include <plist/plist.h>

#include <fstream>
#include <sstream>

#include "crypto/Gcrypt.h"
#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

constexpr size_t kKeySize = 32;

std::string Random(size_t size) {
  std::string bytes(size, '\0');
  gcry_create_nonce(bytes.data(), bytes.size());
  return bytes;
}

std::string BigEndian32(uint32_t value) {
  std::string bytes(4, '\0');
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>(value >> (24 - 8 * i) & 0xFF);
  return bytes;
}

std::string LittleEndian32(uint32_t value) {
  std::string bytes(4, '\0');
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>(value >> (8 * i) & 0xFF);
  return bytes;
}

std::string Tag(const char* tag, const std::string& value) {
  return tag + BigEndian32(static_cast<uint32_t>(value.size())) + value;
}

std::string Pbkdf2(int hash, const std::string& secret, const std::string& salt, uint32_t iterations) {
  std::string key(kKeySize, '\0');
  gcry_kdf_derive(secret.data(), secret.size(), GCRY_KDF_PBKDF2, hash, salt.data(), salt.size(), iterations,
                  key.size(), key.data());
  return key;
}

gcry_cipher_hd_t Open(int mode, const std::string& key) {
  gcry_cipher_hd_t handle = nullptr;
  gcry_cipher_open(&handle, GCRY_CIPHER_AES256, mode, 0);
  gcry_cipher_setkey(handle, key.data(), key.size());
  return handle;
}

}  // namespace

BackupEncryptor::BackupEncryptor(const Encryption& encryption) {
  EnsureGcrypt();
  const std::string salt = Random(20);
  std::string passwordKey;
  std::string head = Tag("VERS", BigEndian32(encryption.sha256Iterations ? 5 : 3)) + Tag("TYPE", BigEndian32(1)) +
                     Tag("UUID", Random(16)) + Tag("HMCK", std::string(40, '\0')) + Tag("WRAP", BigEndian32(0)) +
                     Tag("SALT", salt) + Tag("ITER", BigEndian32(encryption.iterations));
  if (encryption.sha256Iterations) {
    const std::string doubleSalt = Random(20);
    head += Tag("DPWT", BigEndian32(1)) + Tag("DPIC", BigEndian32(encryption.sha256Iterations)) +
            Tag("DPSL", doubleSalt);
    const std::string first = Pbkdf2(GCRY_MD_SHA256, encryption.password, doubleSalt, encryption.sha256Iterations);
    passwordKey = Pbkdf2(GCRY_MD_SHA1, first, salt, encryption.iterations);
  } else {
    passwordKey = Pbkdf2(GCRY_MD_SHA1, encryption.password, salt, encryption.iterations);
  }
  keyBag_ = head;
  for (uint32_t protectionClass = 11; protectionClass >= 1; --protectionClass) {
    classKeys_[protectionClass] = Random(kKeySize);
    keyBag_ += Tag("UUID", Random(16)) + Tag("CLAS", BigEndian32(protectionClass)) +
               Tag("WRAP", BigEndian32(protectionClass >= 9 ? 3 : 2)) + Tag("KTYP", BigEndian32(0)) +
               Tag("WPKY", Wrap(passwordKey, classKeys_[protectionClass]));
  }
  manifestKey_ = NewFileKey(kManifestClass, &manifestKeyEntry_);
}

std::string BackupEncryptor::Wrap(const std::string& keyEncryptionKey, const std::string& key) const {
  gcry_cipher_hd_t handle = Open(GCRY_CIPHER_MODE_AESWRAP, keyEncryptionKey);
  std::string wrapped(key.size() + 8, '\0');
  gcry_cipher_encrypt(handle, wrapped.data(), wrapped.size(), key.data(), key.size());
  gcry_cipher_close(handle);
  return wrapped;
}

std::string BackupEncryptor::NewFileKey(uint32_t protectionClass, std::string* stored) const {
  const std::string key = Random(kKeySize);
  *stored = LittleEndian32(protectionClass) + Wrap(classKeys_[protectionClass], key);
  return key;
}

std::string BackupEncryptor::Encrypt(const std::string& key, const std::string& plain) {
  const size_t pad = 16 - plain.size() % 16;
  std::string text = plain + std::string(pad, static_cast<char>(pad));
  gcry_cipher_hd_t handle = Open(GCRY_CIPHER_MODE_CBC, key);
  const unsigned char iv[16] = {};
  gcry_cipher_setiv(handle, iv, sizeof iv);
  gcry_cipher_encrypt(handle, text.data(), text.size(), nullptr, 0);
  gcry_cipher_close(handle);
  return text;
}

void BackupEncryptor::EncryptFile(const std::string& path, const std::string& key) {
  WriteFile(path, Encrypt(key, ReadBytes(path)));
}

// $objects: "$null", the MBFile, the key's NSData, the two class names.
std::string ArchivedMBFile(const std::string& relativePath, const std::string& storedKey, uint32_t protectionClass,
                           uint64_t size) {
  plist_t file = plist_new_dict();
  plist_dict_set_item(file, "RelativePath", plist_new_string(relativePath.c_str()));
  plist_dict_set_item(file, "Size", plist_new_uint(size));
  plist_dict_set_item(file, "ProtectionClass", plist_new_uint(protectionClass));
  plist_dict_set_item(file, "Mode", plist_new_uint(0x81A4));
  plist_dict_set_item(file, "EncryptionKey", plist_new_uid(2));
  plist_dict_set_item(file, "$class", plist_new_uid(4));
  plist_t data = plist_new_dict();
  plist_dict_set_item(data, "NS.data", plist_new_data(storedKey.data(), storedKey.size()));
  plist_dict_set_item(data, "$class", plist_new_uid(3));
  plist_t dataClass = plist_new_dict();
  plist_dict_set_item(dataClass, "$classname", plist_new_string("NSMutableData"));
  plist_t fileClass = plist_new_dict();
  plist_dict_set_item(fileClass, "$classname", plist_new_string("MBFile"));
  plist_t objects = plist_new_array();
  plist_array_append_item(objects, plist_new_string("$null"));
  plist_array_append_item(objects, file);
  plist_array_append_item(objects, data);
  plist_array_append_item(objects, dataClass);
  plist_array_append_item(objects, fileClass);
  plist_t top = plist_new_dict();
  plist_dict_set_item(top, "root", plist_new_uid(1));
  plist_t archive = plist_new_dict();
  plist_dict_set_item(archive, "$version", plist_new_uint(100000));
  plist_dict_set_item(archive, "$archiver", plist_new_string("NSKeyedArchiver"));
  plist_dict_set_item(archive, "$top", top);
  plist_dict_set_item(archive, "$objects", objects);
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(archive, &bytes, &length);
  std::string archived(bytes, length);
  plist_to_bin_free(bytes);
  plist_free(archive);
  return archived;
}

}  // namespace yhtest
