// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <span>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// The one of `names` that `name` is most likely a misspelling of: the first with the fewest
/// letters left out, added, replaced or swapped with their neighbour (the optimal string alignment
/// distance), at most one for each four of its letters. Empty when there is none.
MEZALITH_EXPORT std::string_view nearestName(std::string_view name,
                                             std::span<const std::string_view> names);

/// What a message says of an unknown name: "name" in quotes after a blank, with the nearest name
/// if there is one: ` "strokWidth", did you mean "strokeWidth"?`. Long names are cut, and what is
/// not printable ASCII is shown as "?".
MEZALITH_EXPORT std::string suggestion(std::string_view name,
                                       std::span<const std::string_view> names);

}  // namespace mezalith::platform
