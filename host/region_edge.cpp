// SPDX-License-Identifier: MIT
#include "host/region_edge.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <ranges>
#include <utility>

namespace mezalith::host {
namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kTurn = 360;
constexpr double kPole = 90;

/// Degrees between points of the edge, and between those at which a long segment is looked at.
constexpr double kMark = 0.5;
constexpr double kLook = 2;
constexpr int kHalvings = 50;

/// Turns of the globe in one segment after which no more crossings are looked for.
constexpr double kMostTurns = 1000;
/// Looks at one segment.
constexpr double kMostLooks = 100'000;

/// Degrees within which two points are the same, and from which on one is at a pole.
constexpr double kSame = 1e-6;
constexpr double kAtPole = 90 - 1e-9;

/// Degrees from the meridian of a gap to its two sides, which are not to be taken for one place.
constexpr double kGapSide = 2 * kSame;

/// Where a segment meets a side of a band.
struct Crossing {
    double t;
    MzPoint at;
};

MzPoint between(MzPoint p, MzPoint q, double t) {
    return {p.x + (q.x - p.x) * t, p.y + (q.y - p.y) * t};
}

/// Crossings of p..q with x = `meridian`, whole turns of so many degrees apart.
void addMeridianCrossings(MzPoint p, MzPoint q, double meridian, double turn,
                          std::vector<Crossing>& crossings) {
    const auto [low, high] = std::minmax(p.x, q.x);
    const double first = std::ceil((low - meridian) / turn);
    const double turns = std::floor((high - meridian) / turn) - first + 1;
    const int count = static_cast<int>(std::clamp(turns, 0.0, kMostTurns));
    for (int i = 0; i < count; ++i) {
        const double x = meridian + (first + i) * turn;
        const double t = (x - p.x) / (q.x - p.x);
        if (t > 0 && t < 1) crossings.push_back({t, {x, between(p, q, t).y}});
    }
}

void addParallelCrossing(MzPoint p, MzPoint q, double parallel, std::vector<Crossing>& crossings) {
    const double t = (parallel - p.y) / (q.y - p.y);
    if (t > 0 && t < 1) crossings.push_back({t, {between(p, q, t).x, parallel}});
}

}  // namespace

RegionEdge::RegionEdge(const MzProjectionRegion& region)
    : isCap_(region.shape == MzProjectionRegion::Shape::Cap),
      turns_(std::max(1, static_cast<int>(std::ceil(2 * region.reach / kTurn)))),
      west_(region.centre.x - region.reach),
      east_(region.centre.x + region.reach),
      south_(std::max(region.south, -kPole + 1e-9)),
      north_(std::min(region.north, kPole - 1e-9)),
      gaps_(region.gaps),
      centre_(region.centre),
      middle_(direction(region.centre)),
      toEast_{-std::sin(region.centre.x * kRadians), std::cos(region.centre.x * kRadians), 0},
      cosine_(std::cos(region.reach * kRadians)),
      sine_(std::sin(region.reach * kRadians)),
      length_(kTurn) {
    toNorth_ = {middle_.y * toEast_.z - middle_.z * toEast_.y,
                middle_.z * toEast_.x - middle_.x * toEast_.z,
                middle_.x * toEast_.y - middle_.y * toEast_.x};
    if (!isCap_) addCorners();
    const int marks = static_cast<int>(std::ceil(length_ / kMark));
    for (int i = 0; i < marks; ++i) marks_.push_back(i * kMark);
    if (!isCap_)
        marks_.insert(marks_.end(), cornerPositions_.begin() + 1, cornerPositions_.end() - 1);
    std::ranges::sort(marks_);
}

