#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "DefaultLocation.h"
#include "Kinds.h"
#include "YhRun.h"

namespace yhtool {
namespace {

using Json = nlohmann::ordered_json;

const char* const kSamples[] = {kOldSample, kNewSample};

std::string SamplePath(const char* folder) { return Samples() + "/" + folder; }

YhResult Show(const std::string& backup, const std::string& kind, const std::string& format) {
  return Yh({"show", backup, kind, "--root", Samples(), "--format", format});
}

// The described service's answers, whose layout the format tests state.
YhResult ShowClassic(const std::string& backup, const std::string& kind, const std::string& format) {
  return Yh({"show", backup, kind, "--root", Samples(), "--format", format, "--classic"});
}

YhResult ShowDeleted(const std::string& backup, const std::string& kind, const std::string& format) {
  return Yh({"show", backup, kind, "--root", Samples(), "--format", format, "--deleted"});
}

// The JSON mirrors the plist: same key order, strings as strings, unsigned
// integers as unsigned numbers, booleans as booleans.
void ExpectSameTree(const Json& json, plist_t node, const std::string& where) {
  SCOPED_TRACE(where);
  switch (plist_get_node_type(node)) {
    case PLIST_ARRAY: {
      ASSERT_TRUE(json.is_array());
      ASSERT_EQ(json.size(), plist_array_get_size(node));
      for (uint32_t i = 0; i < json.size(); ++i) {
        ExpectSameTree(json[i], plist_array_get_item(node, i), where + "[" + std::to_string(i) + "]");
      }
      break;
    }
    case PLIST_DICT: {
      ASSERT_TRUE(json.is_object());
      ASSERT_EQ(json.size(), plist_dict_get_size(node));
      plist_dict_iter iter = nullptr;
      plist_dict_new_iter(node, &iter);
      for (const auto& [key, value] : json.items()) {
        char* plistKey = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iter, &plistKey, &item);
        EXPECT_EQ(key, plistKey);
        std::free(plistKey);
        ExpectSameTree(value, item, where + "." + key);
      }
      std::free(iter);
      break;
    }
    case PLIST_STRING: {
      char* text = nullptr;
      plist_get_string_val(node, &text);
      ASSERT_TRUE(json.is_string());
      // Each run writes the pictures into a private folder of its own.
      EXPECT_EQ(WithoutPrivateFolders(json.get<std::string>()), WithoutPrivateFolders(text));
      std::free(text);
      break;
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      EXPECT_TRUE(json.is_number_unsigned());
      EXPECT_EQ(json.get<uint64_t>(), value);
      break;
    }
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      EXPECT_TRUE(json.is_boolean());
      EXPECT_EQ(json.get<bool>(), value != 0);
      break;
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      EXPECT_TRUE(json.is_number_float());
      EXPECT_EQ(json.get<double>(), value);
      break;
    }
    default:
      ADD_FAILURE() << "a node type the answers do not hold";
  }
}

std::string LibplistXml(plist_t node) {
  char* xml = nullptr;
  uint32_t length = 0;
  plist_to_xml(node, &xml, &length);
  std::string text(xml, length);
  plist_to_xml_free(xml);
  return text;
}

// Rows of RFC 4180 text: quoted fields may hold commas, quotes and line ends.
std::vector<std::vector<std::string>> ParseCsv(const std::string& text) {
  std::vector<std::vector<std::string>> rows(1, std::vector<std::string>(1));
  bool quoted = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        rows.back().back() += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        rows.back().back() += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      rows.back().emplace_back();
    } else if (c == '\n') {
      rows.emplace_back(1);
    } else {
      rows.back().back() += c;
    }
  }
  rows.pop_back();  // after the last line end
  return rows;
}

