// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include "mezalith/medialaxis/disjoint_sets.hpp"
#include <mezalith/medialaxis/polygon_spine.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace mezalith {
namespace {

using detail::distanceBetween;
using detail::minus;
using detail::plus;
using detail::times;

constexpr std::uint32_t kNone = UINT32_MAX;

/// A forest of the arcs of a skeleton: of every way round a hole, the narrowest arc is left out.
class WidestForest {
  public:
    explicit WidestForest(const MzPolygonSkeleton& skeleton)
        : skeleton_(skeleton), arcsOf_(skeleton.nodes().size()), degrees_(skeleton.nodes().size()) {
        for (const MzSkeletonArc& arc : skeleton.arcs()) {
            ++degrees_[arc.start];
            ++degrees_[arc.end];
        }
        std::vector<std::uint32_t> order(skeleton.arcs().size());
        std::iota(order.begin(), order.end(), std::uint32_t{0});
        std::ranges::stable_sort(order, std::ranges::greater{},
                                 [&](std::uint32_t arc) { return widthOf(skeleton.arcs()[arc]); });
        detail::DisjointSets sets(skeleton.nodes().size());
        for (const std::uint32_t i : order) {
            const MzSkeletonArc& arc = skeleton.arcs()[i];
            if (!sets.join(arc.start, arc.end)) continue;
            arcsOf_[arc.start].push_back(i);
            arcsOf_[arc.end].push_back(i);
        }
    }

    /// The arcs of the longest way, from one end to the other, and the node where it begins.
    std::pair<std::uint32_t, std::vector<std::uint32_t>> longestWay() const {
        std::vector<bool> isSeen(arcsOf_.size());
        Walk longest;
        for (std::uint32_t i = 0; i < arcsOf_.size(); ++i) {
            if (isSeen[i]) continue;
            const Walk out = walkFrom(i, &isSeen);
            Walk back = walkFrom(out.end, nullptr);
            if (back.length > longest.length) {
                longest = std::move(back);
            }
        }
        std::vector<std::uint32_t> way;
        std::uint32_t node = longest.end;
        while (!longest.arcBefore.empty() && longest.arcBefore[node] != kNone) {
            way.push_back(longest.arcBefore[node]);
            node = otherEnd(way.back(), node);
        }
        return {longest.end, way};
    }

    std::uint32_t otherEnd(std::uint32_t arc, std::uint32_t node) const {
        const MzSkeletonArc& way = skeleton_.arcs()[arc];
        return way.start == node ? way.end : way.start;
    }

  private:
    struct Walk {
        std::uint32_t end =
            0;               ///< the furthest other end of the skeleton, or node where it has none
        double length = -1;  ///< of the way there
        std::vector<std::uint32_t> arcBefore;
    };

    /// Where the skeleton ends, and not only the forest.
    bool isEnd(std::uint32_t node) const { return degrees_[node] == 1; }

    double widthOf(const MzSkeletonArc& arc) const {
        return std::min(skeleton_.nodes()[arc.start].clearance,
                        skeleton_.nodes()[arc.end].clearance);
    }

    Walk walkFrom(std::uint32_t start, std::vector<bool>* isSeen) const {
        Walk walk;
        walk.end = start;
        walk.arcBefore.assign(arcsOf_.size(), kNone);
        const auto isGoal = [&](std::uint32_t node) { return isEnd(node) && node != start; };
        std::vector<std::pair<std::uint32_t, double>> pending{{start, 0.0}};
        while (!pending.empty()) {
            const auto [node, length] = pending.back();
            pending.pop_back();
            if (isSeen != nullptr) (*isSeen)[node] = true;
            if (std::pair(isGoal(node), length) > std::pair(isGoal(walk.end), walk.length)) {
                walk.end = node;
                walk.length = length;
            }
            for (const std::uint32_t arc : arcsOf_[node]) {
                if (arc == walk.arcBefore[node]) continue;
                const std::uint32_t next = otherEnd(arc, node);
                walk.arcBefore[next] = arc;
                pending.emplace_back(next, length + skeleton_.lengthOfArc(skeleton_.arcs()[arc]));
            }
        }
        return walk;
    }

