#ifndef YH_BENCH_MAKE_RANDOM_H
#define YH_BENCH_MAKE_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace bench {

// A fixed-seed source of the made-up data, so that every run writes the
// same backup.
class Random {
 public:
  Random();

  size_t Below(size_t n);  // 0 to n - 1
  bool Chance(double probability);
  // Mostly small values: a few chats hold most messages, a few apps most files.
  size_t Skewed(size_t n);
  int64_t Between(int64_t low, int64_t high);
  std::string Hex(size_t digits);  // lower case
  std::string Digits(size_t count);
  std::string Uuid();  // upper case, 8-4-4-4-12
  std::string Word();
  std::string Words(size_t count);  // separated by blanks
  std::string Name();               // a capitalised first or last name

 private:
  std::mt19937_64 engine_;
};

// Seconds since 2001-01-01 UTC within the years the backup covers.
int64_t DeviceTime(Random& random);

}  // namespace bench

#endif
