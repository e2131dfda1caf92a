// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/graphics_port.hpp>

#include <cstdint>
#include <vector>

namespace mezalith::platform {

/// A path as a value, in the user space of the port it will be drawn into, and how its outline is
/// stroked. It remembers each operation as it was given and replays them in that order; elements
/// with a coordinate that is not finite are left out when they are added.
class MEZALITH_EXPORT BezierPath {
  public:
    /// Of its outline, in user units; 1 unless set.
    double lineWidth() const { return lineWidth_; }
    void setLineWidth(double width) { lineWidth_ = width; }

    bool isEmpty() const { return elements_.empty(); }

    void moveToPoint(MzPoint point);
    void lineToPoint(MzPoint point);
    void curveToPoint(MzPoint end, MzPoint control1, MzPoint control2);
    /// An arc tangent to the line from the current point to `corner` and to the line from there to
    /// `end`, with a line to where it begins; only a line to the corner where there is no such arc.
    void appendArcFromPoint(MzPoint corner, MzPoint end, double radius);
    void closePath();
    /// From the origin along the lower side, counter-clockwise, closed.
    void appendRect(MzRect rect);

    /// Adds the path to the port's current path.
    void addTo(GraphicsPort& port) const;
    /// Fills the inside by the non-zero rule, or strokes the outline with butt caps, mitred joins
    /// and no dashes, in the port's current colours. The port's own stroke settings are left as
    /// they were, its current path is consumed. An empty path draws nothing.
    void fill(GraphicsPort& port) const;
    void stroke(GraphicsPort& port) const;

  private:
    enum class Verb : std::uint8_t { Move, Line, Curve, Arc, Close };

    /// Of an arc, the second point's place is taken by its end and the third one's by the radius.
    struct Element {
        Verb verb;
        MzPoint points[3];
    };

    void add(const Element& element);
    static void replay(const Element& element, GraphicsPort& port);

    std::vector<Element> elements_;
    double lineWidth_ = 1;
};

}  // namespace mezalith::platform
