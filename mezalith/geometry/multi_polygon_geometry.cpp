// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/geometry/record_bounds.hpp>
#include <mezalith/geometry/wkb_encoder.hpp>

#include <algorithm>
#include <utility>

namespace mezalith {

MzMultiPolygonGeometry::MzMultiPolygonGeometry() { MzMultiPolygonGeometry::blockDidChange(); }

std::shared_ptr<MzMultiPolygonGeometry> MzMultiPolygonGeometry::initWithWKBData(MzData bytes) {
    return madeFromWKB<MzMultiPolygonGeometry>(std::move(bytes));
}

std::shared_ptr<MzMultiPolygonGeometry> MzMultiPolygonGeometry::initWithCapacity(
    std::size_t bytes) {
    return madeWithCapacity<MzMultiPolygonGeometry>(bytes);
}

std::shared_ptr<MzMultiPolygonGeometry> MzMultiPolygonGeometry::initWithMultiPolygon(
    MzMultiPolygon polygons) {
    auto geometry = std::make_shared<MzMultiPolygonGeometry>();
    geometry->setMultiPolygonGeometry(polygons);
    return geometry;
}

std::shared_ptr<MzMultiPolygonGeometry> MzMultiPolygonGeometry::initWithMultiPolygonPtr(
    const MzMultiPolygon* polygons) {
    return polygons == nullptr ? nullptr : initWithMultiPolygon(*polygons);
}

std::shared_ptr<MzMultiPolygonGeometry> MzMultiPolygonGeometry::geometryWithMultiPolygon(
    MzMultiPolygon polygons) {
    return initWithMultiPolygon(polygons);
}

void MzMultiPolygonGeometry::setMultiPolygonGeometry(MzMultiPolygon polygons) {
    setBlock(detail::packedCopy(polygons));
}

void MzMultiPolygonGeometry::blockDidChange() {
    MzGeometry::blockDidChange();
    aMultiPolygon_ = record<MzMultiPolygon>();
    clippedRings_ = {};
    clippedPolygons_ = {};
    clippedMultiPolgon_ = {};
}

MzGeometry::Leaves MzMultiPolygonGeometry::makeLeafNodes() {
    Leaves leaves;
    for (const MzPolygon& polygon : polygonsOf(aMultiPolygon_)) {
        const auto bounds = MzBoundsOfRings(ringsOf(&polygon));
        if (bounds) leaves.push_back(leafWithBounds(*bounds));
    }
    return leaves;
}

std::shared_ptr<MzGeometry> MzMultiPolygonGeometry::makeProjected(
    const MzMapProjection& projection) const {
    auto projected = initWithMultiPolygon(*aMultiPolygon_);
    for (const MzPolygon& polygon : polygonsOf(projected->aMultiPolygon_)) {
        for (const MzLinearRing& ring : ringsOf(&polygon)) {
            projection.projectCoordinates(pointsOf(&ring), pointsOf(&ring));
        }
    }
    return projected;
}

MzData MzMultiPolygonGeometry::encodeWKB() const {
    std::uint64_t length = 0;
    std::byte* buffer = wkbMultiPolygonToData(aMultiPolygon_, &length);
    return takeEncoding(buffer, length);
}

bool MzMultiPolygonGeometry::contains(MzGeometry* other) {
    const auto* point = dynamic_cast<const MzPointGeometry*>(other);
    if (point == nullptr) return MzGeometry::contains(other);
    return leavesHold(point->asNSPoint()) &&
           std::ranges::any_of(polygonsOf(aMultiPolygon_), [point](const MzPolygon& polygon) {
               return crossingTest(&polygon, point->x(), point->y());
           });
}

const MzMultiPolygon* MzMultiPolygonGeometry::clippedMultiPolygonWithRegion(
    const MzClippingRegion* region) {
    clippedRings_.clear();
    clippedPolygons_.clear();
    for (const MzPolygon& polygon : polygonsOf(aMultiPolygon_)) {
        const std::span<MzLinearRing> rings = ringsOf(&polygon);
        clippedRings_.append(rings, region);
        clippedPolygons_.push_back({static_cast<std::uint32_t>(rings.size()), nullptr});
    }
    MzLinearRing* next = clippedRings_.finish().data();
    for (MzPolygon& polygon : clippedPolygons_) {
        polygon.rings = next;
        next += polygon.count;
    }
    clippedMultiPolgon_ = {static_cast<std::uint32_t>(clippedPolygons_.size()),
                           clippedPolygons_.data()};
    return &clippedMultiPolgon_;
}

}  // namespace mezalith
