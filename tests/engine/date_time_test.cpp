#include "engine/date_time.h"

#include <gtest/gtest.h>

using folio::DateTime;

namespace {
std::string ymd(DateTime d) {
    auto c = d.calendar();
    char buf[64];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                  c.minute, c.second);
    return buf;
}
} // namespace

TEST(DateTime, KnownDayNumbers) {
    EXPECT_EQ(DateTime::fromDate(1899, 12, 30).days(), 0);
    EXPECT_EQ(DateTime::fromDate(1900, 1, 1).days(), 2);
    EXPECT_EQ(DateTime::fromDate(1899, 12, 29).days(), -1);
    // The mark of an unknown date in old files.
    EXPECT_EQ(DateTime::fromDate(4000, 1, 1).days(), 767011);
    EXPECT_EQ(DateTime::fromDate(2000, 2, 29).days(), 36585);
    EXPECT_EQ(DateTime::fromDate(1600, 3, 1).days(), -109511);
    EXPECT_EQ(ymd(DateTime(767011)), "4000-01-01 00:00:00");
    EXPECT_EQ(ymd(DateTime(-109511)), "1600-03-01 00:00:00");
}

TEST(DateTime, CarriesDaysAndMonthsLikeADateBuiltFromParts) {
    // Day 0 is the last day of the month before; in a leap year that is Feb 29.
    EXPECT_EQ(ymd(DateTime::fromDate(2024, 3, 0)), "2024-02-29 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 3, 0)), "2023-02-28 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 1, 0)), "2022-12-31 00:00:00");
    // A day past the month's end runs on.
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 1, 32)), "2023-02-01 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 2, 30)), "2023-03-02 00:00:00");
    // Month 13 is January of the next year, month 0 December of the year before.
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 13, 1)), "2024-01-01 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 0, 15)), "2022-12-15 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, -11, 1)), "2022-01-01 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 25, 1)), "2025-01-01 00:00:00");
    EXPECT_EQ(ymd(DateTime::fromDate(2023, 1, -1)), "2022-12-30 00:00:00");
}

TEST(DateTime, TimesOfDayOnBothSidesOfTheEpoch) {
    EXPECT_DOUBLE_EQ(DateTime::fromDateTime(1899, 12, 30, 6, 0, 0).days(), 0.25);
    // Before the epoch the whole part counts back and the fraction still forward.
    EXPECT_DOUBLE_EQ(DateTime::fromDateTime(1899, 12, 29, 6, 0, 0).days(), -1.25);
    EXPECT_EQ(ymd(DateTime(-1.25)), "1899-12-29 06:00:00");
    EXPECT_EQ(ymd(DateTime::fromDateTime(2001, 5, 17, 13, 45, 30)), "2001-05-17 13:45:30");
    // 61 minutes run on into the next hour, 25 hours into the next day.
    EXPECT_EQ(ymd(DateTime::fromDateTime(2001, 5, 17, 10, 61, 0)), "2001-05-17 11:01:00");
    EXPECT_EQ(ymd(DateTime::fromDateTime(2001, 5, 17, 25, 0, 0)), "2001-05-18 01:00:00");
    // A time a hair before midnight rounds to the next day.
    EXPECT_EQ(ymd(DateTime(0.9999999999)), "1899-12-31 00:00:00");
}
