// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

namespace mezalith {

// Rays are start + direction·t, parabolas start + direction·s + quadratic·s². A parameter of
// +infinity says that there is no such point. No output may be null.

/// Where two rays meet, negative parameters included; +infinity for both when they are parallel.
MEZALITH_EXPORT void MzRayRayIntersection(double* t1, double* t2, MzPoint start1, MzPoint dir1,
                                          MzPoint start2, MzPoint dir2);

/// The parabola of the points as far from `point` as from the line of a segment: its focal
/// distance, and its vertex, half the way from the point to its foot on the line.
/// `segmentDirection` is a unit vector.
MEZALITH_EXPORT void MzParabolaCoefficientsForSegmentPoint(double* focalDistance, MzPoint* vertex,
                                                           MzPoint segmentStart,
                                                           MzPoint segmentDirection, MzPoint point);

/// Where the line of a ray meets a parabola: ray parameters t1, t2 and parabola parameters s1, s2
/// of both roots, equal where there is one; all four +infinity where there is none.
///
/// Settled: the ray parameters are taken from y for every ray with direction.x < 1e-7, so that a
/// ray along negative x gets some that are not finite; and discriminants within 1e-7 of 0 count as
/// 0, at every scale.
MEZALITH_EXPORT void MzRayParabolaIntersectionBothAnswers(
    double* t1, double* s1, double* t2, double* s2, MzPoint rayStart, MzPoint rayDirection,
    MzPoint parabolaStart, MzPoint parabolaDirection, MzPoint parabolaQuadratic);

/// The one of both answers whose parabola parameter is the smallest positive one, else the negative
/// one closest to zero, else the second.
MEZALITH_EXPORT void MzRayParabolaIntersection(double* t, double* s, MzPoint rayStart,
                                               MzPoint rayDirection, MzPoint parabolaStart,
                                               MzPoint parabolaDirection,
                                               MzPoint parabolaQuadratic);

}  // namespace mezalith
