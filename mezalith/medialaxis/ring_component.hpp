// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>
#include <mezalith/platform/object.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace mezalith {

/// The values of `ringComponentType`.
enum MzRingComponentType : std::int32_t {
    MzRingComponentTypePlain = 0,
    MzRingComponentTypeEdge = 1,
    MzRingComponentTypeInflexVertex = 2
};

class MzRingComponent;
using MzRingComponents = std::vector<std::shared_ptr<MzRingComponent>>;

/// What the medial axis of a ring keeps its distance from: a straight edge of the ring, or a corner
/// at which the ring turns away from its interior. Coordinates are in the units of the ring.
class MEZALITH_EXPORT MzRingComponent : public platform::Object {
  public:
    MzRingComponent() = default;

    /// Tells the class: 1 is an MzRingEdge, 2 an MzRingInflexVertex, 0 neither.
    std::int32_t ringComponentType() const { return type_; }
    virtual std::string description() const;

    /// The components in counter-clockwise order, the interior on the left of every edge in a plane
    /// with y up, however the ring is stored: the edges, each followed by the inflex vertex at its
    /// end if there is one. Points whose coordinates both agree to a relative 1e-8 are one point. A
    /// ring of area 0 or NaN, or of fewer than 3 points, is walked as it is stored. Empty for null.
    ///
    /// Settled: the first vertex of a closed counter-clockwise ring never becomes an inflex vertex,
    /// while that of a clockwise one does; and an edge that ends at a coordinate of exactly 0 is
    /// lost unless its other coordinate differs. `MzPolygonSkeleton` has neither quirk.
    static MzRingComponents ringComponentsFromRing(const MzLinearRing* ring);

  private:
    friend class MzRingEdge;
    friend class MzRingInflexVertex;
    explicit MzRingComponent(MzRingComponentType type) : type_(type) {}

    MzRingComponentType type_ = MzRingComponentTypePlain;
};

/// A straight edge of a ring.
class MEZALITH_EXPORT MzRingEdge final : public MzRingComponent {
  public:
    MzRingEdge() : MzRingComponent(MzRingComponentTypeEdge) {}
    /// An edge of no length gets a direction of NaNs.
    static std::shared_ptr<MzRingEdge> ringEdgeFromStart(MzPoint start, MzPoint end);

    MzPoint start() const { return start_; }
    void setStart(MzPoint start) { start_ = start; }
    MzPoint end() const { return end_; }
    void setEnd(MzPoint end) { end_ = end; }
    /// The unit vector from start to end.
    MzPoint direction() const { return direction_; }
    void setDirection(MzPoint direction) { direction_ = direction; }
    std::string description() const override;

  private:
    MzPoint start_{0, 0};
    MzPoint end_{0, 0};
    MzPoint direction_{0, 0};
};

/// A corner of a ring at which it turns right on its counter-clockwise way.
class MEZALITH_EXPORT MzRingInflexVertex final : public MzRingComponent {
  public:
    MzRingInflexVertex() : MzRingComponent(MzRingComponentTypeInflexVertex) {}
    static std::shared_ptr<MzRingInflexVertex> ringInflexVertexFromPoint(MzPoint point);

    MzPoint point() const { return point_; }
    void setPoint(MzPoint point) { point_ = point; }
    std::string description() const override;

  private:
    MzPoint point_{0, 0};
};

}  // namespace mezalith
