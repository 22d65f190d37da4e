#include "crypto/SecureBytes.h"

#include <gcrypt.h>

#include <cstring>
#include <utility>

#include "crypto/Gcrypt.h"

SecureBytes::SecureBytes(size_t size) : size_(size) {
  EnsureGcrypt();
  // gcry_xmalloc_secure ends the process when out of memory; a key must never
  // land in ordinary memory instead.
  data_ = static_cast<unsigned char*>(gcry_xcalloc_secure(size == 0 ? 1 : size, 1));
}

SecureBytes::SecureBytes(std::string_view bytes) : SecureBytes(bytes.size()) {
  if (!bytes.empty()) std::memcpy(data_, bytes.data(), bytes.size());
}

SecureBytes::~SecureBytes() { Release(); }

SecureBytes::SecureBytes(SecureBytes&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

SecureBytes& SecureBytes::operator=(SecureBytes&& other) noexcept {
  if (this != &other) {
    Release();
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
  }
  return *this;
}

void SecureBytes::Release() {
  gcry_free(data_);  // wipes secure memory before releasing it
  data_ = nullptr;
  size_ = 0;
}