/// Counter-clockwise: the south side eastwards, the north side westwards.
void RegionEdge::addCorners() {
    std::ranges::sort(gaps_, {}, &MzProjectionRegion::Gap::meridian);
    corners_.push_back({west_, south_});
    const auto addGap = [this](const MzProjectionRegion::Gap& gap, double edge, double side) {
        for (const double sign : {-1.0, 1.0}) {
            const double x = gap.meridian + sign * side;
            const MzPoint atEdge{x, edge}, atTip{x, gap.tip};
            corners_.push_back(sign < 0 ? atEdge : atTip);
            corners_.push_back(sign < 0 ? atTip : atEdge);
        }
    };
    for (const auto& gap : gaps_) {
        if (!gap.isNorth) addGap(gap, south_, kGapSide);
    }
    corners_.push_back({east_, south_});
    corners_.push_back({east_, north_});
    for (const auto& gap : gaps_ | std::views::reverse) {
        if (gap.isNorth) addGap(gap, north_, -kGapSide);
    }
    corners_.push_back({west_, north_});
    corners_.push_back(corners_.front());
    cornerPositions_.push_back(0);
    for (std::size_t i = 1; i < corners_.size(); ++i) {
        const MzPoint p = corners_[i - 1], q = corners_[i];
        cornerPositions_.push_back(cornerPositions_.back() + std::abs(q.x - p.x) +
                                   std::abs(q.y - p.y));
    }
    length_ = cornerPositions_.back();
}

RegionEdge::Vector RegionEdge::direction(MzPoint p) {
    const double lambda = p.x * kRadians, phi = p.y * kRadians;
    return {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
}

bool RegionEdge::capHolds(MzPoint p) const {
    if (std::abs(centre_.y) == kPole) {
        return std::sin(std::copysign(p.y, p.y * centre_.y) * kRadians) >= cosine_;
    }
    return dot(direction(p), middle_) >= cosine_;
}

/// Of the band's own turn.
bool RegionEdge::bandHolds(MzPoint p) const {
    if (p.x < west_ || p.x > east_ || p.y < south_ || p.y > north_) return false;
    return std::ranges::none_of(gaps_, [p](const MzProjectionRegion::Gap& gap) {
        return std::abs(p.x - gap.meridian) < kGapSide && (p.y > gap.tip) == gap.isNorth;
    });
}

void RegionEdge::addSteps(MzPoint p, MzPoint q, std::vector<Step>& steps) const {
    if (isCap_) {
        addCapSteps(p, q, steps);
    } else {
        addBandSteps(p, q, steps);
    }
}

void RegionEdge::addBandSteps(MzPoint p, MzPoint q, std::vector<Step>& steps) const {
    const double wholeTurn = turns_ * kTurn;
    std::vector<Crossing> crossings;
    if (p.x != q.x) {
        addMeridianCrossings(p, q, west_, wholeTurn, crossings);
        addMeridianCrossings(p, q, east_, wholeTurn, crossings);
        for (const auto& gap : gaps_) {
            addMeridianCrossings(p, q, gap.meridian - kGapSide, wholeTurn, crossings);
            addMeridianCrossings(p, q, gap.meridian + kGapSide, wholeTurn, crossings);
        }
    }
    if (p.y != q.y) {
        addParallelCrossing(p, q, south_, crossings);
        addParallelCrossing(p, q, north_, crossings);
        for (const auto& gap : gaps_) addParallelCrossing(p, q, gap.tip, crossings);
    }
    std::ranges::sort(crossings, {}, &Crossing::t);
    crossings.push_back({1, q});
    MzPoint from = p;
    for (const Crossing& crossing : crossings) {
        const MzPoint middle = between(from, crossing.at, 0.5);
        const double turn = std::round((middle.x - centre_.x) / wholeTurn) * wholeTurn;
        const bool isInside = bandHolds({middle.x - turn, middle.y});
        const auto local = [&](MzPoint point) {
            return MzPoint{std::clamp(point.x - turn, west_, east_), point.y};
        };
        steps.push_back({local(from), local(crossing.at), isInside});
        from = crossing.at;
    }
}

/// Where between two shares of the segment, one inside and one outside, it meets the edge.
double RegionEdge::crossing(MzPoint p, MzPoint q, double inside, double outside) const {
    for (int i = 0; i < kHalvings; ++i) {
        const double middle = (inside + outside) / 2;
        (capHolds(between(p, q, middle)) ? inside : outside) = middle;
    }
    return inside;
}

void RegionEdge::addCapSteps(MzPoint p, MzPoint q, std::vector<Step>& steps) const {
    const double extent = std::max(std::abs(q.x - p.x), std::abs(q.y - p.y));
    const int looks = static_cast<int>(std::clamp(std::ceil(extent / kLook), 1.0, kMostLooks));
    MzPoint from = p;
    bool wasInside = capHolds(p);
    double before = 0;
    for (int i = 1; i <= looks; ++i) {
        const double t = static_cast<double>(i) / looks;
        const bool isInside = capHolds(between(p, q, t));
        if (isInside != wasInside) {
            const double at = isInside ? crossing(p, q, t, before) : crossing(p, q, before, t);
            steps.push_back({from, between(p, q, at), wasInside});
            from = between(p, q, at);
        }
        wasInside = isInside;
        before = t;
    }
    steps.push_back({from, q, wasInside});
}

bool RegionEdge::goesOn(MzPoint end, MzPoint next) const {
    if (std::abs(end.y - next.y) > kSame) return false;
    const double dx = next.x - end.x;
    return std::abs(isCap_ ? std::remainder(dx, kTurn) : dx) < kSame || std::abs(end.y) >= kAtPole;
}

double RegionEdge::positionOf(MzPoint point) const {
    if (isCap_) {
        const Vector d = direction(point);
        const double azimuth = std::atan2(dot(d, toEast_), dot(d, toNorth_)) / kRadians;
        return azimuth < 0 ? azimuth + kTurn : azimuth;
    }
    double position = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < corners_.size(); ++i) {
        // Sides run along meridians and parallels.
        const MzPoint p = corners_[i - 1], q = corners_[i];
        const double x = std::clamp(point.x, std::min(p.x, q.x), std::max(p.x, q.x));
        const double y = std::clamp(point.y, std::min(p.y, q.y), std::max(p.y, q.y));
        const double distance = std::abs(point.x - x) + std::abs(point.y - y);
        if (distance >= least) continue;
        least = distance;
        position = cornerPositions_[i - 1] + std::abs(x - p.x) + std::abs(y - p.y);
    }
    return position;
}

