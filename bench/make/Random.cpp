#include "Random.h"

#include <algorithm>
#include <cctype>

namespace bench {
namespace {

const char* const kWords[] = {"alpha",  "harbour", "window", "garden", "river",  "stone",    "lunch",  "meeting",
                              "travel", "photo",   "ticket", "school", "music",  "coffee",   "market", "weekend",
                              "call",   "project", "budget", "family", "train",  "summer",   "winter", "invoice",
                              "report", "cinema",  "dinner", "office", "beach",  "mountain", "paper",  "letter",
                              "city",   "bridge",  "castle", "forest", "island", "museum",   "park",   "station"};
const char* const kNames[] = {"Anna",   "Ben",   "Clara",  "David",  "Emma",   "Felix",  "Grace",  "Henry",
                              "Iris",   "Jack",  "Karen",  "Liam",   "Maria",  "Noah",   "Olivia", "Paul",
                              "Quinn",  "Rosa",  "Sam",    "Tara",   "Smith",  "Jones",  "Brown",  "Taylor",
                              "Wilson", "Evans", "Thomas", "Walker", "Wright", "Murphy", "Chen",   "Garcia"};

template <size_t N>
const char* Pick(const char* const (&list)[N], Random& random) {
  return list[random.Below(N)];
}

}  // namespace

Random::Random() : engine_(20130101) {}

size_t Random::Below(size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(engine_); }

bool Random::Chance(double probability) { return std::uniform_real_distribution<double>(0, 1)(engine_) < probability; }

size_t Random::Skewed(size_t n) {
  const double x = std::uniform_real_distribution<double>(0, 1)(engine_);
  return std::min(n - 1, static_cast<size_t>(static_cast<double>(n) * x * x * x));
}

int64_t Random::Between(int64_t low, int64_t high) {
  return std::uniform_int_distribution<int64_t>(low, high)(engine_);
}

std::string Random::Hex(size_t digits) {
  std::string text;
  for (size_t i = 0; i < digits; ++i) text += "0123456789abcdef"[Below(16)];
  return text;
}

std::string Random::Digits(size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += static_cast<char>('0' + Below(10));
  return text;
}

std::string Random::Uuid() {
  std::string text = Hex(8) + "-" + Hex(4) + "-" + Hex(4) + "-" + Hex(4) + "-" + Hex(12);
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string Random::Word() { return Pick(kWords, *this); }

std::string Random::Words(size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += (i ? " " : "") + Word();
  return text;
}

std::string Random::Name() { return Pick(kNames, *this); }

int64_t DeviceTime(Random& random) {
  // 2012-01-01 to 2020-12-31.
  return random.Between(347155200, 631065600);
}

}  // namespace bench
