// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/touch.hpp>

namespace mezalith::platform {

/// How much of the disc is in the area of `path`, its subpaths closed: `Wholly` when no side comes
/// into the disc. Sides with nothing filled next to them, such as those of a spike or of two equal
/// rings by the even-odd rule, do not count; what is thinner than 1/256 may not. Curves are taken
/// within `kTouchFlatness`. One walk along the path, and a second one when sides are near.
MEZALITH_EXPORT Touch touchOfArea(const DevicePath& path, FillRule rule, const Disc& disc);

}  // namespace mezalith::platform