// Rows a flattened answer has: one per record, or one per entry of a list
// the record holds (but those its kind keeps `inCells`).
size_t LeafRows(plist_t answer, const std::vector<std::string>& inCells = {}) {
  size_t rows = 0;
  for (uint32_t i = 0; answer && i < plist_array_get_size(answer); ++i) {
    plist_t record = plist_array_get_item(answer, i);
    size_t leaves = 0;
    for (const std::string nested : {"message", "properties", "participants"}) {
      if (std::find(inCells.begin(), inCells.end(), nested) != inCells.end()) continue;
      plist_t list = plist_dict_get_item(record, nested.c_str());
      if (!list) continue;
      leaves += plist_get_node_type(list) == PLIST_ARRAY ? plist_array_get_size(list) : plist_dict_get_size(list);
    }
    rows += leaves ? leaves : 1;
  }
  return rows;
}

// One element per character, for columns counted as a terminal shows them.
std::u32string Characters(const std::string& utf8) {
  std::u32string characters;
  for (unsigned char c : utf8) {
    if ((c & 0xC0) != 0x80) characters += U'.';
    if (c == ' ') characters.back() = U' ';
  }
  return characters;
}

TEST(YhShow, JsonKeepsTheOrderAndTypesOfEveryAnswer) {
  for (const char* sample : kSamples) {
    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(std::string(sample) + " " + kind.name);
      const YhResult run = Show(sample, kind.name, "json");
      ASSERT_EQ(run.code, 0);
      EXPECT_EQ(run.err, "");
      const yh::Plist answer = Answer(SamplePath(sample), kind.contentType);
      if (!answer && kind.contentType >= ContentWhatsApp && sample == std::string(kOldSample)) {
        EXPECT_EQ(run.out, "null\n") << "the old sample holds no WhatsApp";
        continue;
      }
      ASSERT_TRUE(answer) << "every other kind has records in the samples";
      EXPECT_GT(plist_array_get_size(answer.get()), 0u);
      ExpectSameTree(Json::parse(run.out), answer.get(), kind.name);
    }
  }
}

TEST(YhShow, XmlIsLibplistsOwn) {
  for (const char* sample : kSamples) {
    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(std::string(sample) + " " + kind.name);
      const YhResult run = Show(sample, std::to_string(kind.contentType), "xml");
      ASSERT_EQ(run.code, 0);
      const yh::Plist answer = Answer(SamplePath(sample), kind.contentType);
      // A kind with nothing is an empty array: a property list has no null.
      const yh::Plist empty(plist_new_array());
      EXPECT_EQ(WithoutPrivateFolders(run.out),
                WithoutPrivateFolders(LibplistXml(answer ? answer.get() : empty.get())));
    }
  }
}

TEST(YhShow, CsvHasAHeaderAndOneRowPerRecordOrLeaf) {
  for (const char* sample : kSamples) {
    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(std::string(sample) + " " + kind.name);
      const YhResult run = ShowClassic(sample, kind.name, "csv");
      ASSERT_EQ(run.code, 0);
      const auto rows = ParseCsv(run.out);
      ASSERT_FALSE(rows.empty());
      EXPECT_EQ(rows.front(), kind.columns);
      EXPECT_EQ(rows.size() - 1, LeafRows(Answer(SamplePath(sample), kind.contentType, true).get()));
      for (const auto& row : rows) EXPECT_EQ(row.size(), kind.columns.size());
    }
  }
}

TEST(YhShow, TableAlignsTheColumns) {
  for (const char* sample : kSamples) {
    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(std::string(sample) + " " + kind.name);
      const YhResult run = ShowClassic(sample, kind.name, "table");
      ASSERT_EQ(run.code, 0);
      const std::vector<std::string> lines = Lines(run.out);
      ASSERT_FALSE(lines.empty());
      EXPECT_EQ(lines.size() - 1, LeafRows(Answer(SamplePath(sample), kind.contentType, true).get()));
      EXPECT_EQ(lines.front().rfind(kind.columns.front() + "  ", 0), 0u);
      // The second column starts at the same place on every line.
      const size_t second = lines.front().find(kind.columns[1]);
      for (const std::string& line : lines) EXPECT_EQ(Characters(line).substr(second - 2, 2), U"  ") << line;
    }
  }
}

