// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/draw_context.hpp>
#include <mezalith/style/spatial_object.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mezalith::testing {

using Points = std::vector<MzPoint>;
using Rings = std::vector<Points>;
using Lines = std::vector<std::string>;

/// A view of the square from -1000 to 1000, one projected unit and one degree per view point, that
/// keeps every vertex. Its parts can be changed or taken away.
class TestDrawContext : public MzDrawContext {
    static constexpr MzRect kView{{-1000, -1000}, {2000, 2000}};

  public:
    std::shared_ptr<MzMapProjection> projection = std::make_shared<MzMapProjection>();
    std::shared_ptr<MzClippingRegion> region = std::make_shared<MzClippingRegion>();
    std::shared_ptr<MzAffineTransform> transform = MzAffineTransform::transform();
    double denominator = 1000;
    double factor = 1;
    mutable int regionRequests = 0;  ///< how often the region was asked for
    platform::View view{kView};      ///< holds the child views

    TestDrawContext() {
        region->setClippingRect(kView);
        region->setTransform(transform);
    }

    std::shared_ptr<MzMapProjection> mapProjection() const override { return projection; }
    std::shared_ptr<MzClippingRegion> clippingRegion() const override {
        ++regionRequests;
        return region;
    }
    double scaleDenominator() const override { return denominator; }
    double scaleFactor() const override { return factor; }
    std::shared_ptr<MzAffineTransform> projectedToPixelTransform() const override {
        return transform;
    }
    MzRect projectedBounds() const override { return kView; }
    double projectedUnitsPerPixel() const override { return 1; }
    void addSubview(const std::shared_ptr<platform::View>& child) override {
        view.addSubview(child);
    }
};

/// A feature that is nothing but its parts.
class TestFeature : public MzSpatialObject {
  public:
    explicit TestFeature(std::shared_ptr<MzGeometry> geometry,
                         std::shared_ptr<MzStyle> style = nullptr)
        : geometryValue(std::move(geometry)), styleValue(std::move(style)) {}

    std::shared_ptr<MzGeometry> geometryValue;
    std::shared_ptr<MzStyle> styleValue;
    std::string name;
    std::string kindName;
    platform::Dictionary properties;

    std::shared_ptr<MzGeometry> geometry() const override { return geometryValue; }
    std::shared_ptr<MzStyle> style() const override { return styleValue; }
    platform::Object* objectOwner() const override { return nullptr; }
    std::string featureName() const override { return name; }
    std::string featureDescription() const override { return {}; }
    std::string kind() const override { return kindName; }
    const platform::Dictionary& propertiesByName() const override { return properties; }
    bool allowsInteraction() const override { return true; }
};

inline std::shared_ptr<MzMultiPointGeometry> multiPoint(Points points) {
    return MzMultiPointGeometry::initWithMultiPoint(
        {static_cast<std::uint32_t>(points.size()), points.data()});
}

inline std::vector<MzLinearRing> ringRecords(Rings& rings) {
    std::vector<MzLinearRing> records;
    records.reserve(rings.size());
    for (Points& ring : rings) {
        records.push_back({static_cast<std::uint32_t>(ring.size()), ring.data()});
    }
    return records;
}

/// A polygon whose projected copy counts as visible in `context`.
inline std::shared_ptr<MzPolygonGeometry> polygon(Rings rings, const TestDrawContext& context) {
    std::vector<MzLinearRing> records = ringRecords(rings);
    auto geometry = MzPolygonGeometry::initWithPolygon(
        {static_cast<std::uint32_t>(records.size()), records.data()});
    const auto projected = std::dynamic_pointer_cast<MzPolygonGeometry>(
        geometry->geometryWithProjection(context.projection));
    projected->setTransformedBounds({{{-1000, -1000}, {1000, -1000}, {1000, 1000}, {-1000, 1000}}});
    return geometry;
}

inline std::shared_ptr<MzMultiPolygonGeometry> multiPolygon(std::vector<Rings> polygons) {
    std::vector<std::vector<MzLinearRing>> rings;
    rings.reserve(polygons.size());
    for (Rings& member : polygons) rings.push_back(ringRecords(member));
    std::vector<MzPolygon> records;
    records.reserve(rings.size());
    for (std::vector<MzLinearRing>& member : rings) {
        records.push_back({static_cast<std::uint32_t>(member.size()), member.data()});
    }
    return MzMultiPolygonGeometry::initWithMultiPolygon(
        {static_cast<std::uint32_t>(records.size()), records.data()});
}

inline void drawInto(platform::GraphicsPort& port, MzSymbolizer& symbolizer,
                     std::shared_ptr<MzGeometry> geometry, TestDrawContext& context,
                     bool selected = false) {
    TestFeature feature(std::move(geometry));
    const platform::GraphicsContext current(&port);
    symbolizer.drawSpatialObject(&feature, &context, selected);
}

/// What the symbolizer does on a fresh port.
inline Lines drawn(MzSymbolizer& symbolizer, std::shared_ptr<MzGeometry> geometry,
                   TestDrawContext& context, bool selected = false) {
    platform::RecordingPort port;
    drawInto(port, symbolizer, std::move(geometry), context, selected);
    return port.lines();
}

/// Those of the lines that begin with `operation`.
inline Lines only(const std::string& operation, const Lines& lines) {
    Lines result;
    for (const std::string& line : lines) {
        if (line == operation || line.starts_with(operation + " ")) result.push_back(line);
    }
    return result;
}

}  // namespace mezalith::testing
