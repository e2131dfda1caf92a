// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/medialaxis/grid_network.hpp>
#include <mezalith/medialaxis/grid_outline.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>
#include <mezalith/medialaxis/skeleton_branches.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace mezalith {
namespace {

using detail::GridOutline;

/// The outline mirrored at the diagonal, over which a sweep takes another course.
GridOutline mirrored(GridOutline outline) {
    for (detail::GridSegment& s : outline.segments) {
        std::swap(s.low.x, s.low.y);
        std::swap(s.high.x, s.high.y);
        // Left becomes right, and left again where the ends trade places.
        s.isInteriorAbove = !s.isInteriorAbove;
        if (s.high < s.low) {
            std::swap(s.low, s.high);
            s.isInteriorAbove = !s.isInteriorAbove;
        }
    }
    return outline;
}

void mirror(detail::GridNode& node) { std::swap(node.x, node.y); }

void mirror(detail::GridNetwork& network) {
    for (detail::GridNode& node : network.nodes) mirror(node);
    for (detail::GridArc& arc : network.arcs) std::swap(arc.x, arc.y);
}

template <typename Answer>
struct OnGrid {
    GridOutline outline;
    Answer answer;
};

/// Asks about the polygon's outline, about its mirror image where there is no answer, and on
/// coarser grids where there is none either.
template <typename Answer>
std::optional<OnGrid<Answer>> ask(const MzPolygon* polygon,
                                  std::optional<Answer> (*question)(const GridOutline&)) {
    for (const int coarser : {0, 4, 8, 16}) {
        GridOutline outline = detail::gridOutlineOf(polygon, coarser);
        if (outline.segments.empty()) continue;
        if (auto answer = question(outline)) return {{std::move(outline), std::move(*answer)}};
        if (auto answer = question(mirrored(outline))) {
            mirror(*answer);
            return {{std::move(outline), std::move(*answer)}};
        }
    }
    return std::nullopt;
}

double toleranceOf(const GridOutline& outline) {
    return 3 * outline.step + 4 * std::numeric_limits<double>::epsilon() * outline.largest;
}

MzSkeletonNode nodeOf(const GridOutline& outline, const detail::GridNode& node) {
    return {outline.placeOf(node.x, node.y), node.clearance * outline.step};
}

MzPoint mix(MzPoint a, MzPoint b, double share) {
    return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
}

MzSkeletonArc arcOf(const GridOutline& outline, const detail::GridArc& arc, MzPoint start,
                    MzPoint end) {
    if (!arc.isParabola) {
        return {arc.start, arc.end, false, mix(start, end, 1.0 / 3), mix(start, end, 2.0 / 3)};
    }
    const MzPoint control = outline.placeOf(arc.x, arc.y);
    return {arc.start, arc.end, true, mix(start, control, 2.0 / 3), mix(end, control, 2.0 / 3)};
}

/// In order of clearance; the first of equal ones is the greatest.
bool isShallower(const MzSkeletonNode& a, const MzSkeletonNode& b) {
    return a.clearance < b.clearance;
}

}  // namespace

std::shared_ptr<MzPolygonSkeleton> MzPolygonSkeleton::skeletonFromPolygon(
    const MzPolygon* polygon) {
    const auto found = ask<detail::GridNetwork>(polygon, detail::gridNetworkOf);
    if (!found || found->answer.nodes.empty()) return nullptr;
    auto skeleton = std::make_shared<MzPolygonSkeleton>();
    skeleton->tolerance_ = toleranceOf(found->outline);
    skeleton->nodes_.reserve(found->answer.nodes.size());
    for (const detail::GridNode& node : found->answer.nodes) {
        skeleton->nodes_.push_back(nodeOf(found->outline, node));
    }
    skeleton->arcs_.reserve(found->answer.arcs.size());
    for (const detail::GridArc& arc : found->answer.arcs) {
        skeleton->arcs_.push_back(arcOf(found->outline, arc, skeleton->nodes_[arc.start].point,
                                        skeleton->nodes_[arc.end].point));
    }
    return skeleton;
}

std::shared_ptr<MzPolygonSkeleton> MzPolygonSkeleton::skeletonFromRing(const MzLinearRing* ring) {
    if (ring == nullptr) return nullptr;
    MzLinearRing only = *ring;
    const MzPolygon polygon{1, &only};
    return skeletonFromPolygon(&polygon);
}

