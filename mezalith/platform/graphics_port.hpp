// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/affine_transform.hpp>
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/image.hpp>

#include <cstdint>
#include <memory>
#include <span>

namespace mezalith::platform {

/// How two segments of a stroke meet. Values beyond these leave a port's join as it is.
enum class LineJoin : std::uint64_t { Miter = 0, Round = 1, Bevel = 2 };

/// How a stroke ends. Values beyond these leave a port's cap as it is.
enum class LineCap : std::uint64_t { Butt = 0, Round = 1, Square = 2 };

/// What `drawPath` does with the current path.
enum class PathDrawingMode : std::int32_t {
    Fill = 0,              ///< non-zero winding
    EvenOddFill = 1,       ///< even-odd rule
    Stroke = 2,            ///< outline
    FillStroke = 3,        ///< non-zero fill, then stroke
    EvenOddFillStroke = 4  ///< even-odd fill, then stroke
};

class GraphicsPort;

/// An offscreen picture that is drawn once and stamped often. Made by a port, at the port's backing
/// scale, in user-space units; belongs to the kind of port that made it.
class MEZALITH_EXPORT Layer {
  public:
    virtual ~Layer();
    /// Width and height in user-space units.
    virtual MzSize size() const = 0;
    /// The port that draws into the layer: origin at the lower-left corner, y up. Lives as long as
    /// the layer.
    virtual GraphicsPort* port() = 0;
};

/// The drawing port: all that the library needs from a graphics library.
///
/// User space has y growing upwards, its origin at the lower-left corner, one unit per view point;
/// the backing scale belongs to the surface. Transforms are prepended: the latest applies first to
/// a coordinate. The current path and the current transform are independent: a point is mapped by
/// the transform at the moment it is added. Drawing consumes the current path; the path is not part
/// of the saved state, everything else is. Coordinates that are not finite are left out of paths;
/// no operation fails.
class MEZALITH_EXPORT GraphicsPort {
  public:
    virtual ~GraphicsPort();

    // --- state
    virtual void saveState() = 0;
    /// Does nothing when there is no saved state.
    virtual void restoreState() = 0;
    virtual void translate(double tx, double ty) = 0;
    /// Radians, counter-clockwise.
    virtual void rotate(double radians) = 0;
    virtual void scale(double sx, double sy) = 0;
    virtual void concat(const AffineTransform& transform) = 0;

    virtual void setLineWidth(double width) = 0;
    virtual void setLineCap(LineCap cap) = 0;
    virtual void setLineJoin(LineJoin join) = 0;
    /// Alternating painted and unpainted lengths in user units; empty is solid. A pattern with a
    /// negative or non-finite entry, or of zeros only, counts as solid.
    virtual void setLineDash(double phase, std::span<const double> lengths) = 0;
    /// The colour in device RGB. A null colour, or one without a conversion, leaves the port's
    /// colour as it is.
    virtual void setStrokeColor(const Color* color) = 0;
    virtual void setFillColor(const Color* color) = 0;
    virtual void setRGBStrokeColor(double red, double green, double blue, double alpha) = 0;
    virtual void setRGBFillColor(double red, double green, double blue, double alpha) = 0;
    /// Every later drawing casts a shadow in black at a third of its alpha. Offset and blur are in
    /// base space (view points, unaffected by the current transform), +y up; a Gaussian of standard
    /// deviation blur / 2.
    virtual void setShadow(MzSize offset, double blur) = 0;
    /// The same with a colour; a null colour switches the shadow off.
    virtual void setShadowWithColor(MzSize offset, double blur, const Color* color) = 0;

    // --- path
    virtual void beginPath() = 0;
    virtual void moveToPoint(double x, double y) = 0;
    virtual void addLineToPoint(double x, double y) = 0;
    virtual void addCurveToPoint(double cp1x, double cp1y, double cp2x, double cp2y, double x,
                                 double y) = 0;
    /// An arc of `radius` tangent to the line from the current point to (x1, y1) and to the line
    /// from there to (x2, y2), with a line from the current point to where it begins.
    virtual void addArcToPoint(double x1, double y1, double x2, double y2, double radius) = 0;
    virtual void addEllipseInRect(MzRect rect) = 0;
    virtual void closeSubpath() = 0;
    /// Moves to the first point and adds lines to the others in one call; nothing for no points.
    virtual void addLines(std::span<const MzPoint> points) = 0;
    /// Makes the current path the clip's intersection with what it was, by the even-odd rule, and
    /// consumes it.
    virtual void clipEvenOdd() = 0;

    // --- drawing
    virtual void drawPath(PathDrawingMode mode) = 0;
    /// A layer of this size (user units, rounded up to whole backing pixels) for this port; null
    /// unless both sides are positive, finite and within 16384 backing pixels.
    virtual std::shared_ptr<Layer> createLayer(MzSize size) = 0;
    /// Composites the layer with its lower-left corner at `point`; nothing for a null layer or a
    /// layer of another kind of port.
    virtual void drawLayerAtPoint(const Layer* layer, MzPoint point) = 0;
    /// Draws the image into `rect` of user space, upright and stretched to fill it; nothing for a
    /// null image or unless both sides of `rect` are positive and finite.
    virtual void drawImageInRect(const Image* image, MzRect rect) = 0;
};

/// The current drawing target of the calling thread, in which the symbolizers draw.
class MEZALITH_EXPORT GraphicsContext {
  public:
    /// The innermost context of this thread, or null.
    static GraphicsContext* current();

    /// Makes this context current on this thread until the scope ends. `port` is borrowed and may
    /// be null. Scopes nest and end in reverse order.
    explicit GraphicsContext(GraphicsPort* port);
    ~GraphicsContext();
    GraphicsContext(const GraphicsContext&) = delete;
    GraphicsContext& operator=(const GraphicsContext&) = delete;

    GraphicsPort* graphicsPort() const { return port_; }

  private:
    GraphicsPort* port_;
    GraphicsContext* outer_;
};

}  // namespace mezalith::platform
