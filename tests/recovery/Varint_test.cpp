#include "recovery/Varint.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Varint, ReadsOneTwoAndNineByteForms) {
  int64_t value = 0;
  EXPECT_EQ(ReadVarint(std::string("\x7f"), 0, &value), 1);
  EXPECT_EQ(value, 127);
  EXPECT_EQ(ReadVarint(std::string("\x81\x00", 2), 0, &value), 2);
  EXPECT_EQ(value, 128);
  const std::string nine(9, '\xff');
  EXPECT_EQ(ReadVarint(nine, 0, &value), 9);
  EXPECT_EQ(value, -1);
}

TEST(Varint, StopsAtTheEndOfTheBytes) {
  int64_t value = 42;
  EXPECT_EQ(ReadVarint(std::string("\x81\x82"), 0, &value), 0);
  EXPECT_EQ(ReadVarint(std::string("\x01"), 1, &value), 0);
  EXPECT_EQ(value, 42);
}

TEST(Varint, ReadsBigEndianNumbers) {
  const std::string bytes("\x12\x34\x56\x78", 4);
  EXPECT_EQ(ReadUInt16(bytes, 0), 0x1234u);
  EXPECT_EQ(ReadUInt32(bytes, 0), 0x12345678u);
}

}  // namespace
