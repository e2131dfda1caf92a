// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/device_path.hpp>

#include <vector>

namespace mezalith::platform {

/// One subpath of lines. A closed one does not repeat its first point.
struct DevicePolyline {
    std::vector<MzPoint> points;
    bool isClosed = false;
};

/// The subpaths of `path` with curves turned into lines that deviate from them by at most
/// `tolerance`. What lies wholly on one side of `box` is not refined. Curves far larger than the
/// box (by a factor of 2^32) may deviate more.
MEZALITH_EXPORT std::vector<DevicePolyline> flattenedPath(const DevicePath& path, double tolerance,
                                                          const DeviceBox& box);

/// The area of `path` within `box`, by either fill rule, as closed subpaths of lines (Sutherland &
/// Hodgman 1974, Reentrant polygon clipping, CACM 17(1)). Lines end where they cross a side of the
/// box, so that slopes are kept; from where a subpath leaves to where it comes back, the result
/// runs along the sides. Curves become lines within `tolerance`.
MEZALITH_EXPORT DevicePath cutArea(const DevicePath& path, const DeviceBox& box, double tolerance);

/// The lines of `path` within `box`, interrupted where it leaves the box. Curves become lines
/// within `tolerance`.
MEZALITH_EXPORT DevicePath cutOutline(const DevicePath& path, const DeviceBox& box,
                                      double tolerance);

/// Fractions of a segment's length, from its beginning.
struct SegmentPart {
    double from;
    double to;
    bool isEmpty() const { return !(from <= to); }
};

/// The part of the segment from `a` to `b` that lies within `box` (Liang & Barsky 1984, A new
/// concept and method for line clipping, ACM TOG 3(1)). Coordinates up to the largest doubles are
/// fine.
MEZALITH_EXPORT SegmentPart segmentWithin(MzPoint a, MzPoint b, const DeviceBox& box);

/// The point at fraction `t` (0 to 1) of the segment from `a` to `b`, without overflow.
MEZALITH_EXPORT MzPoint pointOnSegment(MzPoint a, MzPoint b, double t);

}  // namespace mezalith::platform
