// yh_bench_deleted [MESSAGES] [ROUNDS] [FOLDER]: writes a backup whose sms.db
// holds MESSAGES messages (default 100,000) in 2,000 conversations, a fifth
// of them deleted without secure delete (every tenth message, and a run of
// whole pages), then, in UTC, asks the current service for the deleted
// messages and prints the share of the deleted messages still in the file
// that come back with every field right (text, date, direction, sender,
// service, country and conversation), those that come back with a field
// wrong or twice, and any not deleted at all; then the medians over ROUNDS
// (default 5) of GetDeletedContentList and GetContentList for messages, each
// on a freshly analysed record, and their ratio.
#include <plist/plist.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Rounds.h"
#include "Stopwatch.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/ScopedEnv.h"

namespace {

constexpr int kConversations = 2000;
constexpr int64_t kFirstDate = 583675200;  // 2019-07-01 12:00:00 UTC, seconds since 2001
const char kPrefix[] = "Deleted or kept message ";

// Message i: in conversation 1 + i % 2000, sent by the owner when i % 3 is
// 0, an iMessage when i is even, one second after message i - 1.
int ConversationOf(long id) { return 1 + static_cast<int>(id % kConversations); }

std::string Address(int conversation) {
  char text[16];
  std::snprintf(text, sizeof text, "+1555%07d", conversation);
  return text;
}

bool Deleted(long id, long messages) {
  const long runStart = messages * 2 / 5;
  return id % 10 == 0 || (id > runStart && id <= runStart + messages / 9);
}

std::string MessagesSql(long messages) {
  const long runStart = messages * 2 / 5;
  const std::string n = std::to_string(messages);
  return "PRAGMA secure_delete=OFF;\n" + yhtest::Schema("sms.db-ios13") +
         "BEGIN;\n"
         "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 2000) "
         "INSERT INTO handle (ROWID, id, service) SELECT i, printf('+1555%07d', i), 'iMessage' FROM c;\n"
         "INSERT INTO chat (ROWID, guid, style, chat_identifier) SELECT ROWID, 'iMessage;-;' || id, 45, id FROM handle;\n"
         "INSERT INTO chat_handle_join (chat_id, handle_id) SELECT ROWID, ROWID FROM handle;\n"
         "WITH RECURSIVE m(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM m WHERE i < " + n + ") "
         "INSERT INTO message (ROWID, guid, text, handle_id, date, is_from_me, service, country) "
         "SELECT i, printf('G%08d', i), printf('" + kPrefix + "%07d in conversation %04d', i, 1 + i % 2000), "
         "1 + i % 2000, (" + std::to_string(kFirstDate) + " + i) * 1000000000, i % 3 = 0, "
         "CASE WHEN i % 2 = 0 THEN 'iMessage' ELSE 'SMS' END, 'us' FROM m;\n"
         "INSERT INTO chat_message_join (chat_id, message_id, message_date) SELECT handle_id, ROWID, date FROM message;\n"
         "COMMIT;\n"
         "DELETE FROM message WHERE ROWID % 10 = 0 OR ROWID BETWEEN " + std::to_string(runStart + 1) + " AND " +
         std::to_string(runStart + messages / 9) + ";\n"
         "DELETE FROM chat_message_join WHERE message_id NOT IN (SELECT ROWID FROM message);\n";
}

std::string Text(plist_t dict, const char* key) {
  char* value = nullptr;
  plist_get_string_val(plist_dict_get_item(dict, key), &value);
  std::string text = value ? value : "";
  std::free(value);
  return text;
}

std::string UtcText(int64_t seconds2001) {
  const time_t when = static_cast<time_t>(seconds2001 + 978307200);
  std::tm fields{};
  gmtime_r(&when, &fields);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &fields);
  return text;
}

struct Tally {
  size_t right = 0;
  size_t wrong = 0;
  size_t twice = 0;
  size_t invented = 0;
};

// Each message of the answer against what was deleted.
Tally Judge(plist_t answer, long messages) {
  Tally tally;
  std::set<long> seen;
  for (uint32_t c = 0; answer && c < plist_array_get_size(answer); ++c) {
    plist_t conversation = plist_array_get_item(answer, c);
    const std::string id = Text(conversation, "id");
    plist_t list = plist_dict_get_item(conversation, "message");
    for (uint32_t m = 0; list && m < plist_array_get_size(list); ++m) {
      plist_t message = plist_array_get_item(list, m);
      long number = 0;
      int chat = 0;
      const std::string text = Text(message, "text");
      if (std::sscanf(text.c_str(), "Deleted or kept message %ld in conversation %d", &number, &chat) != 2 ||
          !Deleted(number, messages)) {
        ++tally.invented;
        continue;
      }
      if (!seen.insert(number).second) {
        ++tally.twice;
        continue;
      }
      uint64_t type = 2;
      plist_get_uint_val(plist_dict_get_item(message, "type"), &type);
      const bool mine = number % 3 == 0;
      const bool right = chat == ConversationOf(number) && id == Address(chat) &&
                         Text(message, "date") == UtcText(kFirstDate + number) && type == (mine ? 1u : 0u) &&
                         Text(message, "sender") == (mine ? "" : Address(chat)) &&
                         Text(message, "service") == (number % 2 == 0 ? "iMessage" : "SMS") &&
                         Text(message, "country") == "us";
      ++(right ? tally.right : tally.wrong);
    }
  }
  return tally;
}

