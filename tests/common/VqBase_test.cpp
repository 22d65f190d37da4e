#include "common/VqBase.h"

#include <gtest/gtest.h>

#include <new>
#include <type_traits>

#include "common/VqException.h"

namespace {

class Derived : public VqBase {
 public:
  int payload = 7;
};

// Room for one object whose memory outlives it, so a stale pointer can be
// examined after the destructor without the memory being reused.
template <typename T>
struct Slot {
  std::aligned_storage_t<sizeof(T), alignof(T)> bytes;
  T* Make() { return new (&bytes) T(); }
};

// The pointer as a holder that does not know the object has died sees it:
// passed through a volatile, so the compiler cannot reason about the dead
// object's contents and must read its memory. Only fields are read through
// it; calling a member function of a dead object is what the sanitizer build
// rightly rejects.
const VqBase* Stale(const VqBase* object) {
  const VqBase* volatile hidden = object;
  return hidden;
}

TEST(VqBase, FreshObjectMarksItsOwnAddress) {
  VqBase object;
  EXPECT_EQ(object.selfMark, &object);
  EXPECT_EQ(object.selfCheck, &object);
  EXPECT_EQ(object.deadFlag, 0);
  EXPECT_TRUE(object.IsAlive());
}

TEST(VqBase, DestroyedObjectFailsTheCheck) {
  Slot<VqBase> slot;
  VqBase* object = slot.Make();
  object->~VqBase();
  const VqBase* stale = Stale(object);
  EXPECT_EQ(stale->selfMark, nullptr);
  EXPECT_EQ(stale->selfCheck, object);
  EXPECT_EQ(stale->deadFlag, 0);
}

TEST(VqBase, DestroyedDerivedObjectFailsTheCheck) {
  Slot<Derived> slot;
  Derived* object = slot.Make();
  EXPECT_TRUE(object->IsAlive());
  object->~Derived();
  const VqBase* stale = Stale(object);
  EXPECT_NE(stale->selfMark, stale->selfCheck);
}

TEST(VqBase, CheckOfDeadObjectLetsTheUseGoOn) {
  Slot<Derived> slot;
  Derived* object = slot.Make();
  object->~Derived();
  int usesAfterCheck = 0;
  EXPECT_NO_THROW({
    VqCheckAlive(Stale(object));
    ++usesAfterCheck;
  });
  EXPECT_EQ(usesAfterCheck, 1);
}

TEST(VqBase, DeadFlagFailsTheCheck) {
  VqBase object;
  object.deadFlag = 1;
  EXPECT_FALSE(object.IsAlive());
  object.deadFlag = 0;
  EXPECT_TRUE(object.IsAlive());
}

TEST(VqBase, CopyTakesTheOriginalsMarks) {
  Derived original;
  Derived copy(original);
  EXPECT_EQ(copy.selfMark, &original);
  EXPECT_EQ(copy.selfCheck, &original);
  EXPECT_TRUE(copy.IsAlive());
}

TEST(VqBase, DestructorIsVirtual) { EXPECT_TRUE(std::has_virtual_destructor<VqBase>::value); }

TEST(VqException, HooksReturnWithoutEffect) {
  EXPECT_NO_THROW(VqException::ThrowException());
  EXPECT_NO_THROW(VqException::ThrowObjectNotAliveException());
  EXPECT_NO_THROW(VqException::ThrowObjectIsNullException());
}

}  // namespace
