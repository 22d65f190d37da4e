#include "kinds/current/PhoneDirectory.h"

#include <gtest/gtest.h>

namespace {

std::string NameOf(const PhoneDirectory& directory, const std::string& address) {
  const std::string* name = directory.Find(address);
  return name ? *name : "(none)";
}

TEST(PhoneDirectory, NumbersMatchByTheirDigits) {
  PhoneDirectory directory;
  directory.Add("+1 (617) 555-0199", "Ada");
  EXPECT_EQ(NameOf(directory, "+1 (617) 555-0199"), "Ada");
  EXPECT_EQ(NameOf(directory, "16175550199"), "Ada");
  EXPECT_EQ(NameOf(directory, "(617) 555-0199"), "Ada");
  EXPECT_EQ(NameOf(directory, "617.555.0199"), "Ada");
  EXPECT_EQ(NameOf(directory, "+1 617 555 0198"), "(none)");
}

TEST(PhoneDirectory, NumbersOfSeveralCountriesMatchWithAndWithoutTheirCountryCode) {
  PhoneDirectory directory;
  directory.Add("+44 20 7946 0958", "Grace");         // United Kingdom
  directory.Add("030 1234567", "Hedy");               // Germany, stored without the country code
  directory.Add("+33 6 12 34 56 78", "Marie");        // France
  directory.Add("090-1234-5678", "Yoshiko");          // Japan
  EXPECT_EQ(NameOf(directory, "020 7946 0958"), "Grace");
  EXPECT_EQ(NameOf(directory, "0044 20 7946 0958"), "Grace");
  EXPECT_EQ(NameOf(directory, "+49 30 1234567"), "Hedy");
  EXPECT_EQ(NameOf(directory, "06 12 34 56 78"), "Marie");
  EXPECT_EQ(NameOf(directory, "+81 90-1234-5678"), "Yoshiko");
}

TEST(PhoneDirectory, ShortCodesMatchOnlyWhole) {
  PhoneDirectory directory;
  directory.Add("72345", "Bank");
  EXPECT_EQ(NameOf(directory, "72345"), "Bank");
  EXPECT_EQ(NameOf(directory, "2345"), "(none)");
  EXPECT_EQ(NameOf(directory, "172345"), "(none)");
}

TEST(PhoneDirectory, AddressesMatchWithoutRegardToCase) {
  PhoneDirectory directory;
  directory.Add("Ada.Lovelace@Example.org", "Ada");
  EXPECT_EQ(NameOf(directory, "ada.lovelace@example.org"), "Ada");
  EXPECT_EQ(NameOf(directory, "ADA.LOVELACE@EXAMPLE.ORG"), "Ada");
  EXPECT_EQ(NameOf(directory, "ada@example.org"), "(none)");
}

TEST(PhoneDirectory, TheFirstPersonAddedWins) {
  PhoneDirectory directory;
  directory.Add("+1 617 555 0199", "First");
  directory.Add("617-555-0199", "Second");
  directory.Add("a@b.c", "First");
  directory.Add("A@B.C", "Second");
  EXPECT_EQ(NameOf(directory, "6175550199"), "First");
  EXPECT_EQ(NameOf(directory, "a@b.c"), "First");
}

TEST(PhoneDirectory, NothingMatchesNothing) {
  PhoneDirectory directory;
  directory.Add("", "Nobody");
  directory.Add("no digits", "Nobody");
  EXPECT_EQ(NameOf(directory, ""), "(none)");
  EXPECT_EQ(NameOf(directory, "+"), "(none)");
  EXPECT_EQ(PhoneDirectory::NumberKey("+1 (617) 555-0199"), "16175550199");
  EXPECT_EQ(PhoneDirectory::NumberKey("0044 20"), "4420");
}

}  // namespace
