#include "kinds/current/WhatsAppJid.h"

#include <gtest/gtest.h>

namespace current {
namespace {

TEST(WhatsAppJid, APersonsAddressHasANumberAndNoOtherDoes) {
  EXPECT_EQ(PhoneOfJid("447700900123@s.whatsapp.net"), "447700900123");
  EXPECT_EQ(PhoneOfJid("447700900123:12@s.whatsapp.net"), "447700900123");
  EXPECT_EQ(PhoneOfJid("120363000000000001@g.us"), "");
  EXPECT_EQ(PhoneOfJid("123456@lid"), "");
  EXPECT_EQ(PhoneOfJid("s.whatsapp.net"), "");
  EXPECT_EQ(AddressOfJid("447700900123@s.whatsapp.net"), "447700900123");
  EXPECT_EQ(AddressOfJid("123456@lid"), "123456@lid");
}

TEST(WhatsAppJid, KindsByTheServerPart) {
  EXPECT_EQ(KindOfJid("447700900123@s.whatsapp.net"), JidKind::Person);
  EXPECT_EQ(KindOfJid("120363000000000001@g.us"), JidKind::Group);
  EXPECT_EQ(KindOfJid("1234567890@broadcast"), JidKind::Broadcast);
  EXPECT_EQ(KindOfJid("status@broadcast"), JidKind::Status);
  EXPECT_EQ(KindOfJid("123456@lid"), JidKind::Other);
  EXPECT_EQ(KindOfJid(""), JidKind::Other);
}

}  // namespace
}  // namespace current
