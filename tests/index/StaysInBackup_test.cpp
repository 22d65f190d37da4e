#include "index/StaysInBackup.h"

#include <gtest/gtest.h>

namespace {

TEST(StaysInBackup, FileIdsOfDevicesAndNamesThatMerelyHoldDotsStayInside) {
  EXPECT_TRUE(StaysInBackup("3d0d7e5fb2ce288813306e4d4636395e047a3d28"));
  EXPECT_TRUE(StaysInBackup(".a"));
  EXPECT_TRUE(StaysInBackup("x.y"));
  EXPECT_TRUE(StaysInBackup("a.."));
  EXPECT_TRUE(StaysInBackup("C:"));
}

TEST(StaysInBackup, ASeparatorOrALeadingDotDotLeavesTheFolder) {
  EXPECT_FALSE(StaysInBackup(".."));
  EXPECT_FALSE(StaysInBackup("..x"));
  EXPECT_FALSE(StaysInBackup("../sms"));
  EXPECT_FALSE(StaysInBackup("ab/../../../photos"));
  EXPECT_FALSE(StaysInBackup("/etc/passwd"));
  EXPECT_FALSE(StaysInBackup("ab\\..\\..\\x"));
  EXPECT_FALSE(StaysInBackup("\\\\server\\share\\x"));
}

}  // namespace
