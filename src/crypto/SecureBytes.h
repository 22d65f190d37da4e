#ifndef YH_CRYPTO_SECUREBYTES_H
#define YH_CRYPTO_SECUREBYTES_H

#include <cstddef>
#include <string_view>

// Bytes of a password or key in libgcrypt's secure memory, which gcry_free
// wipes before releasing. Moves only: a key is never copied around.
class SecureBytes {
 public:
  SecureBytes() = default;
  explicit SecureBytes(size_t size);
  explicit SecureBytes(std::string_view bytes);
  ~SecureBytes();
  SecureBytes(SecureBytes&& other) noexcept;
  SecureBytes& operator=(SecureBytes&& other) noexcept;
  SecureBytes(const SecureBytes&) = delete;
  SecureBytes& operator=(const SecureBytes&) = delete;

  unsigned char* Data() { return data_; }
  const unsigned char* Data() const { return data_; }
  size_t Size() const { return size_; }
  bool Empty() const { return size_ == 0; }

 private:
  void Release();

  unsigned char* data_ = nullptr;
  size_t size_ = 0;
};

#endif
