// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>
#include <mezalith/medialaxis/bisector.hpp>
#include <mezalith/platform/object.hpp>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace mezalith {

class MzMedialAxisArc;

/// A point of a medial axis at which arcs meet or end.
class MEZALITH_EXPORT MzMedialAxisNode final : public platform::Object {
  public:
    using Arcs = std::vector<MzMedialAxisArc*>;

    MzPoint point() const { return point_; }
    void setPoint(MzPoint point) { point_ = point; }
    /// To the ring, in the ring's units.
    double distance() const { return distance_; }
    void setDistance(double distance) { distance_ = distance; }
    /// The arcs that touch the node; the axis owns them.
    const Arcs& arcs() const { return arcs_; }
    void setArcs(Arcs arcs) { arcs_ = std::move(arcs); }
    void addArc(MzMedialAxisArc* arc) { arcs_.push_back(arc); }

  private:
    MzPoint point_{0, 0};
    double distance_ = 0;
    Arcs arcs_;
};

/// A piece of a medial axis between two nodes, straight or a parabola.
class MEZALITH_EXPORT MzMedialAxisArc final : public platform::Object {
  public:
    /// The node nearer to the ring, and the one nearer to the root; the axis owns both.
    MzMedialAxisNode* start() const { return start_; }
    void setStart(MzMedialAxisNode* node) { start_ = node; }
    MzMedialAxisNode* end() const { return end_; }
    void setEnd(MzMedialAxisNode* node) { end_ = node; }
    bool isParabola() const { return isParabola_; }
    void setIsParabola(bool isParabola) { isParabola_ = isParabola; }
    /// The inner control points of the cubic from start to end that the parabola is; (0, 0) for a
    /// straight arc.
    MzPoint controlPoint1() const { return controlPoint1_; }
    void setControlPoint1(MzPoint point) { controlPoint1_ = point; }
    MzPoint controlPoint2() const { return controlPoint2_; }
    void setControlPoint2(MzPoint point) { controlPoint2_ = point; }

  private:
    MzMedialAxisNode* start_ = nullptr;
    MzMedialAxisNode* end_ = nullptr;
    bool isParabola_ = false;
    MzPoint controlPoint1_{0, 0};
    MzPoint controlPoint2_{0, 0};
};

/// The medial axis of one ring, without regard to holes: the points that have more than one nearest
/// point on the ring, as a tree of nodes and arcs, found by letting the bisectors of neighbouring
/// components run until they meet.
///
/// Settled, and so not to be relied on; `MzPolygonSkeleton` has none of these:
///  - at most n² meetings are looked at, n bisectors at the corners; where that is not enough, it
///    logs so and builds the network of what there is;
///  - a closed counter-clockwise ring that begins at a reflex vertex often does not converge, nor
///    does a ring that is not convex and smaller than a quarter of a unit;
///  - an edge that ends at a coordinate of exactly 0 may be lost;
///  - the root's distance is that of the point at which its first bisector starts, so that the root
///    need not be the deepest node: ask `mostInteriorNode`.
class MEZALITH_EXPORT MzMedialAxis final : public platform::Object {
  public:
    using Nodes = std::vector<std::shared_ptr<MzMedialAxisNode>>;
    using Arcs = std::vector<std::shared_ptr<MzMedialAxisArc>>;

    MzMedialAxis() = default;
    /// Null for a ring of 4 points or fewer, a closing point counted, and for null. Time and the
    /// number of meetings grow with n² at worst.
    static std::shared_ptr<MzMedialAxis> medialAxisFromRing(const MzLinearRing* ring);

    /// The root first, then depth first.
    const Nodes& nodes() const { return nodes_; }
    void setNodes(Nodes nodes) { nodes_ = std::move(nodes); }
    const Arcs& arcs() const { return arcs_; }
    void setArcs(Arcs arcs) { arcs_ = std::move(arcs); }

    /// The node with the greatest distance, of several the first; null without nodes. The axis owns
    /// it.
    MzMedialAxisNode* mostInteriorNode() const;

    /// Strokes every arc, line width 0.125, and fills a circle of radius 1.5 around the most
    /// interior node, in the current graphics port and its current colours. What is not finite is
    /// left out. Nothing without a current port.
    void draw() const;

    /// How the search for the network went.
    bool isConverged() const { return loops_ != maxLoops_; }
    std::uint64_t loops() const { return loops_; }
    std::uint64_t maxLoops() const { return maxLoops_; }

  private:
    void buildNetworkFromNode(MzMedialAxisNode* node, const std::shared_ptr<MzBisector>& bisector);
    MzMedialAxisNode* addArc(MzMedialAxisNode* end, MzBisector& bisector);
    MzMedialAxisNode* addNode(MzPoint point, double distance);

    Nodes nodes_;
    Arcs arcs_;
    std::uint64_t loops_ = 0;
    std::uint64_t maxLoops_ = 0;
};

}  // namespace mezalith
