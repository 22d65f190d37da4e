#include "kinds/current/CallHistory.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "common/PlistHelpers.h"
#include "common/SortByMoving.h"
#include "kinds/LocalDatabase.h"
#include "kinds/current/CallReaders.h"
#include "kinds/current/NewestFirst.h"

namespace current {
namespace {

using Reader = std::vector<CallHistory::Call> (*)(Database&);

// Each call log with its reader; the old one first.
const std::pair<const char*, Reader> kCallLogs[] = {
    {"Library/CallHistory/call_history.db", ReadCallDatabase},
    {"Library/CallHistoryDB/CallHistory.storedata", ReadCallStore},
};

}  // namespace

void CallHistory::Read(const BackupDevice* device) {
  read_ = true;
  std::vector<Call> read;
  for (const auto& [path, reader] : kCallLogs) {
    for (const StoredFile& file : StoredFilesAt(device, path)) {
      Database database = OpenStoredDatabase(device, file);
      std::vector<Call> calls = reader(database);
      if (read.empty()) {
        read = std::move(calls);
      } else {
        read.reserve(read.size() + calls.size());
        std::move(calls.begin(), calls.end(), std::back_inserter(read));
      }
    }
  }
  // Newest first across every log; calls without a date last.
  calls_ = StableSortedByMoving(std::move(read), [](const Call& a, const Call& b) { return Newer(a.instant, b.instant); });
  // Kept for every later request: spare room would be kept too.
  calls_.shrink_to_fit();
  for (Call& call : calls_) {
    if (!call.texts.View(kCallName).empty()) continue;
    const std::string address(call.texts.View(kCallAddress));
    if (const std::string* name = contacts_.FindNameByPhone(device, address)) call.texts.Replace(kCallName, *name);
  }
}

plist_t CallHistory::FindContent(void* device, int /*flag*/) {
  if (!read_) Read(static_cast<const BackupDevice*>(device));
  if (calls_.empty()) return nullptr;
  plist_t array = plist_new_array();
  for (const Call& call : calls_) {
    plist_t dict = plist_new_dict();
    InsertCallTexts(call.texts, dict);
    plist_dict_set_item(dict, "answered", plist_new_bool(call.answered));
    InsertPlistDictString(dict, "service", call.texts.AsCString(kCallService));
    plist_array_append_item(array, dict);
  }
  return array;
}

}  // namespace current
