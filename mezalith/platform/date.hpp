// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <chrono>
#include <cstdint>

namespace mezalith::platform {

/// An instant: seconds since 1970-01-01T00:00:00Z without leap seconds. The Gregorian calendar is
/// continued to all years, the year before 1 being 0. NaN and infinities are no instants.
using Date = std::chrono::sys_time<std::chrono::duration<double>>;

/// Whether `date` is an instant at all.
MEZALITH_EXPORT bool isFinite(Date date);

/// `later` - `earlier`, seconds.
MEZALITH_EXPORT double secondsBetween(Date earlier, Date later);

/// 1 January of `year`, 00:00 GMT. Years are within -9999 and 9999.
MEZALITH_EXPORT Date startOfYear(std::int64_t year);

/// The year and the part of it that has passed: 2 July 2023, 12:00 GMT is 2023.5. Within 1e-9
/// years between the years -9999 and 9999; NaN outside them and for what is no instant.
MEZALITH_EXPORT double decimalYear(Date date);

}  // namespace mezalith::platform
