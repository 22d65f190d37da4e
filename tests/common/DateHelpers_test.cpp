#include "common/DateHelpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <cctype>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "common/CivilTime.h"
#include "support/ScopedEnv.h"

namespace {

using yhtest::ScopedTimeZone;

// The text of a malloc'ed result; frees the block.
std::string Take(char* text) {
  std::string copy(text);
  std::free(text);
  return copy;
}

// The host's local fields through the zone the test named: the C runtime's
// localtime knows no zone names on Windows.
std::tm Local(time_t when) {
  std::tm fields{};
  EXPECT_TRUE(HostLocalFields(when, &fields)) << when;
  return fields;
}

std::string LocalText(time_t when) {
  char text[32];
  const std::tm fields = Local(when);
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &fields);
  return text;
}

// Local hour of day minus UTC hour of day, as they come: -13 in Sydney when
// it is already tomorrow there.
int HourDifference(time_t when) {
  std::tm utc{};
  EXPECT_TRUE(UtcFields(when, &utc)) << when;
  return Local(when).tm_hour - utc.tm_hour;
}

// Convert2001GMTtoDate(t) next to the Unix time its text should show: the
// zone's standard offset on 2001-01-01 (standardOffsetHours, east positive),
// moved by the hour difference of the moment of the call. Repeated when the
// hour difference changes during the call.
void ExpectHostOffsetEpoch(int32_t t, int standardOffsetHours) {
  for (;;) {
    const int before = HourDifference(std::time(nullptr));
    const std::string text = Take(Convert2001GMTtoDate(t));
    const int after = HourDifference(std::time(nullptr));
    if (before != after) continue;
    const time_t expected = 978307200 - standardOffsetHours * 3600 + before * 3600 + (t < 0 ? 0 : t);
    EXPECT_EQ(text, LocalText(expected)) << "t=" << t << " hour difference " << before;
    return;
  }
}

TEST(DateHelpers, SecondsToTime) {
  EXPECT_EQ(Take(ConvertSecondsToTime(0)), "00:00:00");
  EXPECT_EQ(Take(ConvertSecondsToTime(3661)), "01:01:01");
  EXPECT_EQ(Take(ConvertSecondsToTime(59)), "00:00:59");
  EXPECT_EQ(Take(ConvertSecondsToTime(360000)), "100:00:00");
  EXPECT_EQ(Take(ConvertSecondsToTime(UINT32_MAX)), "1193046:28:15");
}

// Written digit by digit, the text is what the format "%.2d:%.2d:%.2d" gives,
// at every width of the hours.
TEST(DateHelpers, DurationOfIsThePrintedText) {
  std::vector<uint32_t> seconds = {0, 59, 60, 3599, 3600, 359999, 360000, 3599999, 3600000, UINT32_MAX - 1, UINT32_MAX};
  for (uint32_t s = 1; s < UINT32_MAX / 7; s = s * 7 + 3) seconds.push_back(s);
  for (const uint32_t s : seconds) {
    char printed[32];
    std::snprintf(printed, sizeof printed, "%.2d:%.2d:%.2d", static_cast<int>(s / 3600), static_cast<int>(s % 3600 / 60),
                  static_cast<int>(s % 60));
    EXPECT_EQ(DurationOf(s), printed) << s;
    EXPECT_EQ(Take(ConvertSecondsToTime(s)), printed) << s;
  }
}

TEST(DateHelpers, UnixSecondsUnderUtc) {
  ScopedTimeZone zone("UTC");
  EXPECT_EQ(Take(Convert1900GMTDate(978307200)), "2001-01-01 00:00:00");
  EXPECT_EQ(Take(Convert1900GMTDate(0)), "1970-01-01 00:00:00");
  EXPECT_EQ(Take(Convert1900GMTDate(-1)), "1969-12-31 23:59:59");
  EXPECT_EQ(Take(Convert1900GMTDate(1625402096)), "2021-07-04 12:34:56");
  EXPECT_EQ(Take(Convert1900GMTDate(INT32_MAX)), "2038-01-19 03:14:07");
}

TEST(DateHelpers, UnixSecondsUnderNewYork) {
  ScopedTimeZone zone("America/New_York");
  EXPECT_EQ(Take(Convert1900GMTDate(1625402096)), "2021-07-04 08:34:56");
  EXPECT_EQ(Take(Convert1900GMTDate(1610679845)), "2021-01-14 22:04:05");
  EXPECT_EQ(Take(Convert1900GMTDate(978307200)), "2000-12-31 19:00:00");
}

