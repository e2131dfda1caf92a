// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/device_path.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/pen.hpp>

#include <optional>
#include <vector>

namespace mezalith::platform {

/// A colour in device RGB, not multiplied by alpha; 0 to 1 each.
struct Rgba {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
};

/// A shadow as a port was asked for it, in base space.
struct ShadowStyle {
    MzSize offset{};
    double blur = 0;
    Rgba color;
};

/// What ports have in common that draw: the state, and the current path in device space. How the
/// path is filled, stroked and clipped to is for those that derive from it.
class MEZALITH_EXPORT DevicePort : public GraphicsPort {
  public:
    ~DevicePort() override;

    void saveState() override;
    void restoreState() override;
    void translate(double tx, double ty) override;
    void rotate(double radians) override;
    void scale(double sx, double sy) override;
    void concat(const AffineTransform& transform) override;
    void setLineWidth(double width) override;
    void setLineCap(LineCap cap) override;
    void setLineJoin(LineJoin join) override;
    void setLineDash(double phase, std::span<const double> lengths) override;
    void setStrokeColor(const Color* color) override;
    void setFillColor(const Color* color) override;
    void setRGBStrokeColor(double red, double green, double blue, double alpha) override;
    void setRGBFillColor(double red, double green, double blue, double alpha) override;
    void setShadow(MzSize offset, double blur) override;
    void setShadowWithColor(MzSize offset, double blur, const Color* color) override;
    void beginPath() override;
    void moveToPoint(double x, double y) override;
    void addLineToPoint(double x, double y) override;
    void addCurveToPoint(double cp1x, double cp1y, double cp2x, double cp2y, double x,
                         double y) override;
    void addArcToPoint(double x1, double y1, double x2, double y2, double radius) override;
    void addEllipseInRect(MzRect rect) override;
    void closeSubpath() override;
    void addLines(std::span<const MzPoint> points) override;
    void clipEvenOdd() override;
    void drawPath(PathDrawingMode mode) override;

  protected:
    /// All that `saveState` keeps but the clip.
    struct State {
        AffineTransform transform;  ///< from user space to the device
        StrokeStyle stroke;
        Rgba strokeColor;
        Rgba fillColor;
        std::optional<ShadowStyle> shadow;  ///< none where it would not be seen
    };

    /// `transform` takes user space to the device at first.
    explicit DevicePort(const AffineTransform& transform) { state_.transform = transform; }
    const State& state() const { return state_; }

    virtual void saveClip() = 0;
    virtual void restoreClip() = 0;
    /// Makes the inside of `path`, by the even-odd rule, the clip's intersection with what it was.
    virtual void clipTo(const DevicePath& path) = 0;
    /// Draws `path` with the state as it is.
    virtual void fill(const DevicePath& path, FillRule rule) = 0;
    virtual void stroke(const DevicePath& path) = 0;

  private:
    State state_;
    std::vector<State> savedStates_;
    DevicePath path_;

    MzPoint device(double x, double y) const { return state_.transform.transformPoint({x, y}); }
    void transform(const AffineTransform& first);
    void setShadow(MzSize offset, double blur, const std::optional<Rgba>& color);
};

/// From the unit square, whose y grows downwards, to `rect`: where the pixels of an image go.
MEZALITH_EXPORT AffineTransform topDownSquareOver(MzRect rect);

/// Whether both sides are positive and at most `largest`.
MEZALITH_EXPORT bool isSizeUpTo(MzSize size, double largest);

}  // namespace mezalith::platform
