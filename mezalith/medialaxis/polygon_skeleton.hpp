// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace mezalith {

/// A point inside a polygon and how far it is from the outline, in the units of the polygon.
struct MzSkeletonNode {
    MzPoint point;
    double clearance;
};

/// A piece of a skeleton between two of its nodes, by their numbers: a straight line, or a parabola
/// given as the cubic from start to end with these inner control points. Of a straight line they
/// lie on it, a third from either end.
struct MzSkeletonArc {
    std::uint32_t start;
    std::uint32_t end;
    bool isParabola;
    MzPoint controlPoint1;
    MzPoint controlPoint2;
};

/// The medial axis of a polygon with holes: the points inside that have more than one nearest point
/// on the outline, as one network of nodes and arcs for each connected piece of the inside,
/// pieces that end in one corner being connected. Its ends are the convex corners of the outline.
///
/// Inside is what an odd number of rings surround, whichever way they run. Rings may be open,
/// repeat points, touch and cross themselves and each other. They are brought onto a grid of at
/// least 2^30 steps over the larger side of the polygon's box; no point of the outline moves by
/// more than 3 steps, so what is narrower than that may vanish. Points that are not finite are left
/// out.
///
/// Accuracy  a clearance is within `tolerance` of the distance from the node to the outline as it
///           was given; arcs are exact up to that.
/// Cost      O(n log n) for outlines without crossings.
/// Source    Lee (1982), Medial axis transformation of a planar shape, IEEE Transactions on Pattern
///           Analysis and Machine Intelligence 4.
class MEZALITH_EXPORT MzPolygonSkeleton {
  public:
    using Nodes = std::vector<MzSkeletonNode>;
    using Arcs = std::vector<MzSkeletonArc>;

    MzPolygonSkeleton() = default;
    /// Null for null and for what has no inside.
    static std::shared_ptr<MzPolygonSkeleton> skeletonFromPolygon(const MzPolygon* polygon);
    static std::shared_ptr<MzPolygonSkeleton> skeletonFromRing(const MzLinearRing* ring);
    /// One for each of the polygons, in their order; null for those without an inside.
    static std::vector<std::shared_ptr<MzPolygonSkeleton>> skeletonsFromMultiPolygon(
        const MzMultiPolygon* polygons);

    const Nodes& nodes() const { return nodes_; }
    const Arcs& arcs() const { return arcs_; }
    /// How far clearances may be off, in the units of the polygon.
    double tolerance() const { return tolerance_; }

    /// The node furthest from the outline, the middle of the largest circle inside; of several the
    /// first.
    MzSkeletonNode deepestNode() const;

    /// The skeleton without its lesser branches. A branch is what hangs on a node by one arc,
    /// without a way round a hole; its reach is the length of the way through it from that node to
    /// the outline. A branch goes whose reach is less than `ratio` times the clearance of the node
    /// that it hangs on. Nothing goes up to a ratio of 1; at 1.5, branches into corners wider than
    /// 84 degrees do. What stays is as connected as the whole; ways round holes and between them
    /// stay at any ratio, and so does the middle, the node on which the others hang, where there
    /// are none.
    std::shared_ptr<MzPolygonSkeleton> prunedByRatio(double ratio) const;
    /// The same for branches whose reach is less than `length` more than the clearance, which is by
    /// how much the outline would have to move there for the branch not to be.
    std::shared_ptr<MzPolygonSkeleton> prunedByLength(double length) const;

    /// The point of an arc at a share of 0 to 1 of its parameter.
    MzPoint pointOfArc(const MzSkeletonArc& arc, double share) const;
    /// The length of an arc, to 1e-6 of it.
    double lengthOfArc(const MzSkeletonArc& arc) const;

  private:
    std::shared_ptr<MzPolygonSkeleton> withArcs(const std::vector<bool>& isKept,
                                                std::span<const std::uint32_t> middles) const;

    Nodes nodes_;
    Arcs arcs_;
    double tolerance_ = 0;
};

/// The deepest point of a polygon and its clearance, which is what `deepestNode` of its skeleton
/// says, without making that. Empty for what has no inside.
MEZALITH_EXPORT std::optional<MzSkeletonNode> MzDeepestPoint(const MzPolygon* polygon);

}  // namespace mezalith
