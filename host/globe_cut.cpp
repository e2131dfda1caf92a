// SPDX-License-Identifier: MIT
#include "host/globe_cut.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;

/// Tolerances that a straight piece may be long without being looked at: on a globe of a hundred
/// pixels' radius such a piece is off by less than one.
constexpr double kShort = 32;
/// Tolerances after which a piece is halved in any case, as it may bend both ways.
constexpr double kLong = 256;
/// Degrees: one turn, and the longitudes up to which points are taken.
constexpr double kTurn = 360;
constexpr double kFarthest = 100 * kTurn;
/// Degrees that a segment extends at most before it is looked at.
constexpr double kStep = 30;
/// Halvings of a segment, and those up to which it does not matter whether it is in view.
constexpr int kDepth = 20;
constexpr int kAnywhere = 5;

/// Finite, and no farther around the globe, or beyond a pole, than anyone would go.
bool isPlace(MzPoint p) { return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kTurn; }

Points placesOf(std::span<const MzPoint> points) {
    Points finite;
    finite.reserve(points.size());
    for (const MzPoint& p : points) {
        if (isPlace(p)) finite.push_back(p);
    }
    return finite;
}

/// Closed, without points that are not finite; empty when it surrounds nothing.
GlobeRing properRing(const GlobeRing& ring) {
    GlobeRing proper = placesOf(ring);
    if (proper.empty()) return proper;
    const MzPoint first = proper.front(), last = proper.back();
    if (first.x != last.x || first.y != last.y) proper.push_back(first);
    if (proper.size() < 4) proper.clear();
    return proper;
}

/// Whether an odd number of the rings surround the point in the plane of degrees.
bool isInside(const GlobeRings& rings, MzPoint point) {
    bool inside = false;
    for (const GlobeRing& ring : rings) {
        for (std::size_t i = 1; i < ring.size(); ++i) {
            const MzPoint a = ring[i - 1], b = ring[i];
            if ((a.y > point.y) == (b.y > point.y)) continue;
            if (point.x < a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x)) inside = !inside;
        }
    }
    return inside;
}

/// The same in any turn of the globe.
bool isInsideAnyTurn(const GlobeRings& rings, MzPoint point) {
    BoundingBox box;
    for (const GlobeRing& ring : rings) box.add(ring);
    if (box.isEmpty()) return false;
    const double first = std::ceil((box.minX - point.x) / kTurn);
    const int count = static_cast<int>(std::floor((box.maxX - point.x) / kTurn) - first) + 1;
    for (int i = 0; i < count; ++i) {
        if (isInside(rings, {point.x + (first + i) * kTurn, point.y})) return true;
    }
    return false;
}

/// A part of a ring within the edge, whose ends lie on it.
struct Chain {
    Points points;
    double start, end;  ///< along the edge
};

/// Joins the ends of chains along the edge, where it lies inside.
class EdgeLinker {
  public:
    /// Even-odd, an edge's points are inside what `source` surrounds.
    EdgeLinker(const RegionEdge& edge, std::vector<Chain> chains, const GlobeRings& source)
        : edge_(edge), chains_(std::move(chains)) {
        for (std::size_t i = 0; i < chains_.size(); ++i) {
            ends_.push_back({chains_[i].start, i, true});
            ends_.push_back({chains_[i].end, i, false});
        }
        std::ranges::stable_sort(ends_, {}, &End::position);
        places_.resize(ends_.size());
        for (std::size_t i = 0; i < ends_.size(); ++i) places_[numberOf(ends_[i])] = i;
        findFirst(source);
    }

    void addRings(GlobeRings& rings) {
        if (chains_.empty() && isEdgeInside_) rings.push_back(wholeEdge());
        std::vector<bool> used(chains_.size());
        for (std::size_t i = 0; i < chains_.size(); ++i) {
            if (!used[i]) rings.push_back(ringFrom(places_[2 * i], used));
        }
    }

  private:
    struct End {
        double position;
        std::size_t chain;
        bool isStart;
    };

    static std::size_t numberOf(const End& end) { return 2 * end.chain + (end.isStart ? 0 : 1); }

    double gapAfter(std::size_t i) const {
        return i + 1 < ends_.size() ? ends_[i + 1].position - ends_[i].position
                                    : ends_[0].position + edge_.length() - ends_[i].position;
    }

