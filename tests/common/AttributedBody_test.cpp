#include "common/AttributedBody.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/AttributedBodyBlob.h"

namespace {

using namespace std::string_literals;
using yhtest::AttributedBodyBlob;
using yhtest::kAttributedBodyHead;
using yhtest::kAttributedBodyRunHead;
using yhtest::TypedStreamInteger;

std::optional<std::string> Decode(const std::string& blob) { return DecodeAttributedBodyText(blob.data(), blob.size()); }

std::string FromHex(const std::string& hex) {
  std::string bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2) bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  return bytes;
}

// A message body as published from a device's sms.db.
const std::string kDeviceText = "Sorry, I can\u2019t hear you over the sound of my own awesomeness! \U0001F60E";
const std::string kDeviceBlob = FromHex(
    "040B73747265616D747970656481E803840140848484124E5341747472696275746564537472696E67008484084E534F626A6563"
    "74008592848484084E53537472696E67019484012B44536F7272792C20492063616EE2809974206865617220796F75206F766572"
    "2074686520736F756E64206F66206D79206F776E20617765736F6D656E6573732120F09F988E86840269490140928484840C4E53"
    "44696374696F6E617279009484016901928496961D5F5F6B494D4D657373616765506172744174747269627574654E616D65869284"
    "8484084E534E756D626572008484074E5356616C7565009484012A84999900868686");

// Where the string object ends: the text and its length after the head,
// then the end-of-object byte.
size_t StringObjectEnd(const std::string& text) {
  return kAttributedBodyHead.size() + TypedStreamInteger(static_cast<int64_t>(text.size())).size() + text.size() + 1;
}

TEST(AttributedBody, DecodesADeviceBlob) { EXPECT_EQ(Decode(kDeviceBlob), kDeviceText); }

TEST(AttributedBody, TestBlobsHaveTheDeviceLayout) { EXPECT_EQ(AttributedBodyBlob(kDeviceText), kDeviceBlob); }

TEST(AttributedBody, DecodesShortText) { EXPECT_EQ(Decode(AttributedBodyBlob("Hello")), "Hello"); }

TEST(AttributedBody, DecodesTheEmptyString) { EXPECT_EQ(Decode(AttributedBodyBlob("")), ""); }

TEST(AttributedBody, DecodesEveryLengthForm) {
  // 127 fits the one-byte form, 128 takes 0x81 and 2 bytes, 70000 0x82 and 4.
  for (const size_t length : {1u, 127u, 128u, 300u, 32767u, 32768u, 65535u, 65536u, 70000u}) {
    std::string text;
    for (size_t i = 0; i < length; ++i) text += static_cast<char>('a' + i % 26);
    EXPECT_EQ(Decode(AttributedBodyBlob(text)), text) << length;
  }
  EXPECT_EQ(TypedStreamInteger(127), "\x7f");
  EXPECT_EQ(TypedStreamInteger(128), "\x81\x80\x00"s);
  EXPECT_EQ(TypedStreamInteger(70000), "\x82\x70\x11\x01\x00"s);
}

TEST(AttributedBody, ReadsTwoByteLengthsAsUnsigned) {
  const std::string text(65535, 'x');
  const std::string blob = kAttributedBodyHead + "\x81\xff\xff" + text + kAttributedBodyRunHead + "\x01\x86\x86";
  EXPECT_EQ(Decode(blob), text);
}

TEST(AttributedBody, KeepsEmojiNewlinesAndAttachmentMarksExactly) {
  const std::string text =
      "Line one\nLine two\r\n\U0001F469\u200D\U0001F469\u200D\U0001F467 \uFFFC\uFFFC caf\u00E9 \u4E2D\u6587 \U0001F389\n";
  EXPECT_EQ(Decode(AttributedBodyBlob(text)), text);
  EXPECT_EQ(Decode(AttributedBodyBlob("\uFFFC")), "\uFFFC");
}

TEST(AttributedBody, FollowsMutableClassesToTheirSuperclasses) {
  // NSMutableAttributedString < NSAttributedString < NSObject, then
  // NSMutableString < NSString < NSObject (NSObject by reference, entry 3).
  const std::string blob =
      "\x04\x0bstreamtyped\x81\xe8\x03\x84\x01@"
      "\x84\x84\x84\x19NSMutableAttributedString\x00\x84\x84\x12NSAttributedString\x00\x84\x84\x08NSObject\x00\x85"
      "\x92\x84\x84\x84\x0fNSMutableString\x01\x84\x84\x08NSString\x01\x95"
      "\x84\x01+\x05mixed\x86\x86"s;
  EXPECT_EQ(Decode(blob), "mixed");
}

