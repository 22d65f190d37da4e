#include "common/VqMemory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace {

TEST(VqMemory, MallocReturnsZeroedBytes) {
  // Leave a dirty block of the same size for the allocator to hand out again.
  void* dirty = std::malloc(16);
  std::memset(dirty, 0xAB, 16);
  std::free(dirty);
  unsigned char* block = static_cast<unsigned char*>(VqMalloc(__FILE__, __LINE__, 16));
  ASSERT_NE(block, nullptr);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(block[i], 0) << i;
  VqFree(__FILE__, __LINE__, block);
}

TEST(VqMemory, CallocReturnsZeroedBlock) {
  unsigned char* block = static_cast<unsigned char*>(VqCalloc(__FILE__, __LINE__, 4, 8));
  ASSERT_NE(block, nullptr);
  for (int i = 0; i < 32; ++i) EXPECT_EQ(block[i], 0) << i;
  VqFree(__FILE__, __LINE__, block);
}

TEST(VqMemory, FreeOfNullDoesNothing) { EXPECT_NO_FATAL_FAILURE(VqFree(__FILE__, __LINE__, nullptr)); }

TEST(VqMemory, StrdupOfEmptyTextIsNewEmptyText) {
  const char empty[] = "";
  char* copy = VqStrdup(__FILE__, __LINE__, empty);
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(copy, empty);
  EXPECT_STREQ(copy, "");
  std::free(copy);
}

TEST(VqMemory, StrdupCopiesText) {
  char* copy = VqStrdup(__FILE__, __LINE__, "abc");
  EXPECT_STREQ(copy, "abc");
  VqFree(__FILE__, __LINE__, copy);
}

TEST(VqMemory, HooksAreInert) {
  int value = 5;
  VqDetect(__FILE__, __LINE__, __FILE__, __LINE__, &value);
  PrintMemoryLeak();
  EXPECT_EQ(value, 5);
}

}  // namespace
