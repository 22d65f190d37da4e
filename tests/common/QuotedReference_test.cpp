#include "common/QuotedReference.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Field(int number, const std::string& bytes) {
  return std::string(1, static_cast<char>(number << 3 | 2)) + static_cast<char>(bytes.size()) + bytes;
}

TEST(QuotedReference, ReadsTheStanzaIdAndTheSenderAmongOtherFields) {
  const std::string metadata = std::string("\x08\x01", 2) + Field(5, "3EB0C431") +
                               Field(6, "447700900123@s.whatsapp.net") + std::string("\x3D\x01\x02\x03\x04", 5);
  const std::optional<QuotedReference> quoted = QuotedReferenceOf(metadata);
  ASSERT_TRUE(quoted);
  EXPECT_EQ(quoted->stanzaId, "3EB0C431");
  EXPECT_EQ(quoted->senderJid, "447700900123@s.whatsapp.net");
}

TEST(QuotedReference, AReplyToTheOwnerNamesNoSender) {
  const std::optional<QuotedReference> quoted = QuotedReferenceOf(Field(5, "A2"));
  ASSERT_TRUE(quoted);
  EXPECT_EQ(quoted->stanzaId, "A2");
  EXPECT_EQ(quoted->senderJid, "");
}

TEST(QuotedReference, NothingWithoutAStanzaIdOrFromDamagedBytes) {
  EXPECT_FALSE(QuotedReferenceOf(""));
  EXPECT_FALSE(QuotedReferenceOf(Field(6, "x@s.whatsapp.net")));
  EXPECT_FALSE(QuotedReferenceOf(Field(5, "")));
  EXPECT_FALSE(QuotedReferenceOf(std::string("\x2A\x05", 2)));            // cut short
  EXPECT_FALSE(QuotedReferenceOf(std::string("\x28\x05", 2)));            // a number where a text belongs
  EXPECT_FALSE(QuotedReferenceOf(Field(5, "A2") + std::string("\x0F")));  // an unknown wire type
}

}  // namespace