// The deleted messages whose text is still somewhere in the file.
size_t Surviving(const std::string& file, long messages) {
  std::set<long> found;
  for (size_t at = file.find(kPrefix); at != std::string::npos; at = file.find(kPrefix, at + 1)) {
    const long number = std::atol(file.c_str() + at + sizeof kPrefix - 1);
    if (Deleted(number, messages)) found.insert(number);
  }
  return found.size();
}

// Milliseconds of one request on a freshly analysed record.
double Time(const std::string& backup, plist_t (*ask)(BackupDevice*, iDeviceContentType), plist_t* kept) {
  iDeviceBackupService* service = CreateCurrentDataRecoveryService();
  BackupDevice* device = GetBackupDeviceListAt(backup.c_str());
  service->AnalyzeBackup(device);
  plist_t answer = nullptr;
  const double milliseconds = bench::Milliseconds([&] { answer = ask(device, ContentSms); });
  if (kept) {
    *kept = answer;
  } else {
    plist_free(answer);
  }
  yhtest::FreeDeviceList(device);
  FreeiDeviceBackupService(service);
  return milliseconds;
}

iDeviceBackupService* gCurrent = nullptr;
plist_t AskLive(BackupDevice* device, iDeviceContentType type) { return gCurrent->GetContentList(device, type); }

}  // namespace

int main(int argc, char** argv) {
  const long messages = argc > 1 ? std::max(1000L, std::atol(argv[1])) : 100000;
  const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;
  yhtest::TempDir scratch;
  const std::string folder = argc > 3 ? argv[3] : scratch.Path() + "backup";
  yhtest::ScopedTimeZone utc("UTC");
  const char kSms[] = "Library/SMS/sms.db";
  const yhtest::BackupBuilder builder =
      yhtest::BackupBuilder(yhtest::IndexKind::ManifestDb).AddDatabase("HomeDomain", kSms, MessagesSql(messages));
  const std::string backup = builder.Write(folder);
  const std::string file = yhtest::ReadBytes(backup + builder.StoredPath("HomeDomain", kSms));
  long deleted = 0;
  for (long id = 1; id <= messages; ++id) deleted += Deleted(id, messages);
  gCurrent = CreateCurrentDataRecoveryService();
  plist_t answer = nullptr;
  Time(backup, GetDeletedContentList, &answer);
  const Tally tally = Judge(answer, messages);
  plist_free(answer);
  const size_t surviving = Surviving(file, messages);
  std::printf("sms.db: %.1f MB, %ld messages, %ld deleted, %zu of them still in the file\n", file.size() / 1e6,
              messages, deleted, surviving);
  const double share = surviving ? 100.0 * tally.right / surviving : 0;
  std::printf("recovered with every field right: %zu (%.1f %% of those in the file; goal 90 %%: %s)\n", tally.right,
              share, bench::Verdict(share >= 90));
  std::printf("recovered with a field wrong: %zu, twice: %zu, not deleted (invented): %zu (goal 0: %s)\n", tally.wrong,
              tally.twice, tally.invented, bench::Verdict(tally.invented == 0));
  std::vector<std::pair<double, double>> times;
  for (int round = 0; round < rounds; ++round) {
    times.emplace_back(Time(backup, GetDeletedContentList, nullptr), Time(backup, AskLive, nullptr));
  }
  const bench::Spread deletedTime = bench::SpreadOf(times, [](const auto& t) { return t.first; });
  const bench::Spread liveTime = bench::SpreadOf(times, [](const auto& t) { return t.second; });
  const double ratio = deletedTime.median / liveTime.median;
  std::printf("GetDeletedContentList(messages): median %.0f ms (%.0f-%.0f) of %d rounds\n", deletedTime.median,
              deletedTime.least, deletedTime.most, rounds);
  std::printf("GetContentList(messages): median %.0f ms (%.0f-%.0f)\n", liveTime.median, liveTime.least,
              liveTime.most);
  std::printf("ratio %.2f (goal at most 1.5: %s)\n", ratio, bench::Verdict(ratio <= 1.5));
  FreeiDeviceBackupService(gCurrent);
  return 0;
}
