// SPDX-License-Identifier: MIT
#include <mezalith/clipping/exact_clipping.hpp>
#include <mezalith/clipping/region_code.hpp>
#include <mezalith/geometry/plane_vector.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace mezalith::detail {
namespace {

constexpr double kGreatest = std::numeric_limits<double>::max();

// --- places around the box ------------------------------------------------

/// Where around the box a point lies, counter-clockwise: 2k beyond corner k, 2k + 1 beyond side k
/// alone, as the region numbers them. Places count on over full turns, so that their difference
/// tells how far a path has come around, and which way.
using Place = std::int64_t;

constexpr Place kFullTurn = 8;
constexpr Place kHalfTurn = kFullTurn / 2;

/// By region code; codes of no place have 0.
constexpr std::array<Place, 11> kPlaceOfCode{0, 1, 5, 0, 3, 2, 4, 0, 7, 0, 6};

Place placeOf(std::int32_t code) { return kPlaceOfCode[static_cast<std::size_t>(code)]; }

bool isCorner(Place place) { return place % 2 == 0; }

/// The short way from one place to the other; minus half a turn when both ways are as long.
Place stepsBetween(Place from, Place to) {
    return ((to - from + kFullTurn + kHalfTurn) & (kFullTurn - 1)) - kHalfTurn;
}

/// Of the place of a side, the corner before it.
MzPoint cornerAt(Place place, const RegionLimits& box) {
    const Place corner = (place & (kFullTurn - 1)) / 2;
    return {corner == 1 || corner == 2 ? box.highX : box.lowX, corner >= 2 ? box.highY : box.lowY};
}

// --- segments -------------------------------------------------------------

/// Positive when the point lies to the left of the line from `p` to `q`.
double leftOf(MzPoint p, MzPoint q, MzPoint point) {
    return (q.x - p.x) * (point.y - p.y) - (q.y - p.y) * (point.x - p.x);
}

double clamped(double value, double low, double high) {
    if (!(value > low)) return low;
    return value < high ? value : high;
}

/// The other coordinate where the segment's first one, running from `p` to `q`, is `at`: from the
/// nearer end, where less is lost.
double otherWhere(double at, MzPoint p, MzPoint q) {
    const bool nearP = std::abs(at - p.x) <= std::abs(at - q.x);
    const MzPoint from = nearP ? p : q, to = nearP ? q : p;
    return from.y + (at - from.x) / (to.x - from.x) * (to.y - from.y);
}

/// Where the segment meets the side at that place.
MzPoint crossing(MzPoint p, MzPoint q, Place side, const RegionLimits& box) {
    const Place place = side & (kFullTurn - 1);
    if (place == 1 || place == 5) {
        const double y = place == 1 ? box.lowY : box.highY;
        return {clamped(otherWhere(y, {p.y, p.x}, {q.y, q.x}), box.lowX, box.highX), y};
    }
    const double x = place == 3 ? box.highX : box.lowX;
    return {x, clamped(otherWhere(x, p, q), box.lowY, box.highY)};
}

/// How far around a segment goes that misses the box between places that share no side; 0 when it
/// meets the box. It misses when the first corner it would have to pass lies on the box's side.
Place stepsAround(MzPoint p, MzPoint q, Place from, Place to, const RegionLimits& box) {
    const Place steps = stepsBetween(from, to);
    const bool opposite = steps == -kHalfTurn;
    if (opposite && !isCorner(from)) return 0;
    if ((steps > 0 || opposite) && leftOf(p, q, cornerAt(from + 2, box)) >= 0) {
        return opposite ? kHalfTurn : steps;
    }
    return steps < 0 && leftOf(p, q, cornerAt(from - 1, box)) <= 0 ? steps : 0;
}

// --- paths ----------------------------------------------------------------

/// A path on its way: handed through by value, so that the walk keeps it in registers.
struct Path {
    MzPoint* begin;
    MzPoint* out;
    MzPoint last;       ///< of the source's points taken
    std::int32_t code;  ///< of `last`
    Place place;        ///< of `last` while it is outside
    Place left;         ///< where the path left the box, or began outside
    Place approach;     ///< how far around it came before it first entered

