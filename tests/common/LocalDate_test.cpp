#include "common/LocalDate.h"

#include <gtest/gtest.h>

#include "support/ScopedEnv.h"

namespace yhtest {
namespace {

TEST(LocalDate, SecondsSince2001AreTheTrueInstant) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText("1", TimeBase::Since2001), "2001-01-01 00:00:01");
  EXPECT_EQ(LocalDateText("600000000", TimeBase::Since2001), "2020-01-06 10:40:00");
  EXPECT_EQ(LocalDateText("-1", TimeBase::Since2001), "2000-12-31 23:59:59");
}

// Devices store 0 where a record has no date, in either unit and base.
TEST(LocalDate, AStoredZeroIsNoDate) {
  ScopedTimeZone utc("UTC");
  for (const char* zero : {"0", "0.0", "0.4", "-0", "0e0"}) {
    EXPECT_EQ(LocalDateText(zero, TimeBase::Since2001), "") << zero;
    EXPECT_EQ(LocalDateText(zero, TimeBase::Unix), "") << zero;
    EXPECT_EQ(FloatingDateText(zero, TimeBase::Since2001), "") << zero;
    EXPECT_FALSE(LocalDateOf(zero, TimeBase::Since2001).instant) << zero;
  }
  EXPECT_EQ(LocalDateText("-0.5", TimeBase::Since2001), "2000-12-31 23:59:59");
}

TEST(LocalDate, NanosecondsAreRecognised) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText("600000000000000000", TimeBase::Since2001), "2020-01-06 10:40:00");
  EXPECT_EQ(LocalDateText("600000000999999999", TimeBase::Since2001), "2020-01-06 10:40:00");
  EXPECT_EQ(LocalDateText("-100000000500000000", TimeBase::Since2001), "1997-10-31 14:13:19");
}

TEST(LocalDate, FractionsAreDropped) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText("600000000.9", TimeBase::Since2001), "2020-01-06 10:40:00");
  EXPECT_EQ(LocalDateText("6.000000009e8", TimeBase::Since2001), "2020-01-06 10:40:00");
  EXPECT_EQ(LocalDateText("-0.5", TimeBase::Since2001), "2000-12-31 23:59:59");
}

TEST(LocalDate, UnixSeconds) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText("1561982400", TimeBase::Unix), "2019-07-01 12:00:00");
}

TEST(LocalDate, ByMagnitudeSmallCountsAreSince2001AndLargeOnesUnix) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText("583675200", TimeBase::ByMagnitude), "2019-07-01 12:00:00");
  EXPECT_EQ(LocalDateText("1561982400", TimeBase::ByMagnitude), "2019-07-01 12:00:00");
  EXPECT_EQ(LocalDateText("978307199", TimeBase::ByMagnitude), "2032-01-01 23:59:59");
  EXPECT_EQ(LocalDateText("978307200", TimeBase::ByMagnitude), "2001-01-01 00:00:00");
  EXPECT_EQ(LocalDateText("-1", TimeBase::ByMagnitude), "2000-12-31 23:59:59");
}

TEST(LocalDate, DatesAfter2038KeepTheirYear) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText("1235865600", TimeBase::Since2001), "2040-03-01 00:00:00");
  EXPECT_EQ(LocalDateText("1235865600000000000", TimeBase::Since2001), "2040-03-01 00:00:00");
}

TEST(LocalDate, TheZoneRulesOfTheInstantApply) {
  ScopedTimeZone newYork("America/New_York");
  EXPECT_EQ(LocalDateText("583675200", TimeBase::Since2001), "2019-07-01 08:00:00");  // summer time
  EXPECT_EQ(LocalDateText("600000000", TimeBase::Since2001), "2020-01-06 05:40:00");  // standard time
  EXPECT_EQ(LocalDateText("1561982400", TimeBase::Unix), "2019-07-01 08:00:00");
}

TEST(LocalDate, FloatingTimesReadTheSameInEveryZone) {
  for (const char* zone : {"UTC", "America/New_York", "Asia/Tokyo"}) {
    ScopedTimeZone timeZone(zone);
    EXPECT_EQ(FloatingDateText("426124800", TimeBase::Since2001), "2014-07-04 00:00:00") << zone;
    EXPECT_EQ(FloatingDateText("1235865600", TimeBase::Since2001), "2040-03-01 00:00:00") << zone;
    EXPECT_EQ(FloatingDateText("", TimeBase::Since2001), "") << zone;
    EXPECT_EQ(FloatingDateText(nullptr, TimeBase::Since2001), "") << zone;
  }
}

TEST(LocalDate, WhatIsNoDateStaysEmpty) {
  ScopedTimeZone utc("UTC");
  EXPECT_EQ(LocalDateText(nullptr, TimeBase::Since2001), "");
  EXPECT_EQ(LocalDateText("", TimeBase::Since2001), "");
  EXPECT_EQ(LocalDateText("yesterday", TimeBase::Since2001), "");
  EXPECT_EQ(LocalDateText("12abc", TimeBase::Unix), "");
  EXPECT_EQ(LocalDateText("nan", TimeBase::Unix), "");
  EXPECT_EQ(LocalDateText("1e300", TimeBase::Unix), "");
  EXPECT_EQ(LocalDateText("-9223372036854775808", TimeBase::Since2001), "");
  EXPECT_EQ(LocalDateText("-9223372036854775808", TimeBase::Unix), "");
  EXPECT_FALSE(LocalDateOf("", TimeBase::Unix).instant.has_value());
}

TEST(LocalDate, LocalDateOfGivesTheTextAndTheInstantTogether) {
  for (const char* zone : {"UTC", "Europe/Berlin", "America/New_York"}) {
    ScopedTimeZone scoped(zone);
    for (const char* stored : {"0", "600000000", "-1", "600000000.75", "600000000000000000", "", "nan", "1e300"}) {
      for (TimeBase base : {TimeBase::Unix, TimeBase::Since2001}) {
        const LocalDate date = LocalDateOf(stored, base);
        EXPECT_EQ(date.text, LocalDateText(stored, base)) << zone << " " << stored;
        EXPECT_EQ(date.instant.has_value(), !date.text.empty()) << zone << " " << stored;
      }
    }
    EXPECT_EQ(LocalDateOf(nullptr, TimeBase::Unix).text, "");
    EXPECT_FALSE(LocalDateOf(nullptr, TimeBase::Unix).instant.has_value());
  }
  ScopedTimeZone berlin("Europe/Berlin");
  const LocalDate summer = LocalDateOf("1561975200", TimeBase::Unix);  // 2019-07-01 10:00 UTC
  EXPECT_EQ(summer.text, "2019-07-01 12:00:00");
  EXPECT_EQ(summer.instant, 1561975200);
}

TEST(LocalDate, InstantsOrderDatesOfEitherBase) {
  EXPECT_EQ(LocalDateOf("1", TimeBase::Since2001).instant, 978307201);
  EXPECT_EQ(LocalDateOf("978307201", TimeBase::Unix).instant, 978307201);
  EXPECT_EQ(LocalDateOf("1000000000", TimeBase::Since2001).instant, LocalDateOf("1000000000000000000", TimeBase::Since2001).instant);
}

}  // namespace
}  // namespace yhtest
