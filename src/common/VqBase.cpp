#include "common/VqBase.h"

#include "common/VqException.h"

VqBase::VqBase() : selfMark(this), selfCheck(this), deadFlag(0) {}

VqBase::~VqBase() {
  // A plain store to a dying object is removed by the optimiser (its lifetime
  // ends here); the volatile store keeps the mark that stale pointers rely on.
  *static_cast<VqBase* volatile*>(&selfMark) = nullptr;
}

// As IsAlive: the object may have died, which is what is being asked.
__attribute__((no_sanitize("vptr"))) void VqCheckAlive(const VqBase* object) {
  if (!object->IsAlive()) VqException::ThrowObjectNotAliveException();
}