TEST(AttributedBody, StopsAtTheEndOfTheStringObject) {
  const std::string text = "runs \U0001F600 cut";
  const std::string blob = AttributedBodyBlob(text);
  for (size_t length = 0; length < blob.size(); ++length) {
    const std::optional<std::string> decoded = Decode(blob.substr(0, length));
    if (length < StringObjectEnd(text)) {
      EXPECT_EQ(decoded, std::nullopt) << length;
    } else {
      EXPECT_EQ(decoded, text) << length;
    }
  }
}

TEST(AttributedBody, RejectsOtherHeaders) {
  const std::string body = AttributedBodyBlob("x").substr(13);
  EXPECT_EQ(Decode("\x04\x0btypedstream" + body), std::nullopt);  // big-endian
  EXPECT_EQ(Decode("\x03\x0bstreamtyped" + body), std::nullopt);
  EXPECT_EQ(Decode("\x04\x0cstreamtyped" + body), std::nullopt);
  EXPECT_EQ(Decode("bplist00" + body), std::nullopt);
  EXPECT_EQ(Decode(""), std::nullopt);
  EXPECT_EQ(DecodeAttributedBodyText(nullptr, 0), std::nullopt);
  EXPECT_EQ(DecodeAttributedBodyText(nullptr, 10), std::nullopt);
}

TEST(AttributedBody, RejectsOtherObjects) {
  const std::string header = "\x04\x0bstreamtyped\x81\xe8\x03\x84\x01@"s;
  EXPECT_EQ(Decode(header + "\x84\x84\x84\x08NSNumber\x00\x85"s), std::nullopt);
  // An attributed string whose first value is an NSData, not a string.
  EXPECT_EQ(Decode(header + "\x84\x84\x84\x12NSAttributedString\x00\x84\x84\x08NSObject\x00\x85"
                            "\x92\x84\x84\x84\x06NSData\x00\x94\x84\x01+\x01x\x86"s),
            std::nullopt);
  // The string's type is not "+".
  std::string blob = AttributedBodyBlob("x");
  blob[kAttributedBodyHead.size() - 1] = '*';
  EXPECT_EQ(Decode(blob), std::nullopt);
}

TEST(AttributedBody, RejectsDamagedStructure) {
  const std::string header = "\x04\x0bstreamtyped\x81\xe8\x03\x84\x01@"s;
  const std::string text = "\x84\x01+\x01x\x86"s;
  // A length longer than what is left.
  EXPECT_EQ(Decode(kAttributedBodyHead + "\x82\xff\xff\xff\x7f" + "short"), std::nullopt);
  EXPECT_EQ(Decode(kAttributedBodyHead + "\x82\xff\xff\xff\xff" + "short"), std::nullopt);
  // No end of object after the text.
  EXPECT_EQ(Decode(kAttributedBodyHead + "\x01x\x85"), std::nullopt);
  // A type given by a string reference not seen yet.
  EXPECT_EQ(Decode("\x04\x0bstreamtyped\x81\xe8\x03\x93"s), std::nullopt);
  // A superclass reference to an object instead of a class.
  EXPECT_EQ(Decode(header + "\x84\x84\x84\x12NSAttributedString\x00\x92" + text), std::nullopt);
  // A class its own superclass, and a nameless class.
  EXPECT_EQ(Decode(header + "\x84\x84\x84\x03Foo\x00\x93" + text), std::nullopt);
  EXPECT_EQ(Decode(header + "\x84\x84\x84\x00\x00\x85"s + text), std::nullopt);
  // A tag where an integer belongs.
  EXPECT_EQ(Decode(kAttributedBodyHead + "\x86x"), std::nullopt);
}

TEST(AttributedBody, SurvivesGarbage) {
  std::mt19937 engine(20240916);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 2000; ++round) {
    std::string noise(static_cast<size_t>(byte(engine)), '\0');
    for (char& c : noise) c = static_cast<char>(byte(engine));
    EXPECT_EQ(Decode(noise), std::nullopt);
    EXPECT_EQ(Decode(kAttributedBodyHead.substr(0, 16) + noise), std::nullopt);
  }
  // Every byte of a real blob set to each of the values that mean something;
  // whatever comes out is bytes of the blob.
  for (size_t at = 0; at < kDeviceBlob.size(); ++at) {
    for (const char value : "\x00\x7f\x80\x81\x82\x84\x85\x86\x92\x99\xff"s) {
      std::string blob = kDeviceBlob;
      blob[at] = value;
      const std::optional<std::string> decoded = Decode(blob);
      if (decoded) {
        EXPECT_NE(blob.find(*decoded), std::string::npos) << at;
      }
    }
  }
}

}  // namespace