TEST(YhShow, CallsAsCsv) {
  const YhResult run = ShowClassic(kOldSample, "calls", "csv");
  EXPECT_EQ(OutOf(run),
            "name,address,date,type,duration,country_code,network_code,location\n"
            "John Appleseed,+14085550123,2014-07-01 09:15:32,Incoming,00:05:12,310,410,\n"
            "Kate Bell,+15555648583,2014-07-02 18:40:05,Outgoing,00:01:35,310,410,\n"
            ",+442079460000,2014-07-03 12:05:47,Incoming,00:00:00,310,410,\n"
            "Anna Haro,+15555228243,2014-07-04 08:30:00,Outgoing,00:21:00,310,410,\n");
}

TEST(YhShow, MessagesAreOneRowPerMessageWithTheirThread) {
  const YhResult run = ShowClassic(kNewSample, "messages", "csv");
  const auto rows = ParseCsv(OutOf(run));
  ASSERT_EQ(rows.size(), 6u);
  EXPECT_EQ(rows[1], (std::vector<std::string>{"+16175550199", "+16175550199", "Mary Somerville", "us", "iMessage",
                                               "Did you see the comet last night?", "2023-09-11 07:30:05", "0"}));
  EXPECT_EQ(rows[5], (std::vector<std::string>{"+442079460018", "+442079460018", "Charles Babbage", "gb", "SMS",
                                               "No problem, I will bring the tickets.", "2023-09-10 09:50:21", "1"}));
  EXPECT_TRUE(Contains(run.out,
                       "\n+442079460018,+442079460018,Charles Babbage,gb,SMS,"
                       "\"Train delayed, starting at 10:30 instead\",2023-09-10 09:48:00,0\n"));
}

TEST(YhShow, TheCurrentServiceIsTheDefaultAndItsExtraKeysFollowTheDescribedColumns) {
  const auto calls = ParseCsv(OutOf(Show(kOldSample, "calls", "csv")));
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front(), (std::vector<std::string>{"name", "address", "date", "type", "duration", "country_code",
                                                     "network_code", "location", "answered", "service"}));
  const auto messages = ParseCsv(OutOf(Show(kNewSample, "messages", "csv")));
  ASSERT_FALSE(messages.empty());
  const std::vector<std::string> described = yh::FindKind("messages")->columns;
  EXPECT_EQ(std::vector<std::string>(messages.front().begin(), messages.front().begin() + described.size()), described);
  EXPECT_NE(OutOf(Show(kNewSample, "messages", "json")), OutOf(ShowClassic(kNewSample, "messages", "json")));
}

// One row per message: a conversation's participants fill a column of its rows.
TEST(YhShow, MessagesAsCsvGiveParticipantsInAColumnOfTheConversationsRows) {
  const auto rows = ParseCsv(OutOf(Show(kNewSample, "messages", "csv")));
  ASSERT_EQ(rows.size(), 1 + 5u) << "a header and five messages";
  const auto column = std::find(rows[0].begin(), rows[0].end(), "participants") - rows[0].begin();
  ASSERT_LT(static_cast<size_t>(column), rows[0].size());
  EXPECT_EQ(rows[1][column], R"([{"address":"+16175550199","name":"Mary Somerville"}])");
  EXPECT_EQ(rows[5][column], R"([{"address":"+442079460018","name":"Charles Babbage"}])");
  for (const auto& row : rows) EXPECT_EQ(row.size(), rows[0].size());
}

