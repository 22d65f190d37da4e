#include "kinds/current/CallHistory.h"

#include <string>

#include "common/PlistHelpers.h"
#include "kinds/current/CallReaders.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kCallDatabase[] = "Library/CallHistory/call_history.db";
const char kCallStore[] = "Library/CallHistoryDB/CallHistory.storedata";

}  // namespace

// Newest first across every log, the old one read first; calls without a
// date last. A call the log does not name is named from the address book.
std::vector<Call> CallHistory::Read(const BackupDevice* device) {
  std::vector<Call> calls = ReadStoredDatabases(device, StoredFilesAt(device, kCallDatabase), ReadCallDatabase);
  AppendMoving(calls, ReadStoredDatabases(device, StoredFilesAt(device, kCallStore), ReadCallStore));
  calls = NewestFirst(std::move(calls), &Call::instant);
  for (Call& call : calls) {
    if (!call.texts.View(kCallName).empty()) continue;
    const std::string address(call.texts.View(kCallAddress));
    if (const std::string* name = contacts_.FindNameByPhone(device, address)) call.texts.Replace(kCallName, *name);
  }
  return calls;
}

void CallHistory::InsertKeys(const Call& call, plist_t dict) const {
  InsertCallTexts(call.texts, dict);
  plist_dict_set_item(dict, "answered", plist_new_bool(call.answered));
  InsertPlistDictString(dict, "service", call.texts.AsCString(Call::kService));
}

}  // namespace current
