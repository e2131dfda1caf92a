// SPDX-License-Identifier: MIT
#include <mezalith/platform/date.hpp>

#include <cmath>
#include <limits>

namespace mezalith::platform {

bool isFinite(Date date) { return std::isfinite(date.time_since_epoch().count()); }

double secondsBetween(Date earlier, Date later) { return (later - earlier).count(); }

Date startOfYear(std::int64_t year) {
    const std::chrono::year calendarYear(static_cast<int>(year));
    return std::chrono::sys_days(calendarYear / std::chrono::January / 1);
}

double decimalYear(Date date) {
    if (!(date >= startOfYear(-9999) && date < startOfYear(10000))) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const auto day = std::chrono::floor<std::chrono::days>(date);
    const int year = static_cast<int>(std::chrono::year_month_day(day).year());
    const Date begin = startOfYear(year);
    return year + secondsBetween(begin, date) / secondsBetween(begin, startOfYear(year + 1));
}

}  // namespace mezalith::platform
