#include "common/CivilTime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/ScopedEnv.h"

namespace {

std::string Text(const std::tm& fields) {
  char text[48];
  std::snprintf(text, sizeof text, "%.4d-%.2d-%.2d %.2d:%.2d:%.2d wday %d yday %d", fields.tm_year + 1900,
                fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec, fields.tm_wday,
                fields.tm_yday);
  return text;
}

std::string Utc(int64_t instant) {
  std::tm fields{};
  return UtcFields(instant, &fields) ? Text(fields) : "none";
}

std::string Local(int64_t instant) {
  std::tm fields{};
  return HostLocalFields(instant, &fields) ? Text(fields) : "none";
}

TEST(CivilTime, UtcFieldsAroundTheEpochAndBeyondTheRuntimesRange) {
  EXPECT_EQ(Utc(0), "1970-01-01 00:00:00 wday 4 yday 0");
  EXPECT_EQ(Utc(-1), "1969-12-31 23:59:59 wday 3 yday 364");
  EXPECT_EQ(Utc(-617846400), "1950-06-04 00:00:00 wday 0 yday 154");
  EXPECT_EQ(Utc(951782400), "2000-02-29 00:00:00 wday 2 yday 59");
  EXPECT_EQ(Utc(978307200), "2001-01-01 00:00:00 wday 1 yday 0");
  EXPECT_EQ(Utc(32503680000), "3000-01-01 00:00:00 wday 3 yday 0");
  EXPECT_EQ(Utc(-62135596800), "0001-01-01 00:00:00 wday 1 yday 0");
  EXPECT_EQ(Utc(253402300799), "9999-12-31 23:59:59 wday 5 yday 364");
}

// Every day from 1600 to 2400 against a count of our own, year by year.
TEST(CivilTime, EveryDayOfEightCenturiesMatchesACountedCalendar) {
  int64_t days = DaysFromCivil(1600, 1, 1);
  const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int year = 1600; year < 2400; ++year) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    for (int month = 1; month <= 12; ++month) {
      const int length = lengths[month - 1] + (month == 2 && leap);
      for (int day = 1; day <= length; ++day, ++days) {
        ASSERT_EQ(DaysFromCivil(year, month, day), days) << year << "-" << month << "-" << day;
        std::tm fields{};
        ASSERT_TRUE(UtcFields(days * 86400 + 43200, &fields));
        ASSERT_EQ(fields.tm_year + 1900, year);
        ASSERT_EQ(fields.tm_mon + 1, month);
        ASSERT_EQ(fields.tm_mday, day);
      }
    }
  }
}

TEST(CivilTime, AYearBeyondTheFieldsIsNone) { EXPECT_EQ(Utc(INT64_C(1) << 62), "none"); }

TEST(CivilTime, LocalFieldsFollowTheZoneRulesForTheInstant) {
  {
    yhtest::ScopedTimeZone zone("Europe/Berlin");
    EXPECT_EQ(Local(1689156000), "2023-07-12 12:00:00 wday 3 yday 192");
    EXPECT_EQ(Local(1705060800), "2024-01-12 13:00:00 wday 5 yday 11");
    EXPECT_EQ(Local(32503680000), "3000-01-01 01:00:00 wday 3 yday 0");
  }
  {
    yhtest::ScopedTimeZone zone("America/New_York");
    EXPECT_EQ(Local(1689156000), "2023-07-12 06:00:00 wday 3 yday 192");
    EXPECT_EQ(Local(1705060800), "2024-01-12 07:00:00 wday 5 yday 11");
  }
  {
    yhtest::ScopedTimeZone zone("Australia/Lord_Howe");
    EXPECT_EQ(Local(1689156000), "2023-07-12 20:30:00 wday 3 yday 192");
    EXPECT_EQ(Local(1705060800), "2024-01-12 23:00:00 wday 5 yday 11");
  }
  {
    yhtest::ScopedTimeZone zone("UTC");
    EXPECT_EQ(Local(-617846400), "1950-06-04 00:00:00 wday 0 yday 154");
  }
}

}  // namespace
