// SPDX-License-Identifier: MIT
#include <mezalith/geometry/affine_transform.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

// Makes a geometry of any bytes and asks everything of it; then lets the public decoders, which
// trust their input, loose on bytes that made one.

namespace mezalith {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// Reads everything that is handed out, so that a pointer astray is noticed.
double sumOf(std::span<const MzPoint> points) {
    double sum = 0;
    for (const MzPoint p : points) sum += p.x + p.y;
    return sum;
}

double sumOf(const MzPolygon* polygon) {
    double sum = 0;
    for (const MzLinearRing& ring : ringsOf(polygon)) sum += sumOf(pointsOf(&ring));
    return sum;
}

double sumOf(const MzMultiPolygon* polygons) {
    double sum = 0;
    for (const MzPolygon& polygon : polygonsOf(polygons)) sum += sumOf(&polygon);
    return sum;
}

double clippedSum(MzGeometry& geometry, const MzClippingRegion* region) {
    if (auto* point = dynamic_cast<MzPointGeometry*>(&geometry)) {
        const MzPoint* clipped = point->clippedPointWithRegion(region);
        return clipped == nullptr ? 0 : clipped->x;
    }
    if (auto* points = dynamic_cast<MzMultiPointGeometry*>(&geometry)) {
        return sumOf(pointsOf(points->clippedMultiPointWithRegion(region))) +
               sumOf(pointsOf(points->clippedLineStringWithRegion(region)));
    }
    if (auto* polygon = dynamic_cast<MzPolygonGeometry*>(&geometry)) {
        return sumOf(polygon->clippedPolygonWithRegion(region));
    }
    if (auto* polygons = dynamic_cast<MzMultiPolygonGeometry*>(&geometry)) {
        return sumOf(polygons->clippedMultiPolygonWithRegion(region));
    }
    return 0;
}

void setFromItself(MzGeometry& geometry) {
    if (auto* point = dynamic_cast<MzPointGeometry*>(&geometry)) {
        point->setPointGeometry(*point->pointGeometry());
    } else if (auto* line = dynamic_cast<MzLineStringGeometry*>(&geometry)) {
        line->setLineStringGeometry(*line->lineStringGeometry());
    } else if (auto* points = dynamic_cast<MzMultiPointGeometry*>(&geometry)) {
        points->setMultiPointGeometry(*points->multiPointGeometry());
    } else if (auto* polygon = dynamic_cast<MzPolygonGeometry*>(&geometry)) {
        polygon->setPolygonGeometry(*polygon->polygonGeometry());
    } else if (auto* polygons = dynamic_cast<MzMultiPolygonGeometry*>(&geometry)) {
        polygons->setMultiPolygonGeometry(*polygons->multiPolygonGeometry());
    }
}

std::shared_ptr<MzClippingRegion> regionOver(MzRect rect, double minSpacing) {
    auto region = std::make_shared<MzClippingRegion>();
    region->setClippingRect(rect);
    region->setMinSpacing(minSpacing);
    region->setTransform(MzAffineTransform::transform());
    return region;
}

const MzPoint* centroidOf(MzGeometry& geometry) {
    auto* polygon = dynamic_cast<MzPolygonGeometry*>(&geometry);
    return polygon == nullptr ? nullptr : polygon->centroid();
}

void ask(MzGeometry& geometry) {
    static const auto kPlace = MzPointGeometry::initWithPoint({10.75, 59.91});
    static const std::vector kRegions{regionOver({{-90, -45}, {180, 90}}, 0),
                                      regionOver({{0, 0}, {10, 10}}, 0.5),
                                      regionOver({{0, 6000000}, {1000000, 1000000}}, 100)};
    double sum = 0;
    for (const auto& leaf : geometry.leafNodes()) {
        require(leaf->object() == &geometry);
        sum += leaf->bounds().size.width;
    }
    for (const auto& region : kRegions) sum += clippedSum(geometry, region.get());
    sum += clippedSum(geometry, nullptr);
    if (const MzPoint* centroid = centroidOf(geometry)) sum += centroid->x;
    sum += geometry.mbrInsertsectsRect({{0, 0}, {10, 10}}) ? 1 : 0;
    sum += geometry.contains(kPlace.get()) ? 1 : 0;
    volatile double used = sum;
    static_cast<void>(used);
}

void askOfCopies(MzGeometry& geometry) {
    static const std::vector kProjections{MzMapProjection::mapProjectionWithPlateCarree(),
                                          MzMapProjection::mapProjectionWithUTMZone(33)};
    for (const auto& projection : kProjections) {
        geometry.geometryWithProjection(projection);
        const auto projected = geometry.geometryWithProjection(projection);
        require(projected != nullptr && projected->geometryType() == geometry.geometryType());
        ask(*projected);
    }
}

std::size_t runDecoder(std::uint32_t type, const std::byte** cursor, std::byte* record) {
    switch (type) {
        case MzGeometryTypePoint:
            return wkbPointToMzPoint(cursor, 1, reinterpret_cast<MzPoint*>(record));
        case MzGeometryTypeLineString:
            return wkbLineStringToMzLineString(cursor, 1, reinterpret_cast<MzLineString*>(record));
        case MzGeometryTypePolygon:
            return wkbPolygonToMzPolygon(cursor, 1, reinterpret_cast<MzPolygon*>(record));
        case MzGeometryTypeMultiPoint:
            return wkbMultiPointToMzMultiPoint(cursor, reinterpret_cast<MzMultiPoint*>(record));
        default:
            return wkbMultiPolygonToMzMultiPolygon(cursor,
                                                   reinterpret_cast<MzMultiPolygon*>(record));
    }
}

/// Sizes and fills a block of its own with the public decoders, which put rings 256 bytes further.
void decodePublicly(std::span<const std::byte> bytes, std::uint32_t type, std::size_t blockSize) {
    const std::byte* sizing = bytes.data();
    const std::size_t size = runDecoder(type, &sizing, nullptr);
    require(size == blockSize);
    require(sizing <= bytes.data() + bytes.size());
    std::vector<std::byte> block(size + 256);
    const std::byte* filling = bytes.data();
    require(runDecoder(type, &filling, block.data()) == size);
    require(filling == sizing);
}

void fuzz(std::span<const std::byte> bytes) {
    const auto geometry = MzGeometry::geometryWithWKBData(bytes);
    if (geometry == nullptr) return;
    decodePublicly(bytes, geometry->geometryType(), geometry->geometryData().size());
    require(geometry->wkbData()->size() == bytes.size());
    ask(*geometry);
    askOfCopies(*geometry);
    setFromItself(*geometry);
    ask(*geometry);
    if (const MzData encoded = geometry->wkbData()) MzGeometry::geometryWithWKBData(encoded);
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mezalith::fuzz(std::as_bytes(std::span(data, size)));
    return 0;
}
