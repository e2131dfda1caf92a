// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/device_path.hpp>

#include <cstdint>
#include <optional>
#include <span>

namespace mezalith::platform {

/// A disc of the device: where is asked, and how far around it. The border belongs to it.
struct Disc {
    MzPoint center;
    double radius;  ///< not negative
};

/// How much of a disc is in an area.
enum class Touch : std::uint8_t { Apart, Partly, Wholly };

/// Lines along curves deviate from them by this much at most, device units, where it is asked what
/// is touched.
inline constexpr double kTouchFlatness = 0.05;

/// The box around the disc.
MEZALITH_EXPORT DeviceBox boxAround(const Disc& disc);

/// What of a segment is in a disc.
struct Chord {
    MzPoint nearest;  ///< to the centre
    MzPoint middle;
};

/// The part of the segment from `a` to `b` within the disc; none when they are apart. Finite
/// coordinates of any size are fine.
MEZALITH_EXPORT std::optional<Chord> chordWithin(MzPoint a, MzPoint b, const Disc& disc);

/// Whether the disc touches a convex polygon of these corners, in either direction around.
MEZALITH_EXPORT bool touchesConvex(std::span<const MzPoint> corners, const Disc& disc);

}  // namespace mezalith::platform
