#include "common/ColumnHelpers.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(ColumnHelpers, ZeroIntIsNull) {
  EXPECT_EQ(GetZeroIntIsNull(nullptr), 0);
  EXPECT_EQ(GetZeroIntIsNull(""), 0);
  EXPECT_EQ(GetZeroIntIsNull("42"), 42);
  EXPECT_EQ(GetZeroIntIsNull("-17"), -17);
  EXPECT_EQ(GetZeroIntIsNull("12abc"), 12);
  EXPECT_EQ(GetZeroIntIsNull("abc"), 0);
}

TEST(ColumnHelpers, ZeroLongIsNull) {
  EXPECT_EQ(GetZeroLongIsNull(nullptr), 0);
  EXPECT_EQ(GetZeroLongIsNull("722000000"), 722000000);
  EXPECT_EQ(GetZeroLongIsNull("-5"), -5);
  EXPECT_EQ(GetZeroLongIsNull("630000000.75"), 630000000);
}

TEST(ColumnHelpers, ZeroIntSaturatesAtThe32BitRange) {
  EXPECT_EQ(GetZeroIntIsNull("2147483648"), 2147483647);
  EXPECT_EQ(GetZeroIntIsNull("600000000000000000"), 2147483647);  // a nanosecond date
  EXPECT_EQ(GetZeroIntIsNull("-2147483649"), INT32_MIN);
}

TEST(ColumnHelpers, ZeroLongSaturatesAtThe32BitRange) {
  EXPECT_EQ(GetZeroLongIsNull("2147483647"), 2147483647);
  EXPECT_EQ(GetZeroLongIsNull("2147483648"), 2147483647);
  EXPECT_EQ(GetZeroLongIsNull("99999999999999999999"), 2147483647);
  EXPECT_EQ(GetZeroLongIsNull("-2147483648"), INT32_MIN);
  EXPECT_EQ(GetZeroLongIsNull("-2147483649"), INT32_MIN);
}

TEST(ColumnHelpers, EmptyStringIsNull) {
  EXPECT_EQ(GetEmptyStringIsNull(nullptr), "");
  EXPECT_EQ(GetEmptyStringIsNull(""), "");
  EXPECT_EQ(GetEmptyStringIsNull("text"), "text");
}

TEST(ColumnHelpers, FiniteRealOfAWholeNumberTextOnly) {
  EXPECT_EQ(FiniteRealOf("51.5099"), 51.5099);
  EXPECT_EQ(FiniteRealOf("-0.1425"), -0.1425);
  EXPECT_EQ(FiniteRealOf("12"), 12.0);
  EXPECT_FALSE(FiniteRealOf(nullptr));
  EXPECT_FALSE(FiniteRealOf(""));
  EXPECT_FALSE(FiniteRealOf("51.5 N"));
  EXPECT_FALSE(FiniteRealOf("inf"));
  EXPECT_FALSE(FiniteRealOf("nan"));
}

}  // namespace
