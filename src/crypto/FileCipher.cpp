#include "crypto/FileCipher.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <gcrypt.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <vector>

#include "crypto/AtomicFile.h"
#include "crypto/Gcrypt.h"

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
    close(*fd);
    delete fd;
  }
};

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
ssize_t ReadFull(int fd, unsigned char* buffer, size_t size) {
  size_t done = 0;
  while (done < size) {
    const ssize_t got = read(fd, buffer + done, size - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    done += static_cast<size_t>(got);
  }
  return static_cast<ssize_t>(done);
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
  const int fd = open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return FileCipherResult::Unreadable;
  std::unique_ptr<int, FdCloser> closer(new int(fd));
  posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
  // The last block read is held back until the next read shows whether it
  // ends the file, where its padding is removed.
  // One buffer per thread, grown to the largest chunk once: a fresh one per
  // file costs more in page faults than small files take to decrypt.
  thread_local std::vector<unsigned char> buffer;
  struct stat info {};
  const size_t want = fstat(fd, &info) == 0 && static_cast<uint64_t>(info.st_size) < kChunk
                          ? static_cast<size_t>(info.st_size) + kBlock
                          : kChunk + kBlock;
  if (buffer.size() < want) buffer.resize(want);
  const size_t chunk = want - kBlock;
  size_t held = 0;
  uint64_t total = 0;
  for (;;) {
    const ssize_t got = ReadFull(fd, buffer.data() + held, chunk);
    if (got < 0) return FileCipherResult::Unreadable;
    const size_t size = held + static_cast<size_t>(got);
    if (got == 0) break;
    if (size % kBlock != 0) return FileCipherResult::Damaged;
    const size_t ready = size - kBlock;
    if (gcry_cipher_decrypt(cipher.get(), buffer.data() + held, size - held, nullptr, 0) != 0) {
      return FileCipherResult::Damaged;
    }
    if (!WriteAll(output, buffer.data(), ready)) return FileCipherResult::WriteFailed;
    total += ready;
    std::copy(buffer.data() + ready, buffer.data() + size, buffer.data());
    held = kBlock;
  }
  if (held == 0) return FileCipherResult::Damaged;
  size_t keep = kBlock - PaddingOf(buffer.data() + kBlock);
  if (padding == Padding::StripToPages && (total + keep) % 512 != 0) keep = kBlock;
  if (!WriteAll(output, buffer.data(), keep)) return FileCipherResult::WriteFailed;
  *written = total + keep;
  return FileCipherResult::Done;
}