MzPoint RegionEdge::pointAt(double position) const {
    if (isCap_) {
        const double east = sine_ * std::sin(position * kRadians);
        const double north = sine_ * std::cos(position * kRadians);
        const double x = cosine_ * middle_.x + east * toEast_.x + north * toNorth_.x;
        const double y = cosine_ * middle_.y + east * toEast_.y + north * toNorth_.y;
        const double z = cosine_ * middle_.z + east * toEast_.z + north * toNorth_.z;
        return {std::atan2(y, x) / kRadians, std::atan2(z, std::hypot(x, y)) / kRadians};
    }
    const auto next = std::ranges::upper_bound(cornerPositions_, position);
    const auto i = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(
        next - cornerPositions_.begin(), 1, static_cast<std::ptrdiff_t>(corners_.size()) - 1));
    const MzPoint p = corners_[i - 1], q = corners_[i];
    const double along = position - cornerPositions_[i - 1];
    return {p.x + std::copysign(q.x != p.x ? along : 0, q.x - p.x),
            p.y + std::copysign(q.y != p.y ? along : 0, q.y - p.y)};
}

void RegionEdge::addPointsBetween(double from, double to, std::vector<MzPoint>& points) const {
    const auto [low, high] = std::minmax(from, to);
    const auto first = std::ranges::upper_bound(marks_, low);
    const auto last = std::ranges::lower_bound(marks_, high);
    const auto place = points.size();
    for (auto mark = first; mark < last; ++mark) points.push_back(pointAt(*mark));
    if (from > to) std::reverse(points.begin() + static_cast<std::ptrdiff_t>(place), points.end());
}

}  // namespace mezalith::host
