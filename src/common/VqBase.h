#ifndef YH_COMMON_VQBASE_H
#define YH_COMMON_VQBASE_H

#include <cstdint>

// Root of every library object. The two self marks let any holder of a
// pointer test, before touching the object, whether it is still alive: the
// destructor clears selfMark, so a stale pointer into memory not yet reused
// finds the marks unequal.
class VqBase {
 public:
  VqBase();
  // A copy takes the original's marks as they are, so it passes the check
  // for as long as the original's marks would.
  VqBase(const VqBase& other) = default;
  VqBase& operator=(const VqBase&) = delete;
  virtual ~VqBase();

  // Meant to be asked of objects that may have died, so the sanitizer's
  // dynamic-type test is off; freed memory is still reported.
  __attribute__((no_sanitize("vptr"))) bool IsAlive() const {
    return selfMark == selfCheck && deadFlag == 0;
  }

  VqBase* selfMark;
  VqBase* selfCheck;
  int32_t deadFlag;
};

// The check made before each use of an object. A dead object reaches the
// inert not-alive hook and the use goes on regardless: the hook is a place
// for a debugger to stop, never a change in the outcome.
void VqCheckAlive(const VqBase* object);

#endif
