#include "engine/date_time.h"

#include <cmath>
#include <cstdint>
#include <ctime>

namespace folio {

namespace {

// Days from 1970-01-01 to the given proleptic Gregorian date (month 1..12, any day).
std::int64_t daysFromCivil(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void civilFromDays(std::int64_t z, int& year, int& month, int& day) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    year = static_cast<int>(static_cast<std::int64_t>(yoe) + era * 400 + (month <= 2));
}

const std::int64_t Epoch = daysFromCivil(1899, 12, 30);

} // namespace

DateTime DateTime::fromDate(int year, int month, int day) {
    // Carry the month into the year first, then let the day run from the first of it.
    std::int64_t m0 = static_cast<std::int64_t>(month) - 1;
    std::int64_t y = year + (m0 >= 0 ? m0 / 12 : -((-m0 + 11) / 12));
    m0 -= (y - year) * 12;
    const std::int64_t first = daysFromCivil(y, static_cast<unsigned>(m0 + 1), 1);
    return DateTime(static_cast<double>(first - Epoch + day - 1));
}

double DateTime::timeFraction(int hour, int minute, int second) {
    const double seconds = hour * 3600.0 + minute * 60.0 + second;
    return seconds / 86400.0;
}

DateTime DateTime::fromDateTime(int year, int month, int day, int hour, int minute, int second) {
    double date = fromDate(year, month, day).days();
    double time = timeFraction(hour, minute, second);
    const double carry = std::floor(time);
    date += carry;
    time -= carry;
    // Before the epoch the fraction counts forward into the day while the whole part is
    // negative, so the time is subtracted.
    return DateTime(date < 0 && time > 0 ? date - time : date + time);
}

DateTime DateTime::now() {
    const std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    return fromDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                        local.tm_min, local.tm_sec);
}

DateTime DateTime::today() {
    const CalendarDateTime c = now().calendar();
    return fromDate(c.year, c.month, c.day);
}

CalendarDateTime DateTime::calendar() const {
    const double whole = std::trunc(days_);
    std::int64_t seconds = std::llround(std::fabs(days_ - whole) * 86400.0);
    std::int64_t dayNumber = static_cast<std::int64_t>(whole);
    if (seconds >= 86400) {
        seconds -= 86400;
        ++dayNumber;
    }
    CalendarDateTime c;
    civilFromDays(dayNumber + Epoch, c.year, c.month, c.day);
    c.hour = static_cast<int>(seconds / 3600);
    c.minute = static_cast<int>(seconds / 60 % 60);
    c.second = static_cast<int>(seconds % 60);
    return c;
}

} // namespace folio
