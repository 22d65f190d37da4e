#include "common/PhoneHelpers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(PhoneHelpers, PhoneNumberCharacters) {
  for (char c : std::string("0123456789#*+,;")) EXPECT_EQ(isNotPhoneNumberChar(c), 0) << c;
}

TEST(PhoneHelpers, OtherCharacters) {
  EXPECT_EQ(isNotPhoneNumberChar('-'), 1);
  EXPECT_EQ(isNotPhoneNumberChar('+'), 0);
  for (char c : std::string(" -()./abcXYZ")) EXPECT_EQ(isNotPhoneNumberChar(c), 1) << c;
  EXPECT_EQ(isNotPhoneNumberChar(0), 1);
  EXPECT_EQ(isNotPhoneNumberChar(0x100 + '#'), 1);
  EXPECT_EQ(isNotPhoneNumberChar(-1), 1);
}

TEST(PhoneHelpers, EmptyTextIsPhoneFormat) { EXPECT_EQ(IsPhoneFormat("", '-'), 1); }

TEST(PhoneHelpers, DigitCharactersAreNotPhoneFormat) {
  EXPECT_EQ(IsPhoneFormat("555-123-4567", '-'), 0);
  EXPECT_EQ(IsPhoneFormat("5", '-'), 0);
}

TEST(PhoneHelpers, ByteValuesBelowTenAndSeparatorArePhoneFormat) {
  const char text[] = {1, 9, '-', 5, '-', 0};
  EXPECT_EQ(IsPhoneFormat(text, '-'), 1);
  EXPECT_EQ(IsPhoneFormat("---", '-'), 1);
  const char withTen[] = {1, 10, 0};
  EXPECT_EQ(IsPhoneFormat(withTen, '-'), 0);
}

TEST(PhoneHelpers, HighBytesAreNotPhoneFormat) {
  const char high[] = {static_cast<char>(0xF5), 0};
  EXPECT_EQ(IsPhoneFormat(high, '-'), 0);
  EXPECT_EQ(IsPhoneFormat(high, static_cast<char>(0xF5)), 1);
}

}  // namespace
