#include "common/BigEndianBitConverter.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "common/FileHelpers.h"

namespace {

class BigEndianBitConverterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!VQIsLittleEndian()) GTEST_SKIP() << "big-endian host reads native values";
  }
};

TEST_F(BigEndianBitConverterTest, UInt32ReadsMostSignificantFirst) {
  const unsigned char bytes[] = {0x00, 0x00, 0x01, 0x02};
  EXPECT_EQ(BigEndianBitConverter::ToUInt32(bytes, 0), 258u);
}

TEST_F(BigEndianBitConverterTest, ReadsAtTheIndex) {
  const unsigned char bytes[] = {0xAA, 0xBB, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0};
  EXPECT_EQ(BigEndianBitConverter::ToUInt16(bytes, 2), 0x1234u);
  EXPECT_EQ(BigEndianBitConverter::ToInt16(bytes, 2), 0x1234);
  EXPECT_EQ(BigEndianBitConverter::ToUInt32(bytes, 2), 0x12345678u);
  EXPECT_EQ(BigEndianBitConverter::ToInt32(bytes, 2), 0x12345678);
  EXPECT_EQ(BigEndianBitConverter::ToInt64(bytes, 2), 0x123456789ABCDEF0LL);
}

TEST_F(BigEndianBitConverterTest, SignedValues) {
  const unsigned char bytes[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE};
  EXPECT_EQ(BigEndianBitConverter::ToInt16(bytes, 0), -1);
  EXPECT_EQ(BigEndianBitConverter::ToUInt16(bytes, 0), 0xFFFFu);
  EXPECT_EQ(BigEndianBitConverter::ToInt32(bytes, 4), -2);
  EXPECT_EQ(BigEndianBitConverter::ToInt64(bytes, 0), -2);
}

TEST(BigEndianBitConverter, ReverseBytesCopiesInReverse) {
  const unsigned char bytes[] = {1, 2, 3, 4, 5, 6};
  unsigned char* reversed = BigEndianBitConverter::ReverseBytes(bytes, 1, 4);
  ASSERT_NE(reversed, nullptr);
  EXPECT_EQ(reversed[0], 5);
  EXPECT_EQ(reversed[1], 4);
  EXPECT_EQ(reversed[2], 3);
  EXPECT_EQ(reversed[3], 2);
  std::free(reversed);
}

TEST(BigEndianBitConverter, ReverseBytesBelowOneGivesAFreeableBlock) {
  const unsigned char bytes[] = {1};
  std::free(BigEndianBitConverter::ReverseBytes(bytes, 0, 0));
  std::free(BigEndianBitConverter::ReverseBytes(bytes, 0, -3));
}

}  // namespace
