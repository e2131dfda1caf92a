// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/bezier_path.hpp>

namespace mezalith {

// Rectangles with rounded corners, and speech bubbles of them, as paths. Coordinates and radii are
// in the path's user space, y up. Every `bezierPathWith…` makes a new path and calls its
// `append…`, which adds one closed subpath:
//
// - Nothing for an empty rectangle, nor for one whose sides do not lie at finite coordinates.
// - The plain rectangle for a radius that is 0, negative or NaN.
// - Otherwise corners that are arcs, tangent to the two edges that meet there, of the radius or
//   half the shorter side, whichever is less, in single precision.

/// All four corners rounded.
MEZALITH_EXPORT platform::BezierPath bezierPathWithRoundedRect(MzRect rect, float cornerRadius);
MEZALITH_EXPORT void appendBezierPathWithRoundedRect(platform::BezierPath& path, MzRect rect,
                                                     float cornerRadius);

/// The top corners rounded, the bottom ones square.
MEZALITH_EXPORT platform::BezierPath bezierPathWithTopRoundedRect(MzRect rect, float cornerRadius);
MEZALITH_EXPORT void appendBezierPathWithTopRoundedRect(platform::BezierPath& path, MzRect rect,
                                                        float cornerRadius);

/// A rounded rectangle with a stem out of the right side: a triangle of fixed size that sticks out
/// 50 units.
MEZALITH_EXPORT platform::BezierPath bezierPathWithCartoonBubbleInRect(MzRect rect,
                                                                       float cornerRadius);
MEZALITH_EXPORT void appendBezierPathWithCartoonBubbleInRect(platform::BezierPath& path,
                                                             MzRect rect, float cornerRadius);

/// A rounded rectangle with a stem from the bottom edge to `stemTip`; no stem to a tip that is not
/// finite.
/// Settled: the stem leaves the edge between 25 and 55 units to the right of the tip, wherever the
/// rectangle is.
MEZALITH_EXPORT platform::BezierPath bezierPathWithCartoonBubbleInRect(MzRect rect, MzPoint stemTip,
                                                                       float cornerRadius);
MEZALITH_EXPORT void appendBezierPathWithCartoonBubbleInRect(platform::BezierPath& path,
                                                             MzRect rect, MzPoint stemTip,
                                                             float cornerRadius);

}  // namespace mezalith
