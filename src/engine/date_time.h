// Date/Time values as the family-tree files store them: a double counting days since
// 1899-12-30, the fraction being the time of day. Before that day the whole part counts
// back and the fraction still counts forward into the day (-1.25 is 1899-12-29 06:00).
#pragma once

#include <compare>

namespace folio {

struct CalendarDateTime {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

class DateTime {
public:
    constexpr DateTime() = default;
    constexpr explicit DateTime(double days) : days_(days) {}

    // A date from year, month and day with carrying: day 0 is the last day of the month
    // before, a day past the month's end runs on into the next month, month 13 is January
    // of the next year and month 0 December of the year before.
    static DateTime fromDate(int year, int month, int day);
    // A time of day as a fraction of a day, with the same carrying (61 minutes run on).
    static double timeFraction(int hour, int minute, int second);
    static DateTime fromDateTime(int year, int month, int day, int hour, int minute, int second);
    // The current local date and time, and today at midnight.
    static DateTime now();
    static DateTime today();

    constexpr double days() const { return days_; }
    // The calendar date and time, rounded to the second.
    CalendarDateTime calendar() const;
    int year() const { return calendar().year; }
    int month() const { return calendar().month; }
    int day() const { return calendar().day; }

    constexpr auto operator<=>(const DateTime&) const = default;

private:
    double days_ = 0.0;
};

} // namespace folio
