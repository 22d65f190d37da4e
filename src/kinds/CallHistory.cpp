#include "kinds/CallHistory.h"

#include "common/ColumnHelpers.h"
#include "common/Database.h"
#include "common/DateHelpers.h"
#include "common/PlistHelpers.h"
#include "common/TextHelpers.h"
#include "kinds/Contact.h"
#include "kinds/SourceFiles.h"

namespace {

// The old call database is read on Manifest.mbdb backups only. The call store
// is read with the query of the device generation that writes each index
// kind; on a Manifest.mbdb backup it is named from the device record's folder.
const KeySource kCallDbSource{nullptr, &Mbdb::GetCallKey};
const KeySource kCallStoreSourceiOS9{nullptr, &Mbdb::GetCallStoreKey, MbdbFolder::Device};
const KeySource kCallStoreSourceiOS10{&ManifestDb::GetCallHistoryStoreDbKey, nullptr};

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

// The call is appended before it is filled.
Call& NewCall(void* records) {
  auto* call = new Call;
  static_cast<std::vector<Call*>*>(records)->push_back(call);
  return *call;
}

// Whole seconds: a stored 59.9 counts as 59.
std::string Duration(const char* seconds) {
  return TakeMallocText(ConvertSecondsToTime(static_cast<uint32_t>(GetZeroIntIsNull(seconds))));
}

// Columns: name, address, date (seconds since 1970), flags, duration, country
// code, network code.
int CallHistoryDbCallback(void* records, int /*columns*/, char** values, char** /*names*/) {
  Call& call = NewCall(records);
  call.name = GetEmptyStringIsNull(values[0]);
  call.address = GetEmptyStringIsNull(values[1]);
  call.date = TakeMallocText(Convert1900GMTDate(GetZeroLongIsNull(values[2])));
  call.type = GetZeroIntIsNull(values[3]) == kCallFlagsIncoming ? "Incoming" : "Outgoing";
  call.duration = Duration(values[4]);
  call.countryCode = GetEmptyStringIsNull(values[5]);
  call.networkCode = GetEmptyStringIsNull(values[6]);
  return 0;
}

// Columns: name, address, date (seconds since 2001), originated, duration,
// country code, network code, location.
int CallHistoryStoreDbCallback(void* records, int /*columns*/, char** values, char** /*names*/) {
  Call& call = NewCall(records);
  call.name = GetEmptyStringIsNull(values[0]);
  call.address = GetEmptyStringIsNull(values[1]);
  call.date = TakeMallocText(Convert2001GMTtoDate(GetZeroLongIsNull(values[2])));
  switch (GetZeroIntIsNull(values[3])) {
    case 0: call.type = "Incoming"; break;
    case 1: call.type = "Outgoing"; break;
    default: call.type = "Unknown";
  }
  call.duration = Duration(values[4]);
  call.countryCode = GetEmptyStringIsNull(values[5]);
  call.networkCode = GetEmptyStringIsNull(values[6]);
  call.location = GetEmptyStringIsNull(values[7]);
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
  InsertPlistDictString(dict, "name", call.name.c_str());
  InsertPlistDictString(dict, "address", call.address.c_str());
  InsertPlistDictString(dict, "date", call.date.c_str());
  InsertPlistDictString(dict, "type", call.type.c_str());
  InsertPlistDictString(dict, "duration", call.duration.c_str());
  InsertPlistDictString(dict, "country_code", call.countryCode.c_str());
  InsertPlistDictString(dict, "network_code", call.networkCode.c_str());
  InsertPlistDictString(dict, "location", call.location.c_str());
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
    if (!call->name.empty() || !contact_) continue;
    VqCheckAlive(contact_);
    if (const char* name = contact_->FindNameByPhone(device, call->address.c_str())) call->name += name;
  }
}
