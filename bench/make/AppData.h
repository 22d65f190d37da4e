#ifndef YH_BENCH_MAKE_APPDATA_H
#define YH_BENCH_MAKE_APPDATA_H

#include <cstddef>
#include <string>
#include <vector>

#include "Generation.h"

namespace bench {

// The bulk of a real backup: caches, documents and settings of the apps and
// of the system, a few apps holding most of them.
class AppData {
 public:
  explicit AppData(Generation& generation);

  // Adds files until the index holds exactly `rows` rows.
  void AddUntil(size_t rows);

 private:
  struct App {
    std::string domain;
    std::string bundle;
  };

  std::string SomeFile(const App& app);

  Generation& generation_;
  std::vector<App> apps_;
  size_t spare_ = 0;  // numbers the settings files that fill the last rows
};

}  // namespace bench

#endif
