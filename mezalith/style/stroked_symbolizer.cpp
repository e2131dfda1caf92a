// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/style/stroked_symbolizer.hpp>

namespace mezalith {

namespace {

/// Rings up to this size enclose nothing and are left out.
constexpr std::size_t kDegenerateRingSize = 2;

std::span<const MzPolygon> clippedPolygons(MzGeometry& geometry, const MzClippingRegion* region) {
    if (auto* single = dynamic_cast<MzPolygonGeometry*>(&geometry)) {
        const MzPolygon* polygon = single->clippedPolygonWithRegion(region);
        return {polygon, polygon != nullptr ? 1U : 0U};
    }
    if (auto* several = dynamic_cast<MzMultiPolygonGeometry*>(&geometry)) {
        return polygonsOf(several->clippedMultiPolygonWithRegion(region));
    }
    return {};
}

/// Makes the polygon the port's current path. NO, leaving the port alone, when no ring is usable.
bool makePath(platform::GraphicsPort& port, const MzPolygon& polygon) {
    bool begun = false;
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        const std::span<const MzPoint> points = pointsOf(&ring);
        if (points.size() <= kDegenerateRingSize) continue;
        if (!begun) port.beginPath();
        begun = true;
        port.addLines(points);
        port.closeSubpath();
    }
    return begun;
}

}  // namespace

void MzStrokedSymbolizer::setStrokeWidth(float width) {
    setProperty("strokeWidth", stroke_.strokeWidth, width);
}

void MzStrokedSymbolizer::setLineJoin(std::uint64_t join) {
    setProperty("lineJoin", stroke_.lineJoin, join);
}

void MzStrokedSymbolizer::setLineCap(std::uint64_t cap) {
    setProperty("lineCap", stroke_.lineCap, cap);
}

void MzStrokedSymbolizer::setLineDashOffset(double offset) {
    setProperty("lineDashOffset", stroke_.lineDashOffset, offset);
}

void MzStrokedSymbolizer::setLineDashCount(std::uint64_t count) {
    setProperty("lineDashCount", stroke_.lineDashCount, count);
}

void MzStrokedSymbolizer::setLineDash(const double* lineDash, std::uint64_t count) {
    if (lineDash == nullptr || count == 0) {
        stroke_.lineDash.clear();
        return;
    }
    stroke_.lineDash = std::vector<double>(lineDash, lineDash + count);
    if (count != stroke_.lineDashCount) setLineDashCount(count);
}

void MzStrokedSymbolizer::setIsDashed(bool dashed) {
    setProperty("isDashed", stroke_.isDashed, dashed);
}

void MzStrokedSymbolizer::drawPolygons(MzGeometry& geometry, const MzDrawContext& context,
                                       platform::GraphicsPort& port) {
    const std::shared_ptr<MzClippingRegion> region = context.clippingRegion();
    for (const MzPolygon& polygon : clippedPolygons(geometry, region.get())) {
        if (makePath(port, polygon)) symbolizeInContext(&port, context.scaleFactor());
    }
}

void MzStrokedSymbolizer::drawEvenOddPath(platform::GraphicsPort& port, bool fill, bool stroke) {
    using platform::PathDrawingMode;
    if (fill) {
        port.drawPath(stroke ? PathDrawingMode::EvenOddFillStroke : PathDrawingMode::EvenOddFill);
    } else if (stroke) {
        port.drawPath(PathDrawingMode::Stroke);
    }
}

std::shared_ptr<const platform::Color> MzStrokedSymbolizer::colorWithOpacity(
    const std::shared_ptr<const platform::Color>& color, double opacity) {
    // Colours do not change, so one that has the opacity serves as it is.
    if (color == nullptr || color->alphaComponent() == opacity) return color;
    return color->colorWithAlphaComponent(opacity);
}

std::shared_ptr<const platform::Color> MzStrokedSymbolizer::decodeColor(
    const platform::KeyedUnarchiver& coder, std::string_view key) {
    return platform::decodedObject<platform::Color>(coder, "Color", key).value_or(nullptr);
}

}  // namespace mezalith
