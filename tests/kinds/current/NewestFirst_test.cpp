#include "kinds/current/NewestFirst.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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

struct Dated {
  std::string name;
  std::optional<int64_t> instant;
};

std::string Names(const std::vector<Dated>& records) {
  std::string names;
  for (const Dated& record : records) names += record.name;
  return names;
}

TEST(NewestFirst, OrdersRecordsByTheirInstantKeepingEqualOnesInTheirOrder) {
  std::vector<Dated> records = {{"a", 1}, {"b", std::nullopt}, {"c", 3}, {"d", 3}, {"e", std::nullopt}, {"f", -5}};
  EXPECT_EQ(Names(NewestFirst(std::move(records), &Dated::instant)), "cdafbe");
  EXPECT_EQ(Names(NewestFirst(std::vector<Dated>{{"x", 2}, {"y", 1}}, &Dated::instant)), "xy");
  EXPECT_TRUE(NewestFirst(std::vector<Dated>(), &Dated::instant).empty());
}

}  // namespace
}  // namespace current
