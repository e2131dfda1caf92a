// SPDX-License-Identifier: MIT
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace mezalith {
namespace {

double farX(MzRect r) { return r.origin.x + r.size.width; }
double farY(MzRect r) { return r.origin.y + r.size.height; }

bool equalPairs(double a1, double a2, double b1, double b2) { return a1 == b1 && a2 == b2; }

struct Division {
    MzRect slice;
    MzRect remainder;
};

// The remainder's extent is a difference of far coordinates, so that its far edge stays put.

Division divideAtMinY(MzRect r, double amount) {
    const auto [x, y] = r.origin;
    const auto [w, h] = r.size;
    if (amount <= h) return {{{x, y}, {w, amount}}, {{x, y + amount}, {w, (y + h) - (y + amount)}}};
    return {r, {{x, y + h}, {w, 0}}};
}

Division divideAtMaxY(MzRect r, double amount) {
    const auto [x, y] = r.origin;
    const auto [w, h] = r.size;
    const double cut = (h + y) - amount;
    if (amount <= h) return {{{x, cut}, {w, amount}}, {{x, y}, {w, cut - y}}};
    return {r, {{x, y}, {w, 0}}};
}

Division divideAtMaxX(MzRect r, double amount) {
    const auto [x, y] = r.origin;
    const auto [w, h] = r.size;
    const double cut = (w + x) - amount;
    if (amount <= w) return {{{cut, y}, {amount, h}}, {{x, y}, {cut - x, h}}};
    return {r, {{x, y}, {0, h}}};
}

Division divideAtMinX(MzRect r, double amount) {
    const auto [x, y] = r.origin;
    const auto [w, h] = r.size;
    if (amount <= w) return {{{x, y}, {amount, h}}, {{x + amount, y}, {(x + w) - (x + amount), h}}};
    return {r, {{x + w, y}, {0, h}}};
}

// None for an unknown edge.
std::optional<Division> divided(MzRect r, double amount, std::int32_t edge) {
    if (r.size.width <= 0 || r.size.height <= 0) return Division{MzZeroRect, MzZeroRect};
    switch (edge) {
        case MzMinYEdge:
            return divideAtMinY(r, amount);
        case MzMaxYEdge:
            return divideAtMaxY(r, amount);
        case MzMaxXEdge:
            return divideAtMaxX(r, amount);
        case MzMinXEdge:
            return divideAtMinX(r, amount);
        default:
            return std::nullopt;
    }
}

// The end, on the way up from `x`, of the stretch in which doubles are spaced as they are at `x`.
double evenSpacingEnd(double x) {
    int exponent = 0;
    std::frexp(x, &exponent);
    const double end = x < 0 ? -std::ldexp(1.0, exponent - 1) : std::ldexp(1.0, exponent);
    return std::min(end, std::numeric_limits<double>::max());
}

// Where doubles are evenly spaced and `x` is itself a rounded sum, every further sum grows by the
// same amount: takes at once nearly all the steps that stay within this stretch and below `bound`.
double skipEqualSteps(double x, double step, double bound) {
    const double pace = (x + step) - x;
    if (pace == 0) return x;
    const double steps = std::floor((std::min(bound, evenSpacingEnd(x)) - x) / pace) - 1;
    return steps > 0 ? x + steps * pace : x;
}

// The result of `while (x < bound) x += step`, except that it ends when a step makes no progress.
double stepUpTo(double x, double step, double bound) {
    while (x < bound) {
        const double next = x + step;
        if (!(next > x)) return x;
        const bool evenlySpaced = evenSpacingEnd(next) == evenSpacingEnd(x);
        x = evenlySpaced ? skipEqualSteps(next, step, bound) : next;
    }
    return x;
}

// Brings `origin` into [low, low + extent] by steps of `extent`.
double wrappedInto(double low, double extent, double origin) {
    if (low > origin) return stepUpTo(origin, extent, low);
    const double high = low + extent;
    if (!(origin > high)) return origin;
    // On the way down as in a mirror; a difference, as it has no minus zero where steps meet zero.
    return 0 - stepUpTo(-origin, extent, -high);
}

void store(MzRect* place, MzRect value) {
    if (place != nullptr) *place = value;
}

std::string pairText(const std::string& first, const std::string& second) {
    return std::string("{").append(first).append(", ").append(second).append("}");
}

}  // namespace

bool MzEqualPoints(MzPoint a, MzPoint b) { return equalPairs(a.x, a.y, b.x, b.y); }

bool MzEqualSizes(MzSize a, MzSize b) { return equalPairs(a.width, a.height, b.width, b.height); }

bool MzEqualRects(MzRect a, MzRect b) {
    return MzEqualPoints(a.origin, b.origin) && MzEqualSizes(a.size, b.size);
}

bool MzIsEmptyRect(MzRect r) { return !(r.size.width > 0 && r.size.height > 0); }

MzRect MzInsetRect(MzRect r, double dx, double dy) {
    return {{r.origin.x + dx, r.origin.y + dy}, {r.size.width - 2 * dx, r.size.height - 2 * dy}};
}

MzRect MzOffsetRect(MzRect r, double dx, double dy) {
    return {{r.origin.x + dx, r.origin.y + dy}, r.size};
}

MzRect MzIntegralRect(MzRect r) {
    if (MzIsEmptyRect(r)) return MzZeroRect;
    const MzPoint origin{std::floor(r.origin.x), std::floor(r.origin.y)};
    return {origin, {std::ceil(farX(r)) - origin.x, std::ceil(farY(r)) - origin.y}};
}

MzRect MzUnionRect(MzRect a, MzRect b) {
    if (MzIsEmptyRect(a)) return MzIsEmptyRect(b) ? MzZeroRect : b;
    if (MzIsEmptyRect(b)) return a;
    const MzPoint origin{std::min(a.origin.x, b.origin.x), std::min(a.origin.y, b.origin.y)};
    return {origin, {std::max(farX(a), farX(b)) - origin.x, std::max(farY(a), farY(b)) - origin.y}};
}

MzRect MzIntersectionRect(MzRect a, MzRect b) {
    if (b.origin.x >= farX(a) || a.origin.x >= farX(b)) return MzZeroRect;
    if (b.origin.y >= farY(a) || a.origin.y >= farY(b)) return MzZeroRect;
    const double x = b.origin.x >= a.origin.x ? b.origin.x : a.origin.x;
    const double y = b.origin.y >= a.origin.y ? b.origin.y : a.origin.y;
    const double right = farX(b) <= farX(a) ? farX(b) : farX(a);
    const double top = farY(b) <= farY(a) ? farY(b) : farY(a);
    return {{x, y}, {right - x, top - y}};
}

void MzDivideRect(MzRect r, MzRect* slice, MzRect* remainder, double amount, std::int32_t edge) {
    const auto pieces = divided(r, amount, edge);
    if (!pieces) return;
    store(slice, pieces->slice);
    store(remainder, pieces->remainder);
}

void MzTorusPartition(MzRect* piece1, MzRect* piece2, MzRect* piece3, MzRect* piece4, bool wrapX,
                      bool wrapY, MzRect world, MzRect rect) {
    for (MzRect* piece : {piece1, piece2, piece3, piece4}) store(piece, MzZeroRect);
    const auto [width, height] = world.size;
    auto& [x, y] = rect.origin;
    if (wrapX) x = wrappedInto(world.origin.x, width, x);
    if (wrapY) y = wrappedInto(world.origin.y, height, y);
    store(piece1, MzIntersectionRect(world, rect));
    if (wrapX) {
        x -= width;
        store(piece2, MzIntersectionRect(world, rect));
        x += width;
    }
    if (!wrapY) return;
    y -= height;
    store(piece3, MzIntersectionRect(world, rect));
    if (!wrapX) return;
    y += height;
    store(piece4, MzIntersectionRect(world, MzOffsetRect(rect, -width, -height)));
}

bool MzPointInRect(MzPoint p, MzRect r) {
    return r.origin.x <= p.x && p.x < farX(r) && r.origin.y <= p.y && p.y < farY(r);
}

bool MzMouseInRect(MzPoint p, MzRect r, bool flipped) {
    if (flipped) return MzPointInRect(p, r);
    return r.origin.x <= p.x && p.x < farX(r) && r.origin.y < p.y && p.y <= farY(r);
}

bool MzContainsRect(MzRect a, MzRect b) {
    return !MzIsEmptyRect(b) && a.origin.x <= b.origin.x && a.origin.y <= b.origin.y &&
           farX(b) <= farX(a) && farY(b) <= farY(a);
}

bool MzIntersectsRect(MzRect a, MzRect b) {
    return b.origin.x < farX(a) && a.origin.x < farX(b) && b.origin.y < farY(a) &&
           a.origin.y < farY(b);
}

std::string NSStringFromMzPoint(MzPoint p) {
    return pairText(platform::generalText(p.x), platform::generalText(p.y));
}

std::string NSStringFromMzSize(MzSize s) {
    return pairText(platform::generalText(s.width), platform::generalText(s.height));
}

std::string NSStringFromMzRect(MzRect r) {
    return pairText(NSStringFromMzPoint(r.origin), NSStringFromMzSize(r.size));
}

}  // namespace mezalith
