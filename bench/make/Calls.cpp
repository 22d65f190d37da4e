#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

// Seconds between 1970 and 2001: the old call database counts from 1970.
const int64_t kSeconds1970To2001 = 978307200;

}  // namespace

void AddCalls(Generation& generation, const std::vector<Contact>& contacts) {
  Random& random = generation.random;
  if (generation.Newer()) {
    SqlScript sql("CallHistory.storedata-ios17");
    for (size_t call = 1; call <= generation.counts.calls; ++call) {
      // Most calls carry no name: the address book names them.
      const std::string name = random.Chance(0.1) ? Quote(random.Name() + " " + random.Name()) : "NULL";
      sql.Insert("ZCALLRECORD",
                 "Z_PK, Z_ENT, Z_OPT, ZADDRESS, ZDATE, ZDURATION, ZORIGINATED, ZANSWERED, ZCALLTYPE, ZNAME, "
                 "ZISO_COUNTRY_CODE, ZSERVICE_PROVIDER, ZLOCATION, ZUNIQUE_ID",
                 std::to_string(call) + ", 2, 1, " + Quote(SomeNumber(generation, contacts)) + ", " +
                     std::to_string(DeviceTime(random)) + ".5, " + std::to_string(random.Below(3600)) + ".25, " +
                     std::to_string(random.Below(2)) + ", 1, 1, " + name + ", 'us', 'com.apple.Telephony', " +
                     Quote(random.Name() + "ville") + ", " + Quote(random.Uuid()));
    }
    generation.rows.Database("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", sql.Text());
    return;
  }
  SqlScript sql("call_history.db-ios7");
  for (size_t call = 1; call <= generation.counts.calls; ++call) {
    const std::string name = random.Chance(0.1) ? Quote(random.Name() + " " + random.Name()) : "NULL";
    sql.Insert("call", "ROWID, address, date, duration, flags, name, country_code, network_code",
               std::to_string(call) + ", " + Quote(SomeNumber(generation, contacts)) + ", " +
                   std::to_string(DeviceTime(random) + kSeconds1970To2001) + ", " + std::to_string(random.Below(3600)) +
                   ", " + (random.Chance(0.5) ? "4" : "5") + ", " + name + ", '310', '410'");
  }
  generation.rows.Database("WirelessDomain", "Library/CallHistory/call_history.db", sql.Text());
}

}  // namespace bench