// One row per event: its organizer and invitees fill a cell each.
TEST(YhShow, EventsAsCsvGiveTheirPeopleInACellEach) {
  const auto rows = ParseCsv(OutOf(Show(kNewSample, "events", "csv")));
  ASSERT_EQ(rows.size(), 1 + 2u) << "a header and two events";
  const std::vector<std::string> tail(rows[0].end() - 6, rows[0].end());
  EXPECT_EQ(tail, (std::vector<std::string>{"time_zone", "calendar", "organizer", "invitees", "latitude",
                                             "longitude"}));
  EXPECT_EQ(std::vector<std::string>(rows[1].end() - 5, rows[1].end()),
            (std::vector<std::string>{"Home", R"({"name":"Mary Somerville","address":"mary.somerville@example.com"})",
                                      R"([{"name":"Charles Babbage","address":"charles@example.org"}])", "51.5099",
                                      "-0.1425"}));
  EXPECT_EQ(std::vector<std::string>(rows[2].end() - 5, rows[2].end()),
            (std::vector<std::string>{"Work", R"({"name":"","address":""})", "[]", "", ""}));
}

TEST(YhShow, VoicemailComesFromTheCurrentServiceOnly) {
  const std::string header = "name,address,date,duration,heard,deleted,path,size,present,file_name\n";
  const std::string backup = SamplePath(kNewSample) + "/";
  EXPECT_EQ(OutOf(Show(kNewSample, "voicemail", "csv")),
            header + ",+14155550100,2023-09-11 16:20:09,00:00:18,true,true," + backup +
                "20/20ed83be4a9cafa4190cb7977a91f5093c97fd08,1406,true,2.amr\n"
                "Mary Somerville,+16175550199,2023-09-08 12:04:51,00:00:41,false,false," +
                backup + "51/51cb8449dcb7daaad6e62b150673a8e424877e5f,3106,true,1.amr\n");
  EXPECT_EQ(OutOf(ShowClassic(kNewSample, "voicemail", "json")), "null\n");
  EXPECT_EQ(OutOf(ShowClassic(kNewSample, "11", "csv")), header);
}

TEST(YhShow, WhatsAppComesFromTheCurrentServiceOnly) {
  EXPECT_EQ(OutOf(Show(kNewSample, "whatsapp-calls", "csv")),
            "name,address,date,type,duration,country_code,network_code,location,answered,service,group,"
            "participants.address,participants.name\n"
            "\"Mary Somerville, Charles Babbage\",\"16175550199, 442079460018\",2023-09-11 20:00:00,Outgoing,00:21:00,,,,"
            "true,WhatsApp Video,true,16175550199,Mary Somerville\n"
            "\"Mary Somerville, Charles Babbage\",\"16175550199, 442079460018\",2023-09-11 20:00:00,Outgoing,00:21:00,,,,"
            "true,WhatsApp Video,true,442079460018,Charles Babbage\n"
            "Mary Somerville,16175550199,2023-09-10 18:00:00,Incoming,00:05:12,,,,true,WhatsApp Audio,false,16175550199,"
            "Mary Somerville\n");
  const auto chats = nlohmann::json::parse(OutOf(Show(kNewSample, "12", "json")));
  ASSERT_EQ(chats.size(), 2u);
  EXPECT_EQ(chats[0]["another"], "Mary Somerville");
  EXPECT_EQ(chats[0]["message"][1]["starred"], true);
  EXPECT_EQ(chats[0]["message"][2]["kind"], "image");
  EXPECT_EQ(chats[0]["message"][2]["attachments"][0]["present"], true);
  EXPECT_EQ(chats[1]["chat_kind"], "group");
  EXPECT_EQ(chats[1]["message"][1]["quoted_text"], "The engine drawings are ready.");
  EXPECT_EQ(chats[1]["message"][2]["kind"], "voice note");
  EXPECT_EQ(OutOf(ShowClassic(kNewSample, "whatsapp", "json")), "null\n");
  EXPECT_EQ(OutOf(ShowClassic(kNewSample, "13", "json")), "null\n");
}