// Hosts may ask for two devices' contents from two threads at once; each
// thread's texts stay those of a lone caller.
TEST(DateHelpers, ThreadsConvertingAtOnceGetTheTextsOfALoneCaller) {
  ScopedTimeZone zone("America/New_York");
  const std::string expected = "2021-07-04 08:34:56";
  std::vector<std::thread> threads;
  std::vector<int> wrong(4, 0);
  for (int& count : wrong) {
    threads.emplace_back([&count, &expected] {
      for (int i = 0; i < 20000; ++i) count += Take(Convert1900GMTDate(1625402096)) != expected;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

TEST(DateHelpers, From2001UnderUtc) {
  ScopedTimeZone zone("UTC");
  EXPECT_EQ(Take(Convert2001GMTtoDate(0)), "2001-01-01 00:00:00");
  EXPECT_EQ(Take(Convert2001GMTtoDate(3661)), "2001-01-01 01:01:01");
  EXPECT_EQ(Take(Convert2001GMTtoDate(15681600)), "2001-07-01 12:00:00");
  EXPECT_EQ(Take(Convert2001GMTtoDate(INT32_MAX)), "2069-01-19 03:14:07");
}

TEST(DateHelpers, From2001AgreesWithUnixSecondsUnderUtc) {
  ScopedTimeZone zone("UTC");
  EXPECT_EQ(Take(Convert2001GMTtoDate(0)), Take(Convert1900GMTDate(978307200)));
}

TEST(DateHelpers, From2001ClampsNegativeSeconds) {
  ScopedTimeZone zone("UTC");
  EXPECT_EQ(Take(Convert2001GMTtoDate(-5)), Take(Convert2001GMTtoDate(0)));
  EXPECT_EQ(Take(Convert2001GMTtoDate(INT32_MIN)), "2001-01-01 00:00:00");
}

TEST(DateHelpers, From2001ClampsNegativeSecondsUnderNewYork) {
  ScopedTimeZone zone("America/New_York");
  EXPECT_EQ(Take(Convert2001GMTtoDate(-5)), Take(Convert2001GMTtoDate(0)));
}

TEST(DateHelpers, From2001UsesTheHostOffsetEpochUnderNewYork) {
  ScopedTimeZone zone("America/New_York");
  ExpectHostOffsetEpoch(0, -5);
  ExpectHostOffsetEpoch(-5, -5);
  ExpectHostOffsetEpoch(15681600, -5);
  ExpectHostOffsetEpoch(1000000000, -5);
}

// Summer time on 2001-01-01: the forced-off daylight flag makes the epoch an
// hour later than the true local midnight.
TEST(DateHelpers, From2001UsesTheHostOffsetEpochUnderSydney) {
  ScopedTimeZone zone("Australia/Sydney");
  ExpectHostOffsetEpoch(0, 10);
  ExpectHostOffsetEpoch(15681600, 10);
}

TEST(DateHelpers, CurrentDateBlankPadsTheDay) {
  std::tm fields{};
  fields.tm_year = 124;
  fields.tm_mon = 2;
  fields.tm_mday = 5;
  fields.tm_hour = 7;
  fields.tm_min = 8;
  fields.tm_sec = 9;
  EXPECT_EQ(Take(FormatCurrentDate(fields)), "2024-03- 5 07:08:09");
  fields.tm_mday = 9;
  EXPECT_EQ(Take(FormatCurrentDate(fields)), "2024-03- 9 07:08:09");
  fields.tm_mday = 10;
  fields.tm_year = -901;
  EXPECT_EQ(Take(FormatCurrentDate(fields)), "0999-03-10 07:08:09");
}

// "dddd-dd-Dd dd:dd:dd", where D is a blank before the days 1 to 9.
bool HasCurrentDateShape(const std::string& text) {
  const std::string shape = "dddd-dd-Dd dd:dd:dd";
  if (text.size() != shape.size()) return false;
  for (size_t i = 0; i < shape.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (shape[i] == 'd' && !std::isdigit(c)) return false;
    if (shape[i] == 'D' && !(c == ' ' ? text[i + 1] != '0' : c >= '1' && c <= '3')) return false;
    if (shape[i] != 'd' && shape[i] != 'D' && c != shape[i]) return false;
  }
  return true;
}

TEST(DateHelpers, CurrentDateShape) {
  EXPECT_TRUE(HasCurrentDateShape("2024-03- 5 07:08:09"));
  EXPECT_TRUE(HasCurrentDateShape("2024-03-25 07:08:09"));
  EXPECT_FALSE(HasCurrentDateShape("2024-03-05 07:08:09"));
  EXPECT_FALSE(HasCurrentDateShape("2024-03- 0 07:08:09"));
  EXPECT_FALSE(HasCurrentDateShape("2024-03-5 07:08:09"));
}

void ExpectCurrentDateMatchesLocalTime() {
  for (;;) {
    const time_t before = std::time(nullptr);
    const std::string text = Take(GetCurrentDate());
    if (std::time(nullptr) != before) continue;
    const std::tm local = Local(before);
    std::ostringstream expected;
    expected << std::setfill('0') << std::setw(4) << local.tm_year + 1900 << '-' << std::setw(2)
             << local.tm_mon + 1 << '-' << std::setfill(' ') << std::setw(2) << local.tm_mday << ' '
             << std::setfill('0') << std::setw(2) << local.tm_hour << ':' << std::setw(2)
             << local.tm_min << ':' << std::setw(2) << local.tm_sec;
    EXPECT_EQ(text, expected.str());
    EXPECT_TRUE(HasCurrentDateShape(text)) << text;
    return;
  }
}

TEST(DateHelpers, CurrentDateUnderUtc) {
  ScopedTimeZone zone("UTC");
  ExpectCurrentDateMatchesLocalTime();
}

TEST(DateHelpers, CurrentDateUnderNewYork) {
  ScopedTimeZone zone("America/New_York");
  ExpectCurrentDateMatchesLocalTime();
}

}  // namespace
