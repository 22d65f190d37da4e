#include "common/NoteDocument.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/NoteDocumentWriter.h"
#include "support/NoteStoreBody.h"

namespace yhtest {
namespace {

std::string TextOf(const std::string& blob) { return NoteDocumentText(blob.data(), blob.size()); }

TEST(NoteDocument, TheWholeTextOfAGzippedDocument) {
  EXPECT_EQ(TextOf(NoteDocumentBlob("Groceries\nmilk, eggs")), "Groceries\nmilk, eggs");
}

TEST(NoteDocument, EmojiAndCharactersOutsideTheBasicPlaneAreKeptByteForByte) {
  const std::string text =
      "Trip \xF0\x9F\x8F\x94\xEF\xB8\x8F caf\xC3\xA9 \xF0\xA0\x80\x8B "
      "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9";
  EXPECT_EQ(TextOf(NoteDocumentBlob(text)), text);
}

TEST(NoteDocument, ALongTextIsKeptWhole) {
  std::string text;
  for (int line = 0; line < 400; ++line) text += "line " + std::to_string(line) + "\n";
  ASSERT_GT(text.size(), 2048u);
  EXPECT_EQ(TextOf(NoteDocumentBlob(text)), text);
}

TEST(NoteDocument, TheByte0x1AAndZeroBytesDoNotEndTheText) {
  const std::string text("before\x1A" "after\n\x1A" "end", 17);
  EXPECT_EQ(TextOf(NoteDocumentBlob(text)), text);
}

TEST(NoteDocument, FieldsInAnyOrderAndUnknownFieldsOfEveryWireTypeAreSkipped) {
  const std::string fixed64 = ProtoTag(9, 1) + std::string(8, '\xFF');
  const std::string fixed32 = ProtoTag(10, 5) + std::string(4, '\x1A');
  const std::string note = ProtoLengthField(5, "run") + fixed64 + ProtoLengthField(2, "text") + fixed32;
  const std::string document = ProtoLengthField(3, note) + ProtoVarintField(2, 300);
  const std::string top = ProtoLengthField(7, "x") + ProtoLengthField(2, document) + ProtoVarintField(1, 1);
  EXPECT_EQ(NoteTextOfDocument(top), "text");
}

TEST(NoteDocument, AnEmptyTextIsEmpty) { EXPECT_EQ(TextOf(NoteDocumentBlob("")), ""); }

TEST(NoteDocument, DamagedGzipGivesNothing) {
  const std::string blob = NoteDocumentBlob("cut short by the device");
  EXPECT_EQ(TextOf(blob.substr(0, blob.size() - 10)), "");
  EXPECT_EQ(TextOf(blob.substr(0, 12)), "");
  std::string flipped = blob;
  flipped[blob.size() / 2] ^= 0x55;
  EXPECT_EQ(TextOf(flipped), "");
  EXPECT_EQ(NoteDocumentText(nullptr, 0), "");
}

TEST(NoteDocument, APropertyListOrAPlainDocumentGivesNothing) {
  EXPECT_EQ(TextOf(std::string("bplist00\xD1\x01\x02", 11) + NoteDocument("hidden")), "");
  EXPECT_EQ(TextOf(NoteDocument("not gzip'd")), "");
}

TEST(NoteDocument, MalformedMessagesGiveNothing) {
  const std::string note = ProtoLengthField(2, "text");
  const std::string good = ProtoLengthField(2, ProtoLengthField(3, note));
  ASSERT_EQ(NoteTextOfDocument(good), "text");
  // A length past the end, at each level.
  EXPECT_EQ(NoteTextOfDocument(good.substr(0, good.size() - 1)), "");
  EXPECT_EQ(NoteTextOfDocument(ProtoTag(2, 2) + ProtoVarint(1000) + good), "");
  // A varint cut short, and one longer than ten bytes.
  EXPECT_EQ(NoteTextOfDocument(good + ProtoTag(4, 0) + "\x80\x80"), "");
  EXPECT_EQ(NoteTextOfDocument(good + ProtoTag(4, 0) + std::string(10, '\x81') + "\x01"), "");
  EXPECT_EQ(NoteTextOfDocument(good + "\x80"), "");
  // A fixed field cut short.
  EXPECT_EQ(NoteTextOfDocument(good + ProtoTag(4, 1) + "1234567"), "");
  // Groups, unknown wire types and field number zero.
  for (const uint32_t wireType : {3u, 4u, 6u, 7u}) {
    EXPECT_EQ(NoteTextOfDocument(good + ProtoTag(4, wireType)), "") << wireType;
  }
  EXPECT_EQ(NoteTextOfDocument(good + ProtoTag(0, 0) + "\x01"), "");
  // The wanted field with another wire type, at each level.
  EXPECT_EQ(NoteTextOfDocument(ProtoVarintField(2, 5)), "");
  EXPECT_EQ(NoteTextOfDocument(good + ProtoVarintField(2, 5)), "");
  EXPECT_EQ(NoteTextOfDocument(ProtoLengthField(2, ProtoVarintField(3, 1))), "");
  EXPECT_EQ(NoteTextOfDocument(ProtoLengthField(2, ProtoLengthField(3, ProtoVarintField(2, 1)))), "");
  // A missing level.
  EXPECT_EQ(NoteTextOfDocument(ProtoLengthField(2, note)), "");
  EXPECT_EQ(NoteTextOfDocument(""), "");
}

TEST(NoteDocument, DeepNestingIsOnlyReadThreeLevelsDown) {
  std::string nested = ProtoLengthField(2, "inner");
  for (int level = 0; level < 2000; ++level) nested = ProtoLengthField(3, nested);
  EXPECT_EQ(NoteTextOfDocument(ProtoLengthField(2, nested)), "");
}

TEST(NoteDocument, RandomBytesNeverReadPastTheirEnd) {
  std::mt19937 random(7);
  const std::string document = NoteDocument("seed text for the damage");
  for (int round = 0; round < 2000; ++round) {
    std::string bytes = document;
    for (int change = 0; change < 1 + round % 4; ++change) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    bytes.resize(random() % (bytes.size() + 1));
    const std::string text = NoteTextOfDocument(bytes);
    EXPECT_LE(text.size(), bytes.size());
    const std::string blob = Gzip(bytes);
    EXPECT_EQ(TextOf(blob), text);
    std::string raw(64, '\0');
    for (char& byte : raw) byte = static_cast<char>(random());
    EXPECT_EQ(TextOf(raw), "");
  }
}

}  // namespace
}  // namespace yhtest
