#include "AppData.h"

namespace bench {
namespace {

const char* const kVendors[] = {"google", "facebook", "spotify", "whatsapp", "netflix", "dropbox", "microsoft",
                                "amazon", "ebay",     "rovio",   "king",     "skype",   "twitter", "instagram",
                                "uber",   "airbnb",   "yahoo",   "adobe",    "zynga",   "atebits"};
const char* const kSystemDomains[] = {
    "HomeDomain",         "MediaDomain",    "RootDomain",   "WirelessDomain",          "KeychainDomain",
    "MobileDeviceDomain", "DatabaseDomain", "HealthDomain", "SystemPreferencesDomain", "ManagedPreferencesDomain"};
const size_t kSystemDomainCount = sizeof kSystemDomains / sizeof *kSystemDomains;

std::string Settings(const std::string& bundle) { return "Library/Preferences/" + bundle + ".plist"; }

}  // namespace

AppData::AppData(Generation& generation) : generation_(generation) {
  Random& random = generation.random;
  for (size_t i = 0; i < generation.counts.apps; ++i) {
    const std::string name = random.Word() + std::to_string(i);
    const std::string vendor = kVendors[random.Below(sizeof kVendors / sizeof *kVendors)];
    const std::string bundle = "com." + vendor + "." + name;
    if (i < kSystemDomainCount) {
      apps_.push_back({kSystemDomains[i], "com.apple." + name});
    } else if (i % 10 == 0) {
      apps_.push_back({"AppDomainGroup-group." + bundle, bundle});
    } else if (i % 10 == 1) {
      apps_.push_back({"AppDomainPlugin-" + bundle + ".widget", bundle + ".widget"});
    } else {
      apps_.push_back({"AppDomain-" + bundle, bundle});
    }
  }
  // The first app's settings folder takes the files that fill the last rows.
  generation.rows.File(apps_.front().domain, Settings(apps_.front().bundle), 400);
}

void AppData::AddUntil(size_t rows) {
  IndexRows& index = generation_.rows;
  Random& random = generation_.random;
  while (index.Count() < rows) {
    const App& app = apps_[random.Skewed(apps_.size())];
    const std::string path = SomeFile(app);
    if (index.Holds(app.domain, path)) continue;
    if (index.Count() + index.RowsFor(app.domain, path) > rows) {
      const App& first = apps_.front();
      index.File(first.domain, Settings(first.bundle + "." + std::to_string(++spare_)), 400);
      continue;
    }
    // Some files are empty, most are small, a few large.
    index.File(app.domain, path, random.Chance(0.03) ? 0 : 1 + random.Skewed(2000000));
  }
}

std::string AppData::SomeFile(const App& app) {
  Random& random = generation_.random;
  switch (random.Below(20)) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
    case 5:
    case 6:
      return "Library/Caches/" + app.bundle + "/fsCachedData/" + random.Uuid();
    case 7:
    case 8:
    case 9:
    case 10:
      return "Library/Caches/com.hackemist.SDImageCache/default/" + random.Hex(32) + ".jpg";
    case 11:
    case 12:
      return "Documents/" + random.Word() + "/" + random.Word() + "_" + random.Digits(6) + ".json";
    case 13:
    case 14:
      return "Library/Application Support/" + random.Word() + "/" + random.Hex(16) + ".dat";
    case 15:
      return "tmp/" + random.Uuid() + ".tmp";
    case 16:
      return "Library/WebKit/WebsiteData/LocalStorage/https_" + random.Word() + random.Digits(3) +
             ".example.com_0.localstorage";
    case 17:
      return Settings(app.bundle + "." + random.Word() + random.Digits(2));
    case 18:
      return "Library/Cookies/" + random.Hex(16) + ".binarycookies";
    default:
      return "Library/Caches/Snapshots/" + app.bundle + "/" + random.Uuid() + "@2x.png";
  }
}

}  // namespace bench