    const MzPolygonSkeleton& skeleton_;
    std::vector<std::vector<std::uint32_t>> arcsOf_;
    std::vector<std::uint32_t> degrees_;  ///< of the nodes, in the skeleton
};

/// The points of a way, curves as sixteen pieces.
std::vector<MzPoint> pointsOfWay(const MzPolygonSkeleton& skeleton, const WidestForest& forest,
                                 std::uint32_t node, const std::vector<std::uint32_t>& way) {
    std::vector<MzPoint> points{skeleton.nodes()[node].point};
    for (const std::uint32_t i : way) {
        const MzSkeletonArc& arc = skeleton.arcs()[i];
        const int pieces = arc.isParabola ? 16 : 1;
        for (int piece = 1; piece <= pieces; ++piece) {
            const double share = static_cast<double>(piece) / pieces;
            points.push_back(skeleton.pointOfArc(arc, arc.start == node ? share : 1 - share));
        }
        node = forest.otherEnd(i, node);
    }
    return points;
}

std::vector<MzPoint> spacedEvenly(const std::vector<MzPoint>& line, std::size_t count) {
    std::vector<double> lengths{0};
    for (std::size_t i = 1; i < line.size(); ++i) {
        lengths.push_back(lengths.back() + distanceBetween(line[i - 1], line[i]));
    }
    std::vector<MzPoint> points;
    std::size_t i = 1;
    for (std::size_t k = 0; k < count; ++k) {
        const double along =
            lengths.back() * static_cast<double>(k) / static_cast<double>(count - 1);
        while (i + 1 < line.size() && lengths[i] < along) ++i;
        const double piece = lengths[i] - lengths[i - 1];
        const double share = piece > 0 ? std::min((along - lengths[i - 1]) / piece, 1.0) : 0;
        points.push_back(plus(line[i - 1], times(minus(line[i], line[i - 1]), share)));
    }
    return points;
}

double distanceToSegment(MzPoint p, MzPoint a, MzPoint b) {
    const MzPoint along = minus(b, a);
    const MzPoint from = minus(p, a);
    const double square = detail::dot(along, along);
    const double share = square > 0 ? std::clamp(detail::dot(from, along) / square, 0.0, 1.0) : 0;
    return detail::lengthOf(minus(from, times(along, share)));
}

double distanceToOutline(MzPoint p, const MzPolygon* polygon) {
    double least = std::numeric_limits<double>::infinity();
    for (const MzLinearRing& ring : ringsOf(polygon)) {
        const auto points = pointsOf(&ring);
        for (std::size_t i = 0; i < points.size(); ++i) {
            const MzPoint next = points[i + 1 == points.size() ? 0 : i + 1];
            // Distances that are not numbers are not less.
            const double distance = distanceToSegment(p, points[i], next);
            if (distance < least) least = distance;
        }
    }
    return least;
}

/// Lets every point but the ends move between its neighbours, again and again, yet by no more than
/// most of its clearance from where it was.
std::vector<MzPoint> smoothed(const std::vector<MzSkeletonNode>& line) {
    constexpr double kMost = 0.75;
    constexpr int kRounds = 64;
    std::vector<MzPoint> points;
    points.reserve(line.size());
    for (const MzSkeletonNode& node : line) points.push_back(node.point);
    std::vector<MzPoint> moved = points;
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 1; i + 1 < points.size(); ++i) {
            const MzPoint between = times(plus(points[i - 1], points[i + 1]), 0.5);
            const MzPoint goal = times(plus(points[i], between), 0.5);
            const MzPoint way = minus(goal, line[i].point);
            const double length = detail::lengthOf(way);
            const double most = kMost * line[i].clearance;
            moved[i] = length > most ? plus(line[i].point, times(way, most / length)) : goal;
        }
        std::swap(points, moved);
    }
    return points;
}

std::vector<MzSkeletonNode> withClearances(const std::vector<MzPoint>& points,
                                           const MzPolygon* polygon) {
    std::vector<MzSkeletonNode> nodes;
    nodes.reserve(points.size());
    for (const MzPoint p : points) nodes.push_back({p, distanceToOutline(p, polygon)});
    return nodes;
}

}  // namespace

std::vector<MzSkeletonNode> MzSpineOfPolygon(const MzPolygon* polygon,
                                             const MzPolygonSkeleton* skeleton, std::size_t count) {
    if (polygon == nullptr || skeleton == nullptr || skeleton->nodes().empty()) return {};
    const WidestForest forest(*skeleton);
    const auto [first, way] = forest.longestWay();
    if (way.empty()) return {skeleton->deepestNode()};
    const auto line = pointsOfWay(*skeleton, forest, first, way);
    const auto even = spacedEvenly(line, std::max<std::size_t>(count, 2));
    return withClearances(smoothed(withClearances(even, polygon)), polygon);
}

}  // namespace mezalith