    /// The widest gap between two ends is inside or outside; from there on both alternate.
    void findFirst(const GlobeRings& source) {
        double middle = edge_.length() / 3;
        if (!ends_.empty()) {
            for (std::size_t i = 1; i < ends_.size(); ++i) {
                if (gapAfter(i) > gapAfter(first_)) first_ = i;
            }
            middle = std::fmod(ends_[first_].position + gapAfter(first_) / 2, edge_.length());
        }
        isEdgeInside_ = isInsideAnyTurn(source, edge_.pointAt(middle));
        if (!isEdgeInside_) ++first_;
    }

    Points wholeEdge() const {
        Points all;
        edge_.addPointsBetween(-1, edge_.length(), all);
        all.push_back(all.front());
        return all;
    }

    Points ringFrom(std::size_t place, std::vector<bool>& used) {
        Points ring;
        while (!used[ends_[place].chain]) {
            const End& begin = ends_[place];
            Points& points = chains_[begin.chain].points;
            used[begin.chain] = true;
            if (!begin.isStart) std::ranges::reverse(points);
            ring.insert(ring.end(), points.begin(), points.end());
            place = followEdge(places_[numberOf(begin) ^ 1U], ring);
        }
        ring.push_back(ring.front());
        return ring;
    }

    /// From one end to the one it is joined to, which is answered: the next for every other one,
    /// counted from the first, and the one before for those between.
    std::size_t followEdge(std::size_t here, Points& ring) const {
        const std::size_t count = ends_.size();
        const bool isForward = here % 2 == first_ % 2;
        const std::size_t there = (here + (isForward ? 1 : count - 1)) % count;
        const double from = ends_[here].position, to = ends_[there].position;
        if (isForward && there < here) {
            edge_.addPointsBetween(from, edge_.length(), ring);
            edge_.addPointsBetween(-1, to, ring);
        } else if (!isForward && there > here) {
            edge_.addPointsBetween(from, -1, ring);
            edge_.addPointsBetween(edge_.length(), to, ring);
        } else {
            edge_.addPointsBetween(from, to, ring);
        }
        return there;
    }

    const RegionEdge& edge_;
    std::vector<Chain> chains_;
    std::vector<End> ends_;            ///< by position
    std::vector<std::size_t> places_;  ///< in it, of each chain's start and end
    std::size_t first_ = 0;            ///< from which on ends are joined in pairs
    bool isEdgeInside_ = false;
};

/// In how many steps a segment is looked at, so that none ends where it began, as around a pole.
int stepsOver(MzPoint p, MzPoint q) {
    const double extent = std::max(std::abs(q.x - p.x), std::abs(q.y - p.y));
    return std::max(1, static_cast<int>(std::ceil(extent / kStep)));
}

Points withinSteps(const Points& points) {
    Points result{points.front()};
    for (std::size_t i = 1; i < points.size(); ++i) {
        const MzPoint p = points[i - 1], q = points[i];
        const int steps = stepsOver(p, q);
        for (int step = 1; step < steps; ++step) {
            const double t = static_cast<double>(step) / steps;
            result.push_back({p.x + (q.x - p.x) * t, p.y + (q.y - p.y) * t});
        }
        result.push_back(q);
    }
    return result;
}

double distanceToChord(MzPoint p, MzPoint a, MzPoint b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double length = std::hypot(dx, dy);
    if (length == 0) return std::hypot(p.x - a.x, p.y - a.y);
    return std::abs((p.x - a.x) * dy - (p.y - a.y) * dx) / length;
}

}  // namespace

GlobeCut::GlobeCut(std::shared_ptr<MzMapProjection> projection, const MzProjectionRegion& region,
                   const BoundingBox& view, double tolerance)
    : projection_(std::move(projection)), edge_(region), view_(view), tolerance_(tolerance) {}

bool GlobeCut::isFine(std::span<const MzPoint> points, std::span<const MzPoint> plane) const {
    const double limit = kShort * tolerance_;
    for (std::size_t i = 1; i < plane.size(); ++i) {
        if (stepsOver(points[i - 1], points[i]) > 1) return false;
        const double dx = plane[i].x - plane[i - 1].x, dy = plane[i].y - plane[i - 1].y;
        if (!(dx * dx + dy * dy <= limit * limit)) return false;
    }
    return true;
}

/// The line's pieces within the edge; of a ring, whose first and last point are the same place, the
/// piece through that one comes whole. `isClosed` tells whether it is the ring itself.
std::vector<Points> GlobeCut::stepsWithin(std::span<const MzPoint> line, bool& isClosed) const {
    std::vector<RegionEdge::Step> steps;
    for (std::size_t i = 1; i < line.size(); ++i) edge_.addSteps(line[i - 1], line[i], steps);
    std::vector<Points> pieces;
    bool isOpen = false;
    for (const RegionEdge::Step& step : steps) {
        if (step.isInside) {
            const bool follows = isOpen && edge_.goesOn(pieces.back().back(), step.from);
            if (!follows) pieces.push_back({step.from});
            pieces.back().push_back(step.to);
        }
        isOpen = step.isInside;
    }
    isClosed = isOpen && steps.front().isInside &&
               edge_.goesOn(pieces.back().back(), pieces.front().front());
    return pieces;
}

