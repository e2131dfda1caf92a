// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/graphics_port.hpp>

#include <memory>
#include <span>

namespace mezalith::testing {

/// Takes everything, draws nothing and makes no layers; for tests and benchmarks.
class NullPort : public platform::GraphicsPort {
  public:
    void saveState() override {}
    void restoreState() override {}
    void translate(double, double) override {}
    void rotate(double) override {}
    void scale(double, double) override {}
    void concat(const platform::AffineTransform&) override {}
    void setLineWidth(double) override {}
    void setLineCap(platform::LineCap) override {}
    void setLineJoin(platform::LineJoin) override {}
    void setLineDash(double, std::span<const double>) override {}
    void setStrokeColor(const platform::Color*) override {}
    void setFillColor(const platform::Color*) override {}
    void setRGBStrokeColor(double, double, double, double) override {}
    void setRGBFillColor(double, double, double, double) override {}
    void setShadow(MzSize, double) override {}
    void setShadowWithColor(MzSize, double, const platform::Color*) override {}
    void beginPath() override {}
    void moveToPoint(double x, double y) override { take({x, y}); }
    void addLineToPoint(double x, double y) override { take({x, y}); }
    void addCurveToPoint(double, double, double, double, double, double) override {}
    void addArcToPoint(double, double, double, double, double) override {}
    void addEllipseInRect(MzRect) override {}
    void closeSubpath() override {}
    void addLines(std::span<const MzPoint> points) override {
        for (const MzPoint& point : points) take(point);
    }
    void clipEvenOdd() override {}
    void drawPath(platform::PathDrawingMode) override {}
    std::shared_ptr<platform::Layer> createLayer(MzSize) override { return nullptr; }
    void drawLayerAtPoint(const platform::Layer*, MzPoint) override {}
    void drawImageInRect(const platform::Image*, MzRect) override {}

    /// Of all coordinates of paths, so that each was looked at.
    double sum() const { return sum_; }

  private:
    void take(MzPoint point) { sum_ += point.x + point.y; }

    double sum_ = 0;
};

}  // namespace mezalith::testing
