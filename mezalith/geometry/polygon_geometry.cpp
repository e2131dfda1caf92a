// SPDX-License-Identifier: MIT
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/record_bounds.hpp>

#include <cmath>
#include <utility>

namespace mezalith {
namespace {

/// Among equals the first; a ring of area 0 or NaN never.
std::optional<MzPoint> centroidOfGreatestRing(std::span<const MzLinearRing> rings) {
    std::optional<MzPoint> centroid;
    double greatest = 0;
    for (const MzLinearRing& ring : rings) {
        double area = 0;
        const auto candidate = MzCentroid(&ring, &area);
        if (!(std::abs(area) > greatest)) continue;
        greatest = std::abs(area);
        centroid = candidate;
    }
    return centroid;
}

}  // namespace

MzPolygonGeometry::MzPolygonGeometry() { MzPolygonGeometry::blockDidChange(); }

std::shared_ptr<MzPolygonGeometry> MzPolygonGeometry::initWithWKBData(MzData bytes) {
    return madeFromWKB<MzPolygonGeometry>(std::move(bytes));
}

std::shared_ptr<MzPolygonGeometry> MzPolygonGeometry::initWithCapacity(std::size_t bytes) {
    return madeWithCapacity<MzPolygonGeometry>(bytes);
}

std::shared_ptr<MzPolygonGeometry> MzPolygonGeometry::initWithPolygon(MzPolygon polygon) {
    auto geometry = std::make_shared<MzPolygonGeometry>();
    geometry->setPolygonGeometry(polygon);
    return geometry;
}

std::shared_ptr<MzPolygonGeometry> MzPolygonGeometry::initWithPolygonPtr(const MzPolygon* polygon) {
    return polygon == nullptr ? nullptr : initWithPolygon(*polygon);
}

std::shared_ptr<MzPolygonGeometry> MzPolygonGeometry::geometryWithPolygon(MzPolygon polygon) {
    return initWithPolygon(polygon);
}

std::shared_ptr<MzPolygonGeometry> MzPolygonGeometry::geometryWithPolygonPtr(
    const MzPolygon* polygon) {
    return initWithPolygonPtr(polygon);
}

void MzPolygonGeometry::setPolygonGeometry(MzPolygon polygon) {
    setBlock(detail::packedCopy(polygon));
}

void MzPolygonGeometry::blockDidChange() {
    MzGeometry::blockDidChange();
    aPolygon_ = record<MzPolygon>();
    centroid_.reset();
    clippedRings_ = {};
    clippedPolygon_ = {};
}

MzGeometry::Leaves MzPolygonGeometry::makeLeafNodes() {
    const auto bounds = MzBoundsOfRings(ringsOf(aPolygon_));
    if (!bounds) return {};
    return {leafWithBounds(*bounds)};
}

std::shared_ptr<MzGeometry> MzPolygonGeometry::geometryWithProjection(
    const std::shared_ptr<MzMapProjection>& projection) {
    if (projection == nullptr) return nullptr;
    if (transformedPolygon_ == nullptr || projection->srid() != transformedPolygonSRID_) {
        transformedPolygon_ = makeProjected(*projection);
        transformedPolygonSRID_ = projection->srid();
    }
    return transformedPolygon_;
}

std::shared_ptr<MzGeometry> MzPolygonGeometry::makeProjected(
    const MzMapProjection& projection) const {
    auto projected = initWithPolygon(*aPolygon_);
    for (const MzLinearRing& ring : ringsOf(projected->aPolygon_)) {
        projection.projectCoordinates(pointsOf(&ring), pointsOf(&ring));
    }
    return projected;
}

bool MzPolygonGeometry::mbrInsertsectsRect(MzRect rect) {
    const MzPoint low = transformedBounds_[0];
    const MzPoint high{transformedBounds_[1].x, transformedBounds_[2].y};
    return !(low.x >= rect.origin.x + rect.size.width || rect.origin.x >= high.x ||
             low.y >= rect.origin.y + rect.size.height || rect.origin.y >= high.y);
}

bool MzPolygonGeometry::contains(MzGeometry* other) {
    const auto* point = dynamic_cast<const MzPointGeometry*>(other);
    if (point == nullptr) return MzGeometry::contains(other);
    return leavesHold(point->asNSPoint()) && crossingTest(aPolygon_, point->x(), point->y());
}

const MzPoint* MzPolygonGeometry::centroid() {
    if (!centroid_) centroid_ = centroidOfGreatestRing(ringsOf(aPolygon_));
    return centroid_ ? &*centroid_ : nullptr;
}

const MzPolygon* MzPolygonGeometry::clippedPolygonWithRegion(const MzClippingRegion* region) {
    clippedRings_.clear();
    clippedRings_.append(ringsOf(aPolygon_), region);
    const std::span<MzLinearRing> rings = clippedRings_.finish();
    clippedPolygon_ = {static_cast<std::uint32_t>(rings.size()), rings.data()};
    return &clippedPolygon_;
}

}  // namespace mezalith
