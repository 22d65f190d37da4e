#include "recovery/Record.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (int value : values) bytes.push_back(static_cast<char>(value));
  return bytes;
}

TEST(Record, DecodesEverySerialType) {
  // NULL, 8/16/24/32/48/64-bit integers, a real, 0, 1, a blob and a text.
  const std::string payload =
      Bytes({13, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 19}) + Bytes({0xff}) + Bytes({0x01, 0x00}) +
      Bytes({0xff, 0xff, 0xfe}) + Bytes({0x7f, 0xff, 0xff, 0xff}) + Bytes({0x00, 0x01, 0x00, 0x00, 0x00, 0x00}) +
      Bytes({0x80, 0, 0, 0, 0, 0, 0, 0}) + Bytes({0x3f, 0xf8, 0, 0, 0, 0, 0, 0}) + Bytes({0xab, 0xcd}) + "abc";
  SqlValues values;
  std::vector<int64_t> types;
  ASSERT_TRUE(DecodeRecord(payload, TextEncoding::Utf8, &values, &types));
  ASSERT_EQ(values.size(), 12u);
  EXPECT_EQ(values[0].kind, SqlValue::Kind::Null);
  EXPECT_EQ(values[1].integer, -1);
  EXPECT_EQ(values[2].integer, 256);
  EXPECT_EQ(values[3].integer, -2);
  EXPECT_EQ(values[4].integer, 2147483647);
  EXPECT_EQ(values[5].integer, int64_t{1} << 32);
  EXPECT_EQ(values[6].integer, INT64_MIN);
  EXPECT_EQ(values[7].kind, SqlValue::Kind::Real);
  EXPECT_DOUBLE_EQ(values[7].real, 1.5);
  EXPECT_EQ(values[8].integer, 0);
  EXPECT_EQ(values[9].integer, 1);
  EXPECT_EQ(values[10].kind, SqlValue::Kind::Blob);
  EXPECT_EQ(values[10].bytes, Bytes({0xab, 0xcd}));
  EXPECT_EQ(values[11].kind, SqlValue::Kind::Text);
  EXPECT_EQ(values[11].bytes, "abc");
  EXPECT_EQ(types.size(), 12u);
}

TEST(Record, DecodesUtf16TextsOfEitherByteOrder) {
  SqlValues values;
  // "é😀": U+00E9, then a surrogate pair.
  const std::string little = Bytes({2, 25, 0xe9, 0x00, 0x3d, 0xd8, 0x00, 0xde});
  ASSERT_TRUE(DecodeRecord(little, TextEncoding::Utf16le, &values));
  EXPECT_EQ(values[0].bytes, "\xc3\xa9\xf0\x9f\x98\x80");
  const std::string big = Bytes({2, 21, 0x00, 0xe9, 0x00, 0x41});
  ASSERT_TRUE(DecodeRecord(big, TextEncoding::Utf16be, &values));
  EXPECT_EQ(values[0].bytes, "\xc3\xa9" "A");
}

TEST(Record, RefusesWhatDoesNotDecodeWhole) {
  SqlValues values;
  EXPECT_FALSE(DecodeRecord(Bytes({2, 10}), TextEncoding::Utf8, &values)) << "reserved serial type";
  EXPECT_FALSE(DecodeRecord(Bytes({2, 4, 1, 2, 3}), TextEncoding::Utf8, &values)) << "body too short";
  EXPECT_FALSE(DecodeRecord(Bytes({2, 1, 1, 2}), TextEncoding::Utf8, &values)) << "bytes left over";
  EXPECT_FALSE(DecodeRecord(Bytes({9, 1, 1}), TextEncoding::Utf8, &values)) << "header past the payload";
  EXPECT_FALSE(DecodeRecord(Bytes({2, 15, 0xc3}), TextEncoding::Utf8, &values)) << "cut UTF-8";
  EXPECT_FALSE(DecodeRecord(Bytes({2, 17, 0x00, 0xdc}), TextEncoding::Utf16le, &values)) << "lone surrogate";
  EXPECT_FALSE(DecodeRecord(Bytes({2, 15, 0x00}), TextEncoding::Utf16le, &values)) << "odd UTF-16 length";
}

TEST(Record, SerialTypeLengths) {
  EXPECT_EQ(SerialTypeLength(6), 8);
  EXPECT_EQ(SerialTypeLength(10), -1);
  EXPECT_EQ(SerialTypeLength(12), 0);
  EXPECT_EQ(SerialTypeLength(13), 0);
  EXPECT_EQ(SerialTypeLength(25), 6);
  EXPECT_EQ(BodyLength({1, 6, 17}), 11);
  EXPECT_EQ(BodyLength({INT64_MAX, INT64_MAX}), -1);
}

}  // namespace

namespace {

TEST(Record, DecodesTheStartOfABodyCutShort) {
  // An integer, a text of two-byte characters cut inside one, then a blob and an integer past the cut.
  const std::vector<int64_t> types{1, 13 + 2 * 6, 12 + 2 * 4, 1};
  const std::string body = Bytes({7}) + "\xc3\xa9\xc3\xa9\xc3";
  SqlValues values;
  ASSERT_TRUE(DecodeBodyStart(body, types, TextEncoding::Utf8, &values));
  ASSERT_EQ(values.size(), 4u);
  EXPECT_EQ(values[0].integer, 7);
  EXPECT_EQ(values[1].bytes, "\xc3\xa9\xc3\xa9") << "whole characters only";
  EXPECT_EQ(values[2].kind, SqlValue::Kind::Null);
  EXPECT_EQ(values[3].kind, SqlValue::Kind::Null);
  ASSERT_TRUE(DecodeBodyStart(Bytes({7, 0xab, 0xcd}), {1, 12 + 2 * 4}, TextEncoding::Utf8, &values));
  EXPECT_EQ(values[1].kind, SqlValue::Kind::Blob);
  EXPECT_EQ(values[1].bytes, Bytes({0xab, 0xcd}));
  EXPECT_FALSE(DecodeBodyStart(Bytes({7, 0xff, 0xff, 0xff, 0xff}), {1, 13 + 2 * 8}, TextEncoding::Utf8, &values))
      << "no text";
}

}  // namespace
