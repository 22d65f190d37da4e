#include "crypto/FileCipher.h"

#include <gcrypt.h>

#include <memory>
#include <mutex>
#include <vector>

#include "crypto/Gcrypt.h"
#include "platform/FileSystem.h"

namespace {

constexpr size_t kBlock = 16;
// Large enough that the system calls cost nothing beside the copy itself.
constexpr size_t kChunk = 4 << 20;

struct CipherCloser {
  void operator()(gcry_cipher_hd_t handle) const { gcry_cipher_close(handle); }
};
using Cipher = std::unique_ptr<std::remove_pointer_t<gcry_cipher_hd_t>, CipherCloser>;

struct FdCloser {
  void operator()(int* fd) const {
    platform::CloseFile(*fd);
    delete fd;
  }
};

// Buffers grown to the largest chunk once and lent to one file at a time: a
// fresh one per file costs more in page faults than small files take to
// decrypt. Kept in a pool rather than per thread, so that nothing is left to
// destroy when a thread ends.
class LentBuffer {
 public:
  LentBuffer() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!Pool().empty()) {
      buffer_ = std::move(Pool().back());
      Pool().pop_back();
    }
  }
  ~LentBuffer() {
    const std::lock_guard<std::mutex> lock(mutex_);
    Pool().push_back(std::move(buffer_));
  }
  LentBuffer(const LentBuffer&) = delete;
  LentBuffer& operator=(const LentBuffer&) = delete;
  std::vector<unsigned char>& operator*() { return buffer_; }

 private:
  static std::vector<std::vector<unsigned char>>& Pool() {
    static std::vector<std::vector<unsigned char>> pool;
    return pool;
  }
  static std::mutex mutex_;
  std::vector<unsigned char> buffer_;
};

std::mutex LentBuffer::mutex_;

Cipher OpenCbc(const SecureBytes& key) {
  EnsureGcrypt();
  if (key.Size() != 32) return nullptr;
  gcry_cipher_hd_t handle = nullptr;
  if (gcry_cipher_open(&handle, GCRY_CIPHER_AES256, GCRY_CIPHER_MODE_CBC, GCRY_CIPHER_SECURE) != 0) return nullptr;
  Cipher cipher(handle);
  const unsigned char iv[kBlock] = {};
  if (gcry_cipher_setkey(handle, key.Data(), key.Size()) != 0 || gcry_cipher_setiv(handle, iv, kBlock) != 0) {
    return nullptr;
  }
  return cipher;
}

// Reads until `size` bytes or the end; the count read, or -1.
long long ReadFull(int fd, unsigned char* buffer, size_t size) {
  size_t done = 0;
  while (done < size) {
    const long long got = platform::ReadSome(fd, buffer + done, size - done);
    if (got < 0) return -1;
    if (got == 0) break;
    done += static_cast<size_t>(got);
  }
  return static_cast<long long>(done);
}

// Bytes of valid PKCS#7 padding at the end of the last block, or 0.
size_t PaddingOf(const unsigned char* end) {
  const unsigned char count = end[-1];
  if (count == 0 || count > kBlock) return 0;
  for (size_t i = 1; i <= count; ++i) {
    if (end[-static_cast<ptrdiff_t>(i)] != count) return 0;
  }
  return count;
}

}  // namespace

FileCipherResult DecryptFileTo(const SecureBytes& key, const std::string& source, int output, Padding padding,
                               uint64_t* written) {
  *written = 0;
  Cipher cipher = OpenCbc(key);
  if (!cipher) return FileCipherResult::Damaged;
  const int fd = platform::OpenForReading(source);
  if (fd < 0) return FileCipherResult::Unreadable;
  std::unique_ptr<int, FdCloser> closer(new int(fd));
  platform::AdviseSequential(fd);
  // The last block read is held back until the next read shows whether it
  // ends the file, where its padding is removed.
  LentBuffer lent;
  std::vector<unsigned char>& buffer = *lent;
  platform::PathInfo info;
  const size_t want = platform::StatOpen(fd, &info) && info.size < kChunk ? static_cast<size_t>(info.size) + kBlock
                                                                         : kChunk + kBlock;
  if (buffer.size() < want) buffer.resize(want);
  const size_t chunk = want - kBlock;
  size_t held = 0;
  uint64_t total = 0;
  for (;;) {
    const long long got = ReadFull(fd, buffer.data() + held, chunk);
    if (got < 0) return FileCipherResult::Unreadable;
    const size_t size = held + static_cast<size_t>(got);
    if (got == 0) break;
    if (size % kBlock != 0) return FileCipherResult::Damaged;
    const size_t ready = size - kBlock;
    if (gcry_cipher_decrypt(cipher.get(), buffer.data() + held, size - held, nullptr, 0) != 0) {
      return FileCipherResult::Damaged;
    }
    if (!platform::WriteAll(output, buffer.data(), ready)) return FileCipherResult::WriteFailed;
    total += ready;
    std::copy(buffer.data() + ready, buffer.data() + size, buffer.data());
    held = kBlock;
  }
  if (held == 0) return FileCipherResult::Damaged;
  size_t keep = kBlock - PaddingOf(buffer.data() + kBlock);
  if (padding == Padding::StripToPages && (total + keep) % 512 != 0) keep = kBlock;
  if (!platform::WriteAll(output, buffer.data(), keep)) return FileCipherResult::WriteFailed;
  *written = total + keep;
  return FileCipherResult::Done;
}
