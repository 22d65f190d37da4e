#include "common/AppendMoving.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

TEST(AppendMoving, AddsEveryItemAtTheEndInOrder) {
  std::vector<std::string> to = {"a", "b"};
  AppendMoving(to, {"c", "d", "e"});
  EXPECT_EQ(to, (std::vector<std::string>{"a", "b", "c", "d", "e"}));
  AppendMoving(to, {});
  EXPECT_EQ(to.size(), 5u);
}

TEST(AppendMoving, AnEmptyListTakesTheBlockAsItIs) {
  std::vector<std::unique_ptr<int>> from;
  from.push_back(std::make_unique<int>(7));
  const auto* block = from.data();
  std::vector<std::unique_ptr<int>> to;
  AppendMoving(to, std::move(from));
  ASSERT_EQ(to.size(), 1u);
  EXPECT_EQ(to.data(), block);
  EXPECT_EQ(*to[0], 7);
}

}  // namespace
