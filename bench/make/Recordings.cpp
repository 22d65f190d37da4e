#include <ctime>

#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

const int64_t kSeconds1970To2001 = 978307200;

// Voice memos are named after the moment they were recorded.
std::string MemoName(int64_t since2001) {
  const time_t time = static_cast<time_t>(since2001 + kSeconds1970To2001);
  struct tm fields {};
  gmtime_r(&time, &fields);
  char name[32];
  std::strftime(name, sizeof name, "%Y%m%d %H%M%S.m4a", &fields);
  return name;
}

}  // namespace

void AddRecordings(Generation& generation) {
  Random& random = generation.random;
  SqlScript sql("Recordings.db-ios7");
  std::vector<std::string> names;
  int64_t when = 347155200;
  for (size_t memo = 1; memo <= generation.counts.recordings; ++memo) {
    when += 3600 + random.Below(200000);
    names.push_back(MemoName(when));
    sql.Insert("ZRECORDING", "Z_PK, Z_ENT, Z_OPT, ZDATE, ZDURATION, ZCUSTOMLABEL, ZPATH",
               std::to_string(memo) + ", 1, 1, " + std::to_string(when) + ", " + std::to_string(random.Below(900)) +
                   ".75, " + (random.Chance(0.5) ? Quote(random.Words(2)) : "NULL") + ", " +
                   Quote("/var/mobile/Media/Recordings/" + names.back()));
  }
  generation.rows.Database("MediaDomain", "Media/Recordings/Recordings.db", sql.Text());
  for (const std::string& name : names) {
    if (random.Chance(0.01)) continue;  // not in the backup
    generation.rows.File("MediaDomain", "Media/Recordings/" + name,
                         random.Chance(0.01) ? 0 : 100000 + random.Below(5000000));
  }
}

}  // namespace bench
