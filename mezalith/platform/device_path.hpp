// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/affine_transform.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mezalith::platform {

/// A box with sides along the axes. Empty while a minimum is above its maximum.
struct DeviceBox {
    double minX;
    double minY;
    double maxX;
    double maxY;

    bool isEmpty() const { return !(minX <= maxX && minY <= maxY); }
    /// Whether `other` lies within this box, sides included.
    bool contains(const DeviceBox& other) const {
        return minX <= other.minX && minY <= other.minY && other.maxX <= maxX && other.maxY <= maxY;
    }
    friend bool operator==(const DeviceBox&, const DeviceBox&) = default;
};

/// The box around the same centre with `distance` more on every side.
MEZALITH_EXPORT DeviceBox grownBox(const DeviceBox& box, double distance);

/// The common part of both; empty when they are apart.
MEZALITH_EXPORT DeviceBox commonBox(const DeviceBox& a, const DeviceBox& b);

/// What of the plane is inside a path whose subpaths are closed: what they go round at all, or what
/// an odd number of them surrounds.
enum class FillRule : std::uint8_t { Winding, EvenOdd };

/// The current path of a port, in device space: points are mapped before they are added. It holds
/// finite coordinates only; an element with any other is left out. A line or curve without a
/// current point begins a subpath where its first point is; one after a closed subpath begins where
/// that subpath began.
class MEZALITH_EXPORT DevicePath {
  public:
    /// What an element is: a start, a line (one point each), a cubic curve (three points) or the
    /// line back to the start (no point).
    enum class Verb : std::uint8_t { Move, Line, Curve, Close };

    void clear();
    bool isEmpty() const { return verbs_.empty(); }

    /// Settled: a start that is left out ends the subpath before it all the same, so that the next
    /// point is not joined to that one.
    void moveTo(MzPoint point);
    void lineTo(MzPoint point);
    void curveTo(MzPoint control1, MzPoint control2, MzPoint end);
    /// Does nothing without a subpath.
    void close();

    /// Maps every point by `transform`, moves to the first and adds lines to the others.
    void addLines(std::span<const MzPoint> points, const AffineTransform& transform);

    /// A closed ellipse in the box that `rect` spans, mapped by `transform`: from its right end
    /// counter-clockwise, as four curves within 0.0003 of its larger half axis.
    void addEllipse(MzRect rect, const AffineTransform& transform);

    /// A line to where an arc of `radius` begins that is tangent to the line from the current point
    /// to `corner` and to the one from there to `end`, and the arc, as two curves within 0.0003
    /// radius. `corner`, `end` and `radius` are in the space that `transform` maps to the device;
    /// the arc is one of a circle there. Only a line to the corner where there is no such arc
    /// (points in a line, a radius that is not positive and finite, a transform without inverse).
    void addArc(MzPoint corner, MzPoint end, double radius, const AffineTransform& transform);

    /// Maps all points. The transform must not take them beyond the finite numbers.
    void transform(const AffineTransform& transform);

    /// The end of the last element; none in an empty path and after a start that was left out.
    std::optional<MzPoint> currentPoint() const;

    std::span<const Verb> verbs() const { return verbs_; }
    /// The points of all elements, one after another.
    std::span<const MzPoint> points() const { return points_; }

    /// The smallest box around all points, control points included; empty for an empty path.
    DeviceBox bounds() const;

  private:
    std::vector<Verb> verbs_;
    std::vector<MzPoint> points_;
    MzPoint start_{0, 0};  ///< of the current subpath
    bool hasCurrentPoint_ = false;

    bool begin(MzPoint point);
    void add(Verb verb, MzPoint point);
    void addOneByOne(std::span<const MzPoint> points);
    void addMappedCurve(MzPoint control1, MzPoint control2, MzPoint end,
                        const AffineTransform& transform);
};

}  // namespace mezalith::platform
