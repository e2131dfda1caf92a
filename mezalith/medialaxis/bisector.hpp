// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/medialaxis/ring_component.hpp>
#include <mezalith/platform/bezier_path.hpp>
#include <mezalith/platform/object.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mezalith {

/// The values of `bisectorType`; 0 before it is set.
enum MzBisectorType : std::int32_t { MzBisectorTypeLine = 1, MzBisectorTypeParabola = 2 };

class MzBisector;
using MzBisectors = std::vector<std::shared_ptr<MzBisector>>;

/// A piece of a medial axis: the points as far from one component of a ring as from another, held
/// as the curve start + direction·s + quadratic·s² in the units of the ring. A line between two
/// edges and between two inflex vertices, a parabola between an edge and an inflex vertex. Left and
/// right are as seen along the curve, with the ring walked counter-clockwise.
class MEZALITH_EXPORT MzBisector final : public platform::Object {
  public:
    MzBisector() = default;
    MzBisector(const MzBisector&) = delete;
    MzBisector& operator=(const MzBisector&) = delete;
    /// Releases the bisectors that met here, and those that met there, without recursion.
    ~MzBisector() override;

    /// The bisectors at the corners of a ring, around it: one at a convex corner, two at an inflex
    /// vertex, along the normals of its edges. What follows an inflex vertex is taken to be an
    /// edge; where it is none, the second bisector has no direction (NaN).
    static MzBisectors bisectorsFromRingComponents(const MzRingComponents& components);

    /// The bisector that leaves the point in which `left` and `right` meet: between the left
    /// component of the one and the right component of the other. Where these are not two edges,
    /// two inflex vertices or one of each, or `left` or `right` is null, its type stays 0.
    static std::shared_ptr<MzBisector> bisectorFromLeftBisector(
        const std::shared_ptr<MzBisector>& left, const std::shared_ptr<MzBisector>& right,
        MzPoint intersection);

    /// Where this bisector meets `other`, with the parameters on this one and on the other one.
    /// +infinity in them says that they do not meet; then, and for a null `other`, the point means
    /// nothing. The two bisectors of one inflex vertex never meet. Neither pointer may be null.
    MzPoint intersectionWithBisector(const MzBisector* other, double* s1, double* s2) const;

    /// Whether this bisector meets one of those that `bisector` came from, on its left side (on its
    /// right side), before that one ended. NO for null.
    bool fakeRendezvousWithBisectorOnRight(const MzBisector* bisector) const;
    bool fakeRendezvousWithBisectorOnLeft(const MzBisector* bisector) const;

    /// From the start to the left component: to the line of an edge, or to an inflex vertex. 0
    /// without one.
    double distanceFromStartToComponents() const;

    /// The bisector up to its end, line width 0.125; empty while the end is infinite.
    /// Settled: a parabola is rescaled by this for good, so that it ends at parameter 1.
    platform::BezierPath path();
    /// Makes a parabola end at parameter 1, its shape unchanged; nothing for a line.
    void rescale();
    /// The inner control points of the cubic that is a rescaled parabola up to `end`.
    std::pair<MzPoint, MzPoint> controlPoints(MzPoint end) const;

    std::string description() const;

    std::int32_t bisectorType() const { return bisectorType_; }
    void setBisectorType(std::int32_t type) { bisectorType_ = type; }
    /// The curve at s = 0.
    MzPoint start() const { return start_; }
    void setStart(MzPoint start) { start_ = start; }
    /// A unit vector for a line.
    MzPoint direction() const { return direction_; }
    void setDirection(MzPoint direction) { direction_ = direction; }
    /// (0, 0) for a line.
    MzPoint quadratic() const { return quadratic_; }
    void setQuadratic(MzPoint quadratic) { quadratic_ = quadratic; }
    /// The parameter at which the bisector ends; +infinity while it is open.
    double endParameter() const { return endParameter_; }
    void setEndParameter(double parameter) { endParameter_ = parameter; }
    const std::shared_ptr<MzRingComponent>& leftComponent() const { return leftComponent_; }
    void setLeftComponent(std::shared_ptr<MzRingComponent> component) {
        leftComponent_ = std::move(component);
    }
    const std::shared_ptr<MzRingComponent>& rightComponent() const { return rightComponent_; }
    void setRightComponent(std::shared_ptr<MzRingComponent> component) {
        rightComponent_ = std::move(component);
    }
    /// The bisectors that met where this one begins; null for one at a corner of the ring.
    const std::shared_ptr<MzBisector>& leftBisector() const { return leftBisector_; }
    void setLeftBisector(std::shared_ptr<MzBisector> bisector) {
        leftBisector_ = std::move(bisector);
    }
    const std::shared_ptr<MzBisector>& rightBisector() const { return rightBisector_; }
    void setRightBisector(std::shared_ptr<MzBisector> bisector) {
        rightBisector_ = std::move(bisector);
    }

  private:
    bool isOfCorner() const { return leftBisector_ == nullptr; }
    bool meetsBeforeItsEnd(const MzBisector& earlier) const;
    MzPoint pointAt(double s) const;
    void layBetweenComponents();
    void layParabola(const MzRingEdge& edge, MzPoint focus, double direction);
    void anchorAt(MzPoint point);
    MzPoint lineMeetsLine(const MzBisector& other, double* s1, double* s2) const;
    MzPoint lineMeetsParabola(const MzBisector& other, double* s1, double* s2) const;
    MzPoint parabolaMeetsLine(const MzBisector& other, double* s1, double* s2) const;
    MzPoint parabolaMeetsParabola(const MzBisector& other, double* s1, double* s2) const;

    std::int32_t bisectorType_ = 0;
    MzPoint start_{0, 0};
    MzPoint direction_{0, 0};
    MzPoint quadratic_{0, 0};
    double endParameter_ = 1;
    std::shared_ptr<MzRingComponent> leftComponent_;
    std::shared_ptr<MzRingComponent> rightComponent_;
    std::shared_ptr<MzBisector> leftBisector_;
    std::shared_ptr<MzBisector> rightBisector_;
};

}  // namespace mezalith
