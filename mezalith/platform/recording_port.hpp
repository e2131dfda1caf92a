// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/graphics_port.hpp>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// A port that draws nothing and writes every operation down: one line per operation, the
/// operation's name and then all its arguments, separated by one space. Numbers are the shortest
/// text that reads back to the same double; colours are "red green blue alpha" in device RGB, or
/// "none". Vertices handed over as a span are written vertex by vertex, so that both ways of
/// building a path read the same. Layers are numbered from 1 as they are made; what is drawn into
/// layer 2 stands in lines that begin "layer 2: "; a layer that is refused, or is of another kind
/// of port, is "none". Images are written by their natural size, no image is "none". What other
/// ports ignore (numbers that are not finite, unknown caps) is written like anything else.
///
///     setLineCap 1
///     setLineDash 0 solid
///     setLineDash 2 [4 1]
///     setStrokeColor 0 1 1 1
///     setShadow 1.5 1.5 0.5
///     moveToPoint 0 0.5
///     drawPath 2
///     setShadowWithColor 0 0 0 none
///     createLayer 1 9 9
///     drawLayerAtPoint 1 0 0
///     drawImageInRect 32x16 0 0 20 10
class MEZALITH_EXPORT RecordingPort final : public GraphicsPort {
  public:
    RecordingPort();
    ~RecordingPort() override;

    const std::vector<std::string>& lines() const;
    /// All lines, each with a line end.
    std::string text() const;
    /// Forgets all lines; the numbers of layers go on.
    void clear();

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
    std::shared_ptr<Layer> createLayer(MzSize size) override;
    void drawLayerAtPoint(const Layer* layer, MzPoint point) override;
    void drawImageInRect(const Image* image, MzRect rect) override;

  private:
    struct Record;
    class RecordingLayer;
    RecordingPort(std::shared_ptr<Record> record, std::string prefix);
    void write(std::string_view operation, std::initializer_list<double> arguments = {});
    void write(std::string_view operation, const std::string& arguments);

    std::shared_ptr<Record> record_;  ///< shared with the ports of the layers
    std::string prefix_;
};

}  // namespace mezalith::platform
