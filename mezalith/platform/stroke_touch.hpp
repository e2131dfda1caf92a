// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/pen.hpp>
#include <mezalith/platform/touch.hpp>

namespace mezalith::platform {

/// Whether the disc touches what `pen` leaves along `path`: the bodies of its lines, their joins,
/// caps and dashes. Where a curve turns, joins are round whatever the pen's. Curves are taken
/// within `kTouchFlatness`, round joins and caps within a thousandth of the width. A subpath of one
/// place is a dot with round caps and nothing otherwise, a dash of no length a dot or a square.
MEZALITH_EXPORT bool touchesStroke(const DevicePath& path, const Pen& pen, const Disc& disc);

}  // namespace mezalith::platform
