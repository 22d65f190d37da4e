#include "kinds/current/CallHistory.h"

#include <string>

#include "common/PlistHelpers.h"
#include "kinds/current/CallReaders.h"
#include "kinds/current/DeletedDatabases.h"
#include "kinds/current/NewestFirst.h"
#include "kinds/current/StoredDatabases.h"

namespace current {
namespace {

const char kCallDatabase[] = "Library/CallHistory/call_history.db";
const char kCallStore[] = "Library/CallHistoryDB/CallHistory.storedata";
const LostRowsOf kLostCalls{{"call"}, {}, false, ""};
const LostRowsOf kLostStoredCalls{{"ZCALLRECORD"}, {}, false, "ZUNIQUE_ID"};

}  // namespace

// Newest first across every log, the old one read first; calls without a
// date last.
std::vector<Call> CallHistory::Read(const BackupDevice* device) {
  std::vector<Call> calls = ReadOwnDatabases(device, StoredFilesAt(device, kCallDatabase), ReadCallDatabase);
  AppendMoving(calls, ReadOwnDatabases(device, StoredFilesAt(device, kCallStore), ReadCallStore));
  calls = NewestFirst(std::move(calls), &Call::instant);
  for (Call& call : calls) Name(device, call);
  return calls;
}

std::vector<Deleted<Call>> CallHistory::ReadDeleted(const BackupDevice* device) {
  std::vector<Deleted<Call>> calls =
      ReadDeletedDatabases(device, StoredFilesAt(device, kCallDatabase), kLostCalls, ReadCallDatabase);
  AppendMoving(calls, ReadDeletedDatabases(device, StoredFilesAt(device, kCallStore), kLostStoredCalls, ReadCallStore));
  calls = NewestFirst(std::move(calls), &Call::instant);
  for (Deleted<Call>& call : calls) Name(device, call.record);
  return WithoutLiveCopies(device, std::move(calls));
}

void CallHistory::Name(const BackupDevice* device, Call& call) {
  if (!call.texts.View(kCallName).empty()) return;
  const std::string address(call.texts.View(kCallAddress));
  if (const std::string* name = contacts_.FindNameByPhone(device, address)) call.texts.Replace(kCallName, *name);
}

void CallHistory::InsertKeys(const Call& call, plist_t dict) const {
  InsertCallTexts(call.texts, dict);
  plist_dict_set_item(dict, "answered", plist_new_bool(call.answered));
  InsertPlistDictString(dict, "service", call.texts.AsCString(Call::kService));
}

}  // namespace current
