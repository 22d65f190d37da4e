#include "common/PlistHelpers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <string>

#include "support/BackupBuilder.h"
#include "support/SystemFiles.h"

namespace {

const char kXmlPlist[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n"
    "<dict>\n"
    "  <key>Device Name</key><string>Phone</string>\n"
    "  <key>Date</key><date>2001-01-01T00:00:10Z</date>\n"
    "  <key>IsEncrypted</key><true/>\n"
    "  <key>Count</key><integer>3</integer>\n"
    "</dict>\n"
    "</plist>\n";

std::string StringOf(plist_t node) {
  std::string text = "<not a string>";
  PlistGetString(node, &text);
  return text;
}

// The sample dictionary in binary form.
std::string BinaryPlistBytes() {
  plist_t root = nullptr;
  plist_from_xml(kXmlPlist, sizeof kXmlPlist - 1, &root);
  char* bytes = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  std::string copy(bytes, length);
  std::free(bytes);
  plist_free(root);
  return copy;
}

void ExpectSampleDictionary(plist_t root) {
  ASSERT_NE(root, nullptr);
  ASSERT_EQ(plist_get_node_type(root), PLIST_DICT);
  EXPECT_EQ(StringOf(plist_dict_get_item(root, "Device Name")), "Phone");
  EXPECT_EQ(PlistGetDateSeconds(plist_dict_get_item(root, "Date")), 10);
  EXPECT_EQ(PlistGetBool(plist_dict_get_item(root, "IsEncrypted")), 1u);
}

TEST(PlistHelpers, ReadsXml) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "Info.plist";
  yhtest::WriteFile(path, kXmlPlist);
  plist_t root = ReadPlist(path.c_str());
  ExpectSampleDictionary(root);
  plist_free(root);
}

TEST(PlistHelpers, ReadsBinary) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "Manifest.plist";
  yhtest::WriteFile(path, BinaryPlistBytes());
  plist_t root = ReadPlist(path.c_str());
  ExpectSampleDictionary(root);
  plist_free(root);
}

TEST(PlistHelpers, MissingOrEmptyFileGivesNull) {
  yhtest::TempDir dir;
  const std::string missing = dir.Path() + "missing.plist";
  EXPECT_EQ(ReadPlist(missing.c_str()), nullptr);
  struct stat info;
  EXPECT_NE(stat(missing.c_str(), &info), 0);
  const std::string empty = dir.Path() + "empty.plist";
  yhtest::WriteFile(empty, "");
  EXPECT_EQ(ReadPlist(empty.c_str()), nullptr);
}

// An empty FIFO has size 0, and opening it for reading would block until a
// writer comes: ReadPlist must return at once without opening it.
TEST(PlistHelpers, EmptyFileIsNotOpened) {
  yhtest::TempDir dir;
  const std::string path = dir.Path() + "fifo.plist";
  if (!yhtest::HasFifos()) GTEST_SKIP() << yhtest::WhyNoFifos();
  ASSERT_TRUE(yhtest::MakeFifo(path));
  std::future<plist_t> result = std::async(std::launch::async, ReadPlist, path.c_str());
  const bool returned = result.wait_for(std::chrono::seconds(2)) == std::future_status::ready;
  EXPECT_TRUE(returned) << "ReadPlist opened a file of size 0";
  if (!returned) {
    // Release the blocked reader so that the test can end.
    yhtest::ReleaseFifo(path);
  }
  plist_t root = result.get();
  EXPECT_EQ(root, nullptr);
  plist_free(root);
}

TEST(PlistHelpers, UnparsableFileGivesNull) {
  yhtest::TempDir dir;
  const std::string text = dir.Path() + "text.plist";
  yhtest::WriteFile(text, "neither binary nor xml");
  EXPECT_EQ(ReadPlist(text.c_str()), nullptr);
  const std::string fakeBinary = dir.Path() + "fake.plist";
  yhtest::WriteFile(fakeBinary, std::string("bplist00") + std::string(40, '\x01'));
  EXPECT_EQ(ReadPlist(fakeBinary.c_str()), nullptr);
  const std::string brokenXml = dir.Path() + "broken.plist";
  yhtest::WriteFile(brokenXml, std::string(kXmlPlist, 120));
  EXPECT_EQ(ReadPlist(brokenXml.c_str()), nullptr);
}

TEST(PlistHelpers, FolderGivesNull) {
  yhtest::TempDir dir;
  EXPECT_EQ(ReadPlist(dir.Path().c_str()), nullptr);
}

TEST(PlistHelpers, IsBinPlist) {
  yhtest::TempDir dir;
  const std::string binary = dir.Path() + "b.plist";
  yhtest::WriteFile(binary, BinaryPlistBytes());
  EXPECT_EQ(IsBinPlist(binary.c_str()), 1);
  const std::string xml = dir.Path() + "x.plist";
  yhtest::WriteFile(xml, kXmlPlist);
  EXPECT_EQ(IsBinPlist(xml.c_str()), 0);
  const std::string shortFile = dir.Path() + "s.plist";
  yhtest::WriteFile(shortFile, "bplist0");
  EXPECT_EQ(IsBinPlist(shortFile.c_str()), 0);
  EXPECT_EQ(IsBinPlist((dir.Path() + "missing").c_str()), 0);
}

