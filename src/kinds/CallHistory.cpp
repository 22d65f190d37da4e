#include "kinds/CallHistory.h"

#include <initializer_list>
#include <string_view>

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/DateHelpers.h"
#include "common/TextHelpers.h"
#include "kinds/Contact.h"
#include "kinds/SourceFiles.h"

namespace {

// The old call database is read on Manifest.mbdb backups only. The call store
// is read with the query of the device generation that writes each index
// kind; on a Manifest.mbdb backup it is named from the device record's folder.
const SourcePaths kCallDbSource{nullptr, "Library/CallHistory/call_history.db"};
const SourcePaths kCallStoreSourceiOS9{nullptr, "Library/CallHistoryDB/CallHistory.storedata"};
const SourcePaths kCallStoreSourceiOS10{"Library/CallHistoryDB/CallHistory.storedata", nullptr};

const char kCallQuery[] = "select name,address,date,flags,duration,country_code,network_code from call";
// Devices before iOS 10 have no provider or location columns.
const char kCallStoreQueryiOS9[] =
    "select zname,zaddress,zdate,zoriginated,zduration,ziso_country_code,null,null from zcallrecord  order by "
    "zdate desc";
const char kCallStoreQueryiOS10[] =
    "select zname,zaddress,zdate,zoriginated,zduration,ziso_country_code,zservice_provider,zlocation from "
    "zcallrecord  order by zdate desc";

// flags of an incoming call in the old database; every other value is counted
// as outgoing (that table has no unknown direction).
const int32_t kCallFlagsIncoming = 4;

// The call is appended once its texts are packed.
void AddCall(void* records, std::initializer_list<std::string_view> texts) {
  auto* call = new Call;
  call->texts = PackedTexts(texts);
  static_cast<std::vector<Call*>*>(records)->push_back(call);
}

// Whole seconds: a stored 59.9 counts as 59.
std::string Duration(const char* seconds) {
  return DurationOf(static_cast<uint32_t>(GetZeroIntIsNull(seconds)));
}

// Columns: name, address, date (seconds since 1970), flags, duration, country
// code, network code.
int CallHistoryDbCallback(void* records, int /*columns*/, char** values, char** /*names*/) {
  const std::string date = TakeMallocText(Convert1900GMTDate(GetZeroLongIsNull(values[2])));
  const char* type = GetZeroIntIsNull(values[3]) == kCallFlagsIncoming ? "Incoming" : "Outgoing";
  AddCall(records, {GetEmptyViewIsNull(values[0]), GetEmptyViewIsNull(values[1]), date, type, Duration(values[4]),
                    GetEmptyViewIsNull(values[5]), GetEmptyViewIsNull(values[6]), {}});
  return 0;
}

// Columns: name, address, date (seconds since 2001), originated, duration,
// country code, network code, location.
int CallHistoryStoreDbCallback(void* records, int /*columns*/, char** values, char** /*names*/) {
  const std::string date = Date2001Text(GetZeroLongIsNull(values[2]));
  const char* type;
  switch (GetZeroIntIsNull(values[3])) {
    case 0: type = "Incoming"; break;
    case 1: type = "Outgoing"; break;
    default: type = "Unknown";
  }
  AddCall(records, {GetEmptyViewIsNull(values[0]), GetEmptyViewIsNull(values[1]), date, type, Duration(values[4]),
                    GetEmptyViewIsNull(values[5]), GetEmptyViewIsNull(values[6]), GetEmptyViewIsNull(values[7])});
  return 0;
}

}  // namespace

void CallHistory::ReadBackup(BackupDevice* device) {
  // Old-database calls (in table order) come before the store's (newest first).
  for (const std::string& path : SourceFiles(device, kCallDbSource)) AddCallHistoryList(device, path);
  for (const std::string& path : SourceFiles(device, kCallStoreSourceiOS9)) AddCallHistoryStoreListiOS9(device, path);
  for (const std::string& path : SourceFiles(device, kCallStoreSourceiOS10)) AddCallHistoryStoreListiOS10(device, path);
}

void CallHistory::FillDict(const Call& call, plist_t dict) const {
  InsertCallTexts(call.texts, dict);
}

void CallHistory::AddCallHistoryList(BackupDevice* device, const std::string& path) {
  AddCalls(device, path, kCallQuery, CallHistoryDbCallback);
}

void CallHistory::AddCallHistoryStoreListiOS9(BackupDevice* device, const std::string& path) {
  AddCalls(device, path, kCallStoreQueryiOS9, CallHistoryStoreDbCallback);
}

void CallHistory::AddCallHistoryStoreListiOS10(BackupDevice* device, const std::string& path) {
  AddCalls(device, path, kCallStoreQueryiOS10, CallHistoryStoreDbCallback);
}

void CallHistory::AddCalls(BackupDevice* device, const std::string& path, const char* query,
                           Database::RowCallback callback) {
  {
    Database db(path);
    if (!db.IsOpen() || !db.Exec(query, callback, &records_)) return;
  }
  // Every call so far, those of files read earlier included; a call that
  // already has a name is never looked up.
  for (Call* call : records_) {
    VqCheckAlive(call);
    if (!call->texts.View(kCallName).empty() || !contact_) continue;
    VqCheckAlive(contact_);
    if (const char* name = contact_->FindNameByPhone(device, call->texts.AsCString(kCallAddress))) {
      call->texts.Replace(kCallName, name);
    }
  }
}
