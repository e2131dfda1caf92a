// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstdint>
#include <string>

namespace mezalith {

/// A planar point. Geographic: x = longitude, y = latitude, degrees. Projected: projected units.
/// Pixel: view points, y up.
struct MzPoint {
    double x;
    double y;
};

/// Extents along the axes. A component counts as positive only when it is greater than 0.
struct MzSize {
    double width;
    double height;
};

/// The rectangle [x, x + width] by [y, y + height]. Negative sizes are never normalised.
struct MzRect {
    MzPoint origin;
    MzSize size;
};

inline constexpr MzRect MzZeroRect{{0.0, 0.0}, {0.0, 0.0}};

/// The side from which `MzDivideRect` takes its slice. Other values are accepted and do nothing.
enum MzRectEdge : std::int32_t { MzMinYEdge = 1, MzMaxYEdge = 2, MzMaxXEdge = 4, MzMinXEdge = 8 };

/// Exact comparison; any NaN makes it false.
MEZALITH_EXPORT bool MzEqualPoints(MzPoint a, MzPoint b);
/// Exact comparison; any NaN makes it false.
MEZALITH_EXPORT bool MzEqualSizes(MzSize a, MzSize b);
/// Exact comparison of all four fields; any NaN makes it false.
MEZALITH_EXPORT bool MzEqualRects(MzRect a, MzRect b);

/// True unless width > 0 and height > 0.
MEZALITH_EXPORT bool MzIsEmptyRect(MzRect r);

/// (x + dx, y + dy, width - 2·dx, height - 2·dy); negative results are returned as they are.
MEZALITH_EXPORT MzRect MzInsetRect(MzRect r, double dx, double dy);

/// The rectangle moved by (dx, dy).
MEZALITH_EXPORT MzRect MzOffsetRect(MzRect r, double dx, double dy);

/// The smallest rectangle with whole coordinates around `r`; the zero rectangle if `r` is empty.
MEZALITH_EXPORT MzRect MzIntegralRect(MzRect r);

/// The bounding rectangle of both. An empty rectangle counts for nothing; two give the zero
/// rectangle.
MEZALITH_EXPORT MzRect MzUnionRect(MzRect a, MzRect b);

/// The common part; the zero rectangle when they are apart or only touch.
MEZALITH_EXPORT MzRect MzIntersectionRect(MzRect a, MzRect b);

/// Cuts a slice of the width or height `amount` off the side `edge` of `r` and gives the rest as
/// the remainder. An amount larger than the rectangle takes all of it and leaves a remainder of no
/// extent; an empty rectangle gives two zero rectangles; an unknown edge writes nothing. Either
/// output may be null.
MEZALITH_EXPORT void MzDivideRect(MzRect r, MzRect* slice, MzRect* remainder, double amount,
                                  std::int32_t edge);

/// Splits `rect` over a world that repeats with its width in x (`wrapX`) and its height in y
/// (`wrapY`). piece1 is the part within the world after the origin of `rect` was brought into it,
/// piece2 the part that wraps around in x, piece3 in y, piece4 in both; parts that do not exist are
/// zero rectangles. Any of them may be null.
///
/// The origin is shifted by the world's extent again and again, each sum rounded, until it lies in
/// the world, both ends included. The cost does not grow with the number of shifts. A world without
/// positive extent leaves the origin where it is; far from zero, where a shift is lost in rounding,
/// shifting ends short of the world.
MEZALITH_EXPORT void MzTorusPartition(MzRect* piece1, MzRect* piece2, MzRect* piece3,
                                      MzRect* piece4, bool wrapX, bool wrapY, MzRect world,
                                      MzRect rect);

/// Half-open: r.x <= p.x < r.x + width and r.y <= p.y < r.y + height.
MEZALITH_EXPORT bool MzPointInRect(MzPoint p, MzRect r);

/// As `MzPointInRect` when `flipped`; otherwise the bottom edge is excluded and the top edge
/// included.
MEZALITH_EXPORT bool MzMouseInRect(MzPoint p, MzRect r, bool flipped);

/// True when `b` is not empty and lies within `a`, shared edges included.
MEZALITH_EXPORT bool MzContainsRect(MzRect a, MzRect b);

/// True when the open rectangles overlap.
/// Settled: an empty rectangle is not rejected, so one of no width inside another intersects it.
MEZALITH_EXPORT bool MzIntersectsRect(MzRect a, MzRect b);

/// "{x, y}", numbers as "%g".
MEZALITH_EXPORT std::string NSStringFromMzPoint(MzPoint p);
/// "{width, height}", numbers as "%g".
MEZALITH_EXPORT std::string NSStringFromMzSize(MzSize s);
/// "{{x, y}, {width, height}}", numbers as "%g".
MEZALITH_EXPORT std::string NSStringFromMzRect(MzRect r);

}  // namespace mezalith