TEST(YhShow, ContactPropertiesAreOneRowEachWithThePersonsId) {
  const auto rows = ParseCsv(OutOf(Show(kOldSample, "contacts", "csv")));
  ASSERT_EQ(rows.size(), 7u);
  EXPECT_EQ(rows[3], (std::vector<std::string>{"2", "Kate Bell", "Creative Consulting", "", "", "", "Producer", "",
                                               "2014-02-03 18:30:00", "Mobile", "+1 (555) 564-8583", "", "", "",
                                               "0"}));
  EXPECT_EQ(rows[4][0], "2");
  EXPECT_EQ(rows[4][9], "Home");
}

TEST(YhShow, NoteBodiesKeepTheirLineBreaksInCsvAndLoseThemInTables) {
  const YhResult csv = Show(kNewSample, "notes", "csv");
  EXPECT_TRUE(Contains(OutOf(csv), ",Packing list,\"Packing list\nPassport\nCharger\nSunscreen\",false,\n"));
  const YhResult table = Show(kNewSample, "notes", "table");
  EXPECT_TRUE(Contains(OutOf(table), "Packing list  Packing list Passport Charger Sunscreen   false\n"));
}

// `all` as JSON: every kind in order, each as `show` gives it alone.
void ExpectEveryKindInOrder(const Json& all, const std::function<YhResult(const std::string& kind)>& show) {
  ASSERT_EQ(all.size(), yh::Kinds().size());
  size_t i = 0;
  for (const auto& [name, answer] : all.items()) {
    const yh::Kind& kind = yh::Kinds()[i++];
    EXPECT_EQ(name, kind.name);
    EXPECT_EQ(WithoutCopyPaths(answer), WithoutCopyPaths(Json::parse(OutOf(show(kind.name)))));
  }
}

TEST(YhShow, AllGivesEveryKindInOrder) {
  for (const char* sample : kSamples) {
    SCOPED_TRACE(sample);
    const YhResult json = Show(sample, "all", "json");
    ASSERT_EQ(json.code, 0);
    ExpectEveryKindInOrder(Json::parse(json.out), [&](const std::string& kind) { return Show(sample, kind, "json"); });

    const YhResult xml = Show(sample, "all", "xml");
    EXPECT_EQ(xml.code, 0);
    plist_t tree = nullptr;
    plist_from_xml(xml.out.data(), static_cast<uint32_t>(xml.out.size()), &tree);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(plist_dict_get_size(tree), yh::Kinds().size());
    EXPECT_EQ(LibplistXml(plist_dict_get_item(tree, "notes")), OutOf(Show(sample, "notes", "xml")));
    plist_free(tree);
    // Written record by record, laid out as libplist lays out the whole dictionary.
    const yh::Plist whole(plist_new_dict());
    for (const yh::Kind& kind : yh::Kinds()) {
      yh::Plist answer = Answer(SamplePath(sample), kind.contentType);
      plist_dict_set_item(whole.get(), kind.name.c_str(), answer ? answer.release() : plist_new_array());
    }
    EXPECT_EQ(WithoutPrivateFolders(xml.out), WithoutPrivateFolders(LibplistXml(whole.get())));

    const YhResult csv = Show(sample, "all", "csv");
    EXPECT_TRUE(Contains(OutOf(csv), "# calls\n" + OutOf(Show(sample, "calls", "csv")) + "\n# contacts\n"));
    const YhResult table = Show(sample, "all", "table");
    EXPECT_TRUE(Contains(OutOf(table), "other-photos: 1 record\n" + OutOf(Show(sample, "other-photos", "table"))));
    EXPECT_EQ(table.out.rfind("calls: 4 records\n", 0), 0u);
  }
}

