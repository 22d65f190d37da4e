#include "platform/FileSystem.h"

#include <gtest/gtest.h>

namespace {

TEST(FileSystem, AnAbsolutePathStartsAtTheRoot) {
  EXPECT_TRUE(platform::IsAbsolutePath("/tmp"));
  EXPECT_TRUE(platform::IsAbsolutePath("/"));
  EXPECT_FALSE(platform::IsAbsolutePath("tmp/x"));
  EXPECT_FALSE(platform::IsAbsolutePath(""));
  EXPECT_FALSE(platform::IsAbsolutePath("C:/Users"));
}

}  // namespace
