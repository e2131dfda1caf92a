// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geomagnetism/model_reading.hpp>

#include <span>
#include <string_view>

// The layouts with a line for each coefficient and a column for each epoch.

namespace mezalith::detail {

/// The fields of a line.
using Fields = std::span<const std::string_view>;

/// Whether the line is the one that begins a table: "g/h n m" and the years.
MEZALITH_EXPORT bool isTable(Fields fields);
MEZALITH_EXPORT ModelReading readTable(std::string_view text);

/// Whether the line is the one that begins an SHC file: five or seven numbers.
MEZALITH_EXPORT bool isSHC(Fields fields);
MEZALITH_EXPORT ModelReading readSHC(std::string_view text);

}  // namespace mezalith::detail
