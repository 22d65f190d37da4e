#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "JsonWriter.h"
#include "Library.h"
#include "PlistJson.h"
#include "PlistXml.h"
#include "Render.h"

namespace yh {
namespace {

// A record with a node of every type, texts that need escaping or are not
// UTF-8, several lines and empty containers.
plist_t Record() {
  plist_t record = plist_new_dict();
  plist_dict_set_item(record, "text", plist_new_string("plain"));
  plist_dict_set_item(record, "escaped", plist_new_string("say \"hi\"\\\n\ttab\x01 \xE2\x80\x99"));
  plist_dict_set_item(record, "broken", plist_new_string("a\xff" "b\xE2\x80"));
  plist_dict_set_item(record, "count", plist_new_uint(18446744073709551615u));
  plist_dict_set_item(record, "real", plist_new_real(0.1));
  plist_dict_set_item(record, "whole", plist_new_real(3));
  plist_dict_set_item(record, "flag", plist_new_bool(1));
  plist_dict_set_item(record, "date", plist_new_date(600000000, 0));
  plist_dict_set_item(record, "data", plist_new_data("\x00\xff" "abcdefghijklmnopqrstuvwxyz0123456789abcdefghijklmnop", 54));
  plist_dict_set_item(record, "none", plist_new_array());
  plist_dict_set_item(record, "empty", plist_new_dict());
  plist_t list = plist_new_array();
  plist_array_append_item(list, plist_new_string("one"));
  plist_t inner = plist_new_dict();
  plist_dict_set_item(inner, "ké", plist_new_uid(7));
  plist_array_append_item(list, inner);
  plist_dict_set_item(record, "list", list);
  return record;
}

Plist Records() {
  Plist records(plist_new_array());
  plist_array_append_item(records.get(), Record());
  plist_array_append_item(records.get(), Record());
  return records;
}

std::string Written(plist_t node) {
  std::ostringstream out;
  WriteJson(out, node);
  return out.str();
}

TEST(YhStreamedText, JsonIsTheTextOfTheWholeValue) {
  const Plist records = Records();
  EXPECT_EQ(Written(records.get()), JsonText(ToJson(records.get())));
  EXPECT_EQ(Written(nullptr), "null");
  const Plist empty(plist_new_array());
  EXPECT_EQ(Written(empty.get()), "[]");
}

TEST(YhStreamedText, JsonObjectIsWrittenAsTheWholeObject) {
  const Plist records = Records();
  Json whole = Json::object();
  whole["first"] = ToJson(records.get());
  whole["nothing"] = ToJson(nullptr);
  whole["last"] = ToJson(plist_array_get_item(records.get(), 0));
  std::ostringstream out;
  JsonObjectWriter object(out);
  object.Key("first");
  WriteJson(out, records.get(), 1);
  object.Key("nothing");
  WriteJson(out, nullptr, 1);
  object.Key("last");
  WriteJson(out, plist_array_get_item(records.get(), 0), 1);
  object.Finish();
  EXPECT_EQ(out.str(), JsonText(whole));

  std::ostringstream none;
  JsonObjectWriter empty(none);
  empty.Finish();
  EXPECT_EQ(none.str(), JsonText(Json::object()));
}

std::string XmlOf(plist_t tree) {
  std::ostringstream out;
  WriteXml(out, tree);
  return out.str();
}

TEST(YhStreamedText, JsonArrayIsWrittenAsTheWholeArrayAtItsDepth) {
  const Plist records = Records();
  for (int depth : {0, 1}) {
    std::ostringstream whole;
    WriteJson(whole, records.get(), depth);
    std::ostringstream out;
    JsonArrayWriter array(out, depth);
    array.Add(plist_array_get_item(records.get(), 0));
    array.Add(plist_array_get_item(records.get(), 1));
    array.Finish();
    EXPECT_EQ(out.str(), whole.str());
  }
  std::ostringstream none;
  JsonArrayWriter empty(none, 1);
  empty.Finish();
  EXPECT_EQ(none.str(), "[]");
}

// The elements of `records` through an XmlArrayWriter.
void AddEach(XmlArrayWriter array, plist_t records) {
  for (uint32_t i = 0; i < plist_array_get_size(records); ++i) array.Add(plist_array_get_item(records, i));
  array.Finish();
}

TEST(YhStreamedText, XmlArrayIsWrittenAsTheWholeArray) {
  const Plist records = Records();
  std::ostringstream out;
  AddEach(XmlArrayWriter(out), records.get());
  EXPECT_EQ(out.str(), XmlOf(records.get()));
  const Plist empty(plist_new_array());
  std::ostringstream none;
  AddEach(XmlArrayWriter(none), empty.get());
  EXPECT_EQ(none.str(), XmlOf(empty.get()));
}

TEST(YhStreamedText, XmlArraysOfADictionaryAreWrittenAsTheWholeDictionary) {
  const Plist whole(plist_new_dict());
  plist_dict_set_item(whole.get(), "first", Records().release());
  plist_dict_set_item(whole.get(), "nothing", plist_new_array());
  const Plist records = Records();
  const Plist empty(plist_new_array());
  std::ostringstream out;
  XmlDictionaryWriter dictionary(out);
  AddEach(XmlArrayWriter(out, dictionary, "first"), records.get());
  AddEach(XmlArrayWriter(out, dictionary, "nothing"), empty.get());
  dictionary.Finish();
  EXPECT_EQ(out.str(), XmlOf(whole.get()));

  std::ostringstream none;
  XmlDictionaryWriter nothing(none);
  nothing.Finish();
  const Plist emptyDictionary(plist_new_dict());
  EXPECT_EQ(none.str(), XmlOf(emptyDictionary.get()));
}

// Each format, of an answer and of none, as WriteAnswer writes the whole.
TEST(YhStreamedText, RecordsWriterWritesWhatTheWholeAnswerGives) {
  const Kind& kind = *FindKind("calls");
  for (const Format format : {Format::Json, Format::Xml, Format::Csv, Format::Table}) {
    for (const bool given : {true, false}) {
      Plist records = given ? Records() : Plist();
      std::ostringstream whole;
      WriteAnswer(whole, format, {&kind, std::move(records)});
      const Plist again = Records();
      std::ostringstream out;
      RecordsWriter writer(out, format, kind);
      if (given) {
        writer.Add(plist_array_get_item(again.get(), 0));
        writer.Add(plist_array_get_item(again.get(), 1));
      }
      writer.Finish(given);
      EXPECT_EQ(out.str(), whole.str()) << static_cast<int>(format) << given;
    }
  }
}

}  // namespace
}  // namespace yh
