#include "crypto/Gcrypt.h"

#include <gcrypt.h>

#include <mutex>

void EnsureGcrypt() {
  static std::once_flag once;
  std::call_once(once, [] {
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P)) return;
    gcry_check_version(nullptr);
    // Locking pages may be refused to an ordinary user; the keys are still
    // kept apart and wiped, so the warning would only alarm the host's user.
    gcry_control(GCRYCTL_DISABLE_SECMEM_WARN);
    gcry_control(GCRYCTL_INIT_SECMEM, 65536, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
  });
}
