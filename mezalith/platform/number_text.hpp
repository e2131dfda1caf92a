// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// The shortest text that reads back to the same double ("0.1", "1e+300", "inf", "-0");
/// "nan" for every NaN. Independent of the locale.
MEZALITH_EXPORT std::string shortestText(double value);

/// `value` as printf's "%g" writes it in the C locale: six significant digits. Independent of the
/// locale.
MEZALITH_EXPORT std::string generalText(double value);

/// Reads the whole of `text` as a decimal number, with an optional sign of either kind; empty for
/// anything else, white space included, and for numbers too large or too close to zero for a
/// double. Independent of the locale; "nan" and "inf" are read.
MEZALITH_EXPORT std::optional<double> numberFromText(std::string_view text);

/// The longest decimal number that `text` begins with, with an optional sign of either kind; 0 when
/// there is none ("inf" is none), infinite beyond a double's range and 0 below it. Independent of
/// the locale.
MEZALITH_EXPORT double leadingNumber(std::string_view text);

/// The longest decimal integer that `text` begins with, with an optional sign of either kind; 0
/// when there is none. Ends at the range's ends.
MEZALITH_EXPORT std::int64_t leadingInteger(std::string_view text);

}  // namespace mezalith::platform