TEST(PlistHelpers, InsertDictStringStoresNullAsEmpty) {
  plist_t dict = plist_new_dict();
  InsertPlistDictString(dict, "null", nullptr);
  InsertPlistDictString(dict, "empty", "");
  char value[] = "text";
  InsertPlistDictString(dict, "text", value);
  value[0] = 'X';
  EXPECT_EQ(plist_dict_get_size(dict), 3u);
  EXPECT_EQ(StringOf(plist_dict_get_item(dict, "null")), "");
  EXPECT_EQ(StringOf(plist_dict_get_item(dict, "empty")), "");
  EXPECT_EQ(StringOf(plist_dict_get_item(dict, "text")), "text");
  plist_free(dict);
}

TEST(PlistHelpers, NoneValueForNullOrEmpty) {
  plist_t dict = plist_new_dict();
  AddNoneValuePlistDictString(dict, "empty", "");
  AddNoneValuePlistDictString(dict, "null", nullptr);
  AddNoneValuePlistDictString(dict, "text", "x");
  EXPECT_EQ(StringOf(plist_dict_get_item(dict, "empty")), "(None)");
  EXPECT_EQ(StringOf(plist_dict_get_item(dict, "null")), "(None)");
  EXPECT_EQ(StringOf(plist_dict_get_item(dict, "text")), "x");
  plist_free(dict);
}

TEST(PlistHelpers, AppendArrayString) {
  plist_t array = plist_new_array();
  AppendPlistArrayString(array, nullptr);
  AppendPlistArrayString(array, "b");
  ASSERT_EQ(plist_array_get_size(array), 2u);
  EXPECT_EQ(StringOf(plist_array_get_item(array, 0)), "");
  EXPECT_EQ(StringOf(plist_array_get_item(array, 1)), "b");
  plist_free(array);
}

TEST(PlistHelpers, CopyZeroAndCopyEmptyString) {
  plist_t zero = PlistCopyZero(nullptr);
  ASSERT_EQ(plist_get_node_type(zero), PLIST_UINT);
  uint64_t number = 99;
  plist_get_uint_val(zero, &number);
  EXPECT_EQ(number, 0u);
  plist_free(zero);

  plist_t empty = PlistCopyEmptyString(nullptr);
  EXPECT_EQ(StringOf(empty), "");
  plist_free(empty);

  plist_t original = plist_new_string("kept");
  plist_t copy = PlistCopyZero(original);
  EXPECT_NE(copy, original);
  EXPECT_EQ(StringOf(copy), "kept");
  plist_free(copy);
  copy = PlistCopyEmptyString(original);
  EXPECT_NE(copy, original);
  EXPECT_EQ(StringOf(copy), "kept");
  plist_free(copy);
  plist_free(original);
}

TEST(PlistHelpers, PrintPlistWritesXmlAndALineEnd) {
  plist_t node = plist_new_string("shown");
  testing::internal::CaptureStdout();
  PrintPlist(node);
  PrintPlist(nullptr);
  const std::string output = testing::internal::GetCapturedStdout();
  EXPECT_NE(output.find("<string>shown</string>"), std::string::npos) << output;
  EXPECT_EQ(output.rfind("<?xml", 0), 0u) << output;
  EXPECT_EQ(output.back(), '\n');
  plist_free(node);
}

TEST(PlistHelpers, StdFreeReleasesLibplistText) {
  plist_t node = plist_new_string("abc");
  char* text = nullptr;
  plist_get_string_val(node, &text);
  ASSERT_NE(text, nullptr);
  EXPECT_STREQ(text, "abc");
  plist_std_free(text);
  plist_free(node);
}

TEST(PlistHelpers, GetStringOnlyFromStringNodes) {
  std::string out = "untouched";
  plist_t number = plist_new_uint(5);
  EXPECT_FALSE(PlistGetString(number, &out));
  EXPECT_FALSE(PlistGetString(nullptr, &out));
  EXPECT_EQ(out, "untouched");
  plist_t text = plist_new_string("");
  EXPECT_TRUE(PlistGetString(text, &out));
  EXPECT_EQ(out, "");
  plist_free(text);
  plist_free(number);
}

TEST(PlistHelpers, DateSecondsOnlyFromDateNodes) {
  plist_t date = plist_new_date(123456789, 999999);
  plist_t text = plist_new_string("2001-01-01T00:00:10Z");
  EXPECT_EQ(PlistGetDateSeconds(date), 123456789);
  EXPECT_EQ(PlistGetDateSeconds(text), 0);
  EXPECT_EQ(PlistGetDateSeconds(nullptr), 0);
  plist_free(text);
  plist_free(date);
}

TEST(PlistHelpers, BoolOnlyFromBooleanNodes) {
  plist_t yes = plist_new_bool(1);
  plist_t no = plist_new_bool(0);
  plist_t number = plist_new_uint(1);
  EXPECT_EQ(PlistGetBool(yes), 1u);
  EXPECT_EQ(PlistGetBool(no), 0u);
  EXPECT_EQ(PlistGetBool(number), 0u);
  EXPECT_EQ(PlistGetBool(nullptr), 0u);
  plist_free(number);
  plist_free(no);
  plist_free(yes);
}

}  // namespace
