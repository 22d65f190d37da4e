#include "platform/FileSystem.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(FileSystem, AnAbsolutePathStartsAtTheRoot) {
  EXPECT_TRUE(platform::IsAbsolutePath("/tmp"));
  EXPECT_TRUE(platform::IsAbsolutePath("/"));
  EXPECT_FALSE(platform::IsAbsolutePath("tmp/x"));
  EXPECT_FALSE(platform::IsAbsolutePath(""));
  EXPECT_FALSE(platform::IsAbsolutePath("C:/Users"));
}

TEST(FileSystem, FileNamesAreTakenAsTheyAre) {
  for (const std::string name : {"a<b>c:d\"e|f?g*h.jpg", "name.", "name ", "CON", "nul.txt"}) {
    EXPECT_EQ(platform::SystemFileName(name), name);
  }
}

// "\\" is a character of names here, not a separator.
TEST(FileSystem, APortablePathIsThePathItself) {
  EXPECT_EQ(platform::PortablePath("a\\b/c\\"), "a\\b/c\\");
}

}  // namespace
