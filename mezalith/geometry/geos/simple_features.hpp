// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mezalith {

// Simple-feature operations in the plane, by the GEOS library. Coordinates go over as blocks of
// numbers, never as text, and in double precision.
//
// Every operation answers nothing, with a reason in `error` unless that is null, for a null or
// abstract geometry, for coordinates that are not finite, for a line of a single point or a ring of
// fewer than three, and where a geometry is not valid in a way that leaves no answer. Rings need
// not be closed. Safe from several threads at once with geometries of their own.

/// What an operation makes: no geometry where it makes nothing; else points as one geometry, each
/// line as one, polygons as one. Of what comes in parts of several dimensions, each is there.
using MzGeometries = std::vector<std::shared_ptr<MzGeometry>>;

/// Whether they have a point in common.
MEZALITH_EXPORT std::optional<bool> MzIntersects(const MzGeometry* a, const MzGeometry* b,
                                                 std::string* error = nullptr);
/// Whether no point of `b` is outside of `a`, and some point inside.
MEZALITH_EXPORT std::optional<bool> MzContains(const MzGeometry* a, const MzGeometry* b,
                                               std::string* error = nullptr);
/// The least distance between their points, in the units of the coordinates. None where one of
/// them has no points.
MEZALITH_EXPORT std::optional<double> MzDistance(const MzGeometry* a, const MzGeometry* b,
                                                 std::string* error = nullptr);

/// The points up to `distance` away, inwards for one below 0, in the units of the coordinates;
/// round corners are drawn with `segments` sides a quarter.
MEZALITH_EXPORT std::optional<MzGeometries> MzBuffer(const MzGeometry* geometry, double distance,
                                                     int segments = 8,
                                                     std::string* error = nullptr);
/// The points of either.
MEZALITH_EXPORT std::optional<MzGeometries> MzUnion(const MzGeometry* a, const MzGeometry* b,
                                                    std::string* error = nullptr);
/// The points of both.
MEZALITH_EXPORT std::optional<MzGeometries> MzIntersection(const MzGeometry* a, const MzGeometry* b,
                                                           std::string* error = nullptr);
/// The points of `a` that are not of `b`.
MEZALITH_EXPORT std::optional<MzGeometries> MzDifference(const MzGeometry* a, const MzGeometry* b,
                                                         std::string* error = nullptr);
/// With fewer points, none of them farther than `tolerance` from where the line was; rings stay
/// rings, holes within them, and nothing crosses that did not.
MEZALITH_EXPORT std::optional<MzGeometries> MzSimplified(const MzGeometry* geometry,
                                                         double tolerance,
                                                         std::string* error = nullptr);

}  // namespace mezalith
