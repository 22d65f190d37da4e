#include "kinds/current/NewestFirst.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

namespace current {
namespace {

TEST(NewestFirst, LaterInstantsComeFirstAndRecordsWithoutOneLast) {
  EXPECT_TRUE(Newer(2, 1));
  EXPECT_FALSE(Newer(1, 2));
  EXPECT_FALSE(Newer(1, 1));
  EXPECT_TRUE(Newer(INT64_MIN + 1, std::nullopt));
  EXPECT_FALSE(Newer(std::nullopt, 0));
  EXPECT_FALSE(Newer(std::nullopt, std::nullopt));
}

}  // namespace
}  // namespace current