std::vector<std::shared_ptr<MzPolygonSkeleton>> MzPolygonSkeleton::skeletonsFromMultiPolygon(
    const MzMultiPolygon* polygons) {
    std::vector<std::shared_ptr<MzPolygonSkeleton>> skeletons;
    for (const MzPolygon& polygon : polygonsOf(polygons)) {
        skeletons.push_back(skeletonFromPolygon(&polygon));
    }
    return skeletons;
}

MzSkeletonNode MzPolygonSkeleton::deepestNode() const {
    if (nodes_.empty()) return {{0, 0}, 0};
    return *std::ranges::max_element(nodes_, isShallower);
}

std::shared_ptr<MzPolygonSkeleton> MzPolygonSkeleton::prunedByRatio(double ratio) const {
    const detail::SkeletonBranches branches(*this);
    return withArcs(
        branches.kept([&](double reach, double clearance) { return !(reach < ratio * clearance); }),
        branches.middles());
}

std::shared_ptr<MzPolygonSkeleton> MzPolygonSkeleton::prunedByLength(double length) const {
    const detail::SkeletonBranches branches(*this);
    return withArcs(branches.kept([&](double reach, double clearance) {
        return !(reach - clearance < length);
    }),
                    branches.middles());
}

/// The skeleton of some of the arcs, the nodes that these have, and some that need have none.
std::shared_ptr<MzPolygonSkeleton> MzPolygonSkeleton::withArcs(
    const std::vector<bool>& isKept, std::span<const std::uint32_t> middles) const {
    std::vector<std::uint32_t> numbers(nodes_.size(), 0);
    for (const std::uint32_t middle : middles) numbers[middle] = 1;
    for (std::size_t i = 0; i < arcs_.size(); ++i) {
        if (isKept[i]) numbers[arcs_[i].start] = numbers[arcs_[i].end] = 1;
    }
    auto skeleton = std::make_shared<MzPolygonSkeleton>();
    skeleton->tolerance_ = tolerance_;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (numbers[i] == 0) continue;
        numbers[i] = static_cast<std::uint32_t>(skeleton->nodes_.size());
        skeleton->nodes_.push_back(nodes_[i]);
    }
    for (std::size_t i = 0; i < arcs_.size(); ++i) {
        if (!isKept[i]) continue;
        skeleton->arcs_.push_back(arcs_[i]);
        skeleton->arcs_.back().start = numbers[arcs_[i].start];
        skeleton->arcs_.back().end = numbers[arcs_[i].end];
    }
    return skeleton;
}

MzPoint MzPolygonSkeleton::pointOfArc(const MzSkeletonArc& arc, double share) const {
    const MzPoint a = nodes_[arc.start].point;
    const MzPoint d = nodes_[arc.end].point;
    if (!arc.isParabola) return mix(a, d, share);
    const MzPoint ab = mix(a, arc.controlPoint1, share);
    const MzPoint bc = mix(arc.controlPoint1, arc.controlPoint2, share);
    const MzPoint cd = mix(arc.controlPoint2, d, share);
    return mix(mix(ab, bc, share), mix(bc, cd, share), share);
}

double MzPolygonSkeleton::lengthOfArc(const MzSkeletonArc& arc) const {
    const MzPoint start = nodes_[arc.start].point;
    const MzPoint end = nodes_[arc.end].point;
    if (!arc.isParabola) return detail::distanceBetween(start, end);
    // The derivative of the quadratic curve runs in a straight line from `first` to `last`.
    const MzPoint first = detail::times(detail::minus(arc.controlPoint1, start), 3);
    const MzPoint last = detail::times(detail::minus(end, arc.controlPoint2), 3);
    // Gauss and Legendre's rule on eight pieces.
    constexpr int kPieces = 8;
    constexpr std::array<std::pair<double, double>, 3> kRule{
        {{0.1127016653792583, 5.0 / 18}, {0.5, 8.0 / 18}, {0.8872983346207417, 5.0 / 18}}};
    double length = 0;
    for (int i = 0; i < kPieces; ++i) {
        for (const auto& [share, weight] : kRule) {
            length += weight / kPieces * detail::lengthOf(mix(first, last, (i + share) / kPieces));
        }
    }
    return length;
}

std::optional<MzSkeletonNode> MzDeepestPoint(const MzPolygon* polygon) {
    const auto found = ask<detail::GridNode>(polygon, detail::deepestNodeOf);
    if (!found) return std::nullopt;
    return nodeOf(found->outline, found->answer);
}

}  // namespace mezalith
