#include "common/VCardFields.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(VCardFields, ReadsTheNameAndEveryNumberAsWritten) {
  const VCardFields fields = ReadVCardFields(
      "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Somerville;Mary;;;\r\nFN:Mary Somerville\r\n"
      "item1.TEL;type=CELL;waid=16175550199:+1 617-555-0199\r\nitem1.X-ABLabel:Mobile\r\n"
      "tel:+44 20 7946 0018\r\nEND:VCARD");
  EXPECT_EQ(fields.name, "Mary Somerville");
  EXPECT_EQ(fields.numbers, (std::vector<std::string>{"+1 617-555-0199", "+44 20 7946 0018"}));
}

TEST(VCardFields, JoinsFoldedLinesAndTheNamesOfSeveralCards) {
  const VCardFields fields = ReadVCardFields(
      "BEGIN:VCARD\nFN:Ada\n  Lovelace\nTEL:+44 7700\n 900123\nEND:VCARD_$!<VCard-Separator>!$_BEGIN:VCARD\n"
      "FN:Grace\nEND:VCARD");
  EXPECT_EQ(fields.name, "Ada Lovelace, Grace");
  EXPECT_EQ(fields.numbers, (std::vector<std::string>{"+44 7700900123"}));
}

TEST(VCardFields, NothingFromTextsThatAreNoCards) {
  for (const char* text : {"", "image/jpeg", ":", "FN:", "TEL", "\n\n\r\r"}) {
    const VCardFields fields = ReadVCardFields(text);
    EXPECT_EQ(fields.name, "") << text;
    EXPECT_TRUE(fields.numbers.empty()) << text;
  }
}

}  // namespace