std::vector<Points> GlobeCut::line(std::span<const MzPoint> line) const {
    bool isClosed = false;
    std::vector<Points> pieces = stepsWithin(placesOf(line), isClosed);
    for (Points& piece : pieces) piece = bent(piece);
    return pieces;
}

std::vector<GlobeRings> GlobeCut::polygons(std::vector<GlobeRings> polygons) const {
    for (GlobeRings& rings : polygons) {
        for (GlobeRing& ring : rings) ring = properRing(ring);
        std::erase_if(rings, [](const GlobeRing& ring) { return ring.empty(); });
    }
    const JoinedPolygons globe = joinedAcrossAntimeridian(polygons);
    std::vector<GlobeRings> result;
    result.reserve(globe.apart.size() + 1);
    for (const GlobeRings& rings : globe.apart) result.push_back(cutRings(rings, rings));
    if (!globe.joinedFrom.empty()) result.push_back(cutRings(globe.joined, globe.joinedFrom));
    std::erase_if(result, [](const GlobeRings& rings) { return rings.empty(); });
    return result;
}

/// What surrounds a pole goes on until it comes back to where it began.
GlobeRing GlobeCut::aroundAllTurns(const GlobeRing& ring) const {
    const double shift = ring.empty() ? 0 : ring.back().x - ring.front().x;
    GlobeRing all = ring;
    if (std::abs(shift) < kTurn / 2) return all;
    for (int turn = 1; turn < edge_.turns(); ++turn) {
        for (std::size_t i = 1; i < ring.size(); ++i) {
            all.push_back({ring[i].x + turn * shift, ring[i].y});
        }
    }
    return all;
}

GlobeRings GlobeCut::cutRings(const GlobeRings& rings, const GlobeRings& source) const {
    std::vector<Chain> chains;
    GlobeRings result;
    for (const GlobeRing& ring : rings) {
        bool isClosed = false;
        std::vector<Points> pieces = stepsWithin(aroundAllTurns(ring), isClosed);
        if (isClosed && pieces.size() == 1) {
            result.push_back(bent(pieces.front()));
            continue;
        }
        if (isClosed) {
            Points& last = pieces.back();
            last.insert(last.end(), pieces.front().begin(), pieces.front().end());
            pieces.front() = std::move(last);
            pieces.pop_back();
        }
        for (const Points& piece : pieces) {
            chains.push_back(
                {bent(piece), edge_.positionOf(piece.front()), edge_.positionOf(piece.back())});
        }
    }
    EdgeLinker(edge_, std::move(chains), source).addRings(result);
    return result;
}

GlobeCut::Points GlobeCut::bent(const Points& points) const {
    Points close = withinSteps(points);
    Points plane(close.size());
    projection_->projectCoordinates(close, plane);
    if (isFine(close, plane)) return close;
    Points result{close.front()};
    for (std::size_t i = 1; i < close.size(); ++i) {
        addBends(result, close[i - 1], close[i], plane[i - 1], plane[i], 0);
        result.push_back(close[i]);
    }
    return result;
}

void GlobeCut::addBends(Points& result, MzPoint p, MzPoint q, MzPoint planeP, MzPoint planeQ,
                        int depth) const {
    const double length = std::hypot(planeQ.x - planeP.x, planeQ.y - planeP.y);
    if (!(length > kShort * tolerance_) || depth >= kDepth) return;
    if (depth >= kAnywhere) {
        const BoundingBox near{planeP.x - length, planeP.y - length, planeP.x + length,
                               planeP.y + length};
        if (!near.meets(view_)) return;
    }
    const MzPoint middle{p.x + (q.x - p.x) / 2, p.y + (q.y - p.y) / 2};
    const MzPoint plane = projection_->projectedCoordinateForLongitudeLatitude(middle);
    const bool bends = distanceToChord(plane, planeP, planeQ) > tolerance_;
    if (!bends && (length <= kLong * tolerance_ || depth > kAnywhere)) return;
    addBends(result, p, middle, planeP, plane, depth + 1);
    result.push_back(middle);
    addBends(result, middle, q, plane, planeQ, depth + 1);
}

}  // namespace mezalith::host