    bool hasEntered() const { return out != begin; }
};

void append(Path& path, MzPoint point) {
    if (!path.hasEntered() || !MzEqualPoints(path.out[-1], point)) *path.out++ = point;
}

/// Adds the corners from where the path left to `place`.
void turnTo(Path& path, Place place, const RegionLimits& box) {
    const Place step = path.left <= place ? 1 : -1;
    for (Place at = path.left; at != place; at += step) {
        if (isCorner(at)) append(path, cornerAt(at, box));
    }
}

/// By the side where the segment to `q` enters.
void enter(Path& path, MzPoint q, const RegionLimits& box) {
    Place side = path.place;
    if (isCorner(side)) side += leftOf(path.last, q, cornerAt(side, box)) > 0 ? 1 : -1;
    if (path.hasEntered()) {
        turnTo(path, side, box);
    } else {
        path.approach = side - path.left;
    }
    append(path, crossing(path.last, q, side, box));
}

/// By the side where the segment to `q` leaves.
void leave(Path& path, MzPoint q, std::int32_t code, const RegionLimits& box) {
    path.left = path.place = placeOf(code);
    if (isCorner(path.place)) {
        path.left += leftOf(path.last, q, cornerAt(path.place, box)) > 0 ? -1 : 1;
    }
    append(path, crossing(path.last, q, path.left, box));
}

/// Follows a segment that ends elsewhere than it begins: inside, or beyond other sides.
Path moved(Path path, MzPoint q, std::int32_t code, const RegionLimits& box) {
    if ((path.code & code) != 0) {
        path.place += stepsBetween(placeOf(path.code), placeOf(code));
    } else if (path.code == 0) {
        leave(path, q, code, box);
    } else if (code == 0) {
        enter(path, q, box);
        append(path, q);
    } else if (const Place steps =
                   stepsAround(path.last, q, placeOf(path.code), placeOf(code), box);
               steps != 0) {
        path.place += steps;
    } else {
        enter(path, q, box);
        leave(path, q, code, box);
    }
    return path;
}

/// Takes the points that are far enough apart, and the last one. What every point needs is kept out
/// of the path meanwhile, in registers.
Path walked(Path path, std::span<const MzPoint> points, double minSpacing, RegionLimits box) {
    const MzPoint* const end = points.data() + points.size();
    MzPoint p = path.last;
    std::int32_t pCode = path.code;
    MzPoint* out = path.out;
    for (const MzPoint* next = points.data(); next != end; ++next) {
        const MzPoint q = *next;
        const double distance = std::abs(p.y - q.y) + std::abs(p.x - q.x);
        if (distance < minSpacing && next + 1 != end) continue;
        if (!(distance <= kGreatest) && !isFinite(q)) continue;
        const std::int32_t code = box.codeOf(q);
        if ((pCode | code) == 0) {
            *out++ = q;
        } else if (pCode != code) {
            path.last = p;
            path.code = pCode;
            path.out = out;
            path = moved(path, q, code, box);
            out = path.out;
        }
        p = q;
        pCode = code;
    }
    path.last = p;
    path.code = pCode;
    path.out = out;
    return path;
}

Path begun(MzPoint first, MzPoint* out, const RegionLimits& box) {
    const std::int32_t code = box.codeOf(first);
    const Place place = placeOf(code);
    Path path{out, out, first, code, place, place, 0};
    if (code == 0) append(path, first);
    return path;
}

/// Goes back to where the ring began, and from there to where it first entered.
MzPoint* closed(Path path, bool beganOutside, const RegionLimits& box) {
    if (beganOutside) turnTo(path, path.place + path.approach, box);
    if (path.out - path.begin > 1) append(path, *path.begin);
    return path.out;
}

/// What of the region is finite, as the points are.
RegionLimits boxOf(const MzClippingRegion& region) {
    RegionLimits box(region);
    box.highX = std::min(box.highX, kGreatest);
    box.highY = std::min(box.highY, kGreatest);
    return box;
}

bool hasInside(const RegionLimits& box) {
    return isFinite({box.lowX, box.lowY}) && box.lowX <= box.highX && box.lowY <= box.highY;
}

/// Without those at either end that are not finite.
std::span<const MzPoint> trimmed(std::span<const MzPoint> points) {
    while (!points.empty() && !isFinite(points.front())) points = points.subspan(1);
    while (!points.empty() && !isFinite(points.back())) points = points.first(points.size() - 1);
    return points;
}

}  // namespace

MzPoint* clipPointsExactly(std::span<const MzPoint> points, MzPoint* out,
                           const MzClippingRegion& region) {
    const RegionLimits box = boxOf(region);
    if (!hasInside(box)) return out;
    const double minSpacing = region.minSpacing();
    const MzPoint* const begin = out;
    for (const MzPoint& q : points) {
        const bool inside =
            q.x >= box.lowX && q.x <= box.highX && q.y >= box.lowY && q.y <= box.highY;
        if (!inside) continue;
        if (out != begin && std::abs(out[-1].y - q.y) + std::abs(out[-1].x - q.x) < minSpacing) {
            continue;
        }
        *out++ = q;
    }
    return out;
}

MzPoint* clipLineExactly(std::span<const MzPoint> line, MzPoint* out,
                         const MzClippingRegion& region) {
    const RegionLimits box = boxOf(region);
    line = trimmed(line);
    if (line.empty() || !hasInside(box)) return out;
    return walked(begun(line.front(), out, box), line.subspan(1), region.minSpacing(), box).out;
}

MzPoint* clipRingExactly(std::span<const MzPoint> ring, MzPoint* out,
                         const MzClippingRegion& region) {
    const RegionLimits box = boxOf(region);
    ring = trimmed(ring);
    if (ring.empty() || !hasInside(box)) return out;
    Path path = begun(ring.front(), out, box);
    const bool beganOutside = path.code != 0;
    path = walked(path, ring.subspan(1), region.minSpacing(), box);
    if (!MzEqualPoints(ring.front(), ring.back())) {
        path = walked(path, ring.first(1), region.minSpacing(), box);
    }
    return closed(path, beganOutside, box);
}

}  // namespace mezalith::detail
