// SPDX-License-Identifier: MIT
#pragma once

#include "host/feature.hpp"

#include <memory>
#include <vector>

namespace mezalith::host {

/// Makes one feature again of areas that the data's edge at the 180th meridian cut in two records:
/// those that share a piece of it, one from the east and one from the west, and have the same
/// layer, style and attributes. It has the record of the first of them and the polygons of all, so
/// that a view that shows both sides of the meridian can draw it whole; the others are taken out of
/// the list.
void joinHalves(std::vector<std::shared_ptr<Feature>>& features);

}  // namespace mezalith::host