// The deleted records are the library's, in every format, with their
// deletion's keys after the kind's own; a kind with none is null.
TEST(YhShow, DeletedGivesWhatTheOwnerDeletedInEveryFormat) {
  for (const char* sample : kSamples) {
    for (const yh::Kind& kind : yh::Kinds()) {
      SCOPED_TRACE(std::string(sample) + " " + kind.name);
      const yh::Plist answer = DeletedAnswer(SamplePath(sample), kind.contentType);
      const YhResult json = ShowDeleted(sample, kind.name, "json");
      ASSERT_EQ(json.code, 0);
      if (answer) {
        ExpectSameTree(Json::parse(json.out), answer.get(), kind.name);
      } else {
        EXPECT_EQ(json.out, "null\n");
      }
      const yh::Plist empty(plist_new_array());
      EXPECT_EQ(OutOf(ShowDeleted(sample, kind.name, "xml")), LibplistXml(answer ? answer.get() : empty.get()));
      const auto rows = ParseCsv(OutOf(ShowDeleted(sample, kind.name, "csv")));
      ASSERT_FALSE(rows.empty());
      EXPECT_EQ(rows.size() - 1, LeafRows(answer.get(), kind.inCells));
      const std::vector<std::string> lines = Lines(OutOf(ShowDeleted(sample, kind.name, "table")));
      EXPECT_EQ(lines.size(), rows.size());
    }
  }
  const auto calls = ParseCsv(OutOf(ShowDeleted(kNewSample, "calls", "csv")));
  ASSERT_EQ(calls.size(), 2u);
  const std::vector<std::string> columns = yh::FindKind("calls")->columns;
  EXPECT_EQ(std::vector<std::string>(calls[0].end() - 2, calls[0].end()),
            (std::vector<std::string>{"deleted_from", "deleted_date"}));
  EXPECT_EQ(std::vector<std::string>(calls[0].begin(), calls[0].begin() + columns.size()), columns);
  EXPECT_EQ(calls[1][2], "2023-09-11 19:04:12");
  const auto messages = Json::parse(OutOf(ShowDeleted(kNewSample, "messages", "json")));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0]["id"], "+16175550199");
  EXPECT_EQ(messages[0]["message"][0]["text"], "Forget the comet, it was a satellite.");
  EXPECT_TRUE(messages[0]["message"][0].contains("deleted_from"));
}

TEST(YhShow, AllDeletedGivesEveryKindInOrder) {
  ExpectEveryKindInOrder(Json::parse(OutOf(ShowDeleted(kNewSample, "all", "json"))),
                         [](const std::string& kind) { return ShowDeleted(kNewSample, kind, "json"); });
  const std::string table = OutOf(ShowDeleted(kNewSample, "all", "table"));
  EXPECT_EQ(table.rfind("calls: 1 record\n" + OutOf(ShowDeleted(kNewSample, "calls", "table")) + "\ncontacts: 0 records\n", 0),
            0u);
  EXPECT_TRUE(Contains(OutOf(ShowDeleted(kNewSample, "all", "csv")),
                       "# messages\n" + OutOf(ShowDeleted(kNewSample, "messages", "csv")) + "\n# attachments\n"));
}

TEST(YhShow, TheBackupIsNamedByPathFolderPrefixOrDeviceName) {
  const std::string expected = OutOf(Show(kNewSample, "calls", "json"));
  const std::vector<std::string> names = {SamplePath(kNewSample), SamplePath(kNewSample) + "/", "00008101",
                                          "Ada’s iPhone", "Ada's iPhone"};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const YhResult run = Yh({"show", name, "calls", "--root", Samples()});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, expected);
  }
  EXPECT_EQ(OutOf(Yh({"show", SamplePath(kNewSample), "calls"})), expected) << "a path needs no root";
  EXPECT_EQ(OutOf(Yh({"show", "Ada’s iPhone", "calls"}, SamplesByDefault())), expected);
}

TEST(YhShow, JsonIsTheDefaultFormat) {
  EXPECT_EQ(OutOf(Yh({"show", kOldSample, "safari", "--root", Samples()})), OutOf(Show(kOldSample, "safari", "json")));
}

}  // namespace
}  // namespace yhtool
