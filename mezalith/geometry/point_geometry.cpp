// SPDX-License-Identifier: MIT
#include <mezalith/geometry/affine_transform.hpp>
#include <mezalith/geometry/point_geometry.hpp>

#include <utility>

namespace mezalith {

MzPointGeometry::MzPointGeometry() { MzPointGeometry::blockDidChange(); }

std::shared_ptr<MzPointGeometry> MzPointGeometry::initWithWKBData(MzData bytes) {
    return madeFromWKB<MzPointGeometry>(std::move(bytes));
}

std::shared_ptr<MzPointGeometry> MzPointGeometry::initWithCapacity(std::size_t bytes) {
    return madeWithCapacity<MzPointGeometry>(bytes);
}

std::shared_ptr<MzPointGeometry> MzPointGeometry::initWithPoint(MzPoint point) {
    auto geometry = std::make_shared<MzPointGeometry>();
    geometry->setPointGeometry(point);
    return geometry;
}

std::shared_ptr<MzPointGeometry> MzPointGeometry::initWithNSPoint(MzPoint point) {
    return initWithPoint(point);
}

std::shared_ptr<MzPointGeometry> MzPointGeometry::initWithPointPtr(const MzPoint* point) {
    return point == nullptr ? nullptr : initWithPoint(*point);
}

std::shared_ptr<MzPointGeometry> MzPointGeometry::geometryWithPoint(MzPoint point) {
    return initWithPoint(point);
}

std::shared_ptr<MzPointGeometry> MzPointGeometry::geometryWithPointPtr(const MzPoint* point) {
    return initWithPointPtr(point);
}

void MzPointGeometry::setPointGeometry(MzPoint point) {
    setBlock(std::vector<std::byte>(sizeOfMzPoint()));
    *aPoint_ = point;
}

void MzPointGeometry::blockDidChange() {
    MzGeometry::blockDidChange();
    aPoint_ = record<MzPoint>();
}

bool MzPointGeometry::mbrInsertsectsRect(MzRect rect) {
    if (hasLeafNodes()) return MzGeometry::mbrInsertsectsRect(rect);
    return MzIntersectsRect({*aPoint_, {0, 0}}, rect);
}

MzGeometry::Leaves MzPointGeometry::makeLeafNodes() { return {leafWithBounds({*aPoint_, {0, 0}})}; }

std::shared_ptr<MzGeometry> MzPointGeometry::makeProjected(
    const MzMapProjection& projection) const {
    return initWithPoint(projection.projectedCoordinateForLongitudeLatitude(*aPoint_));
}

const MzPoint* MzPointGeometry::clippedPointWithRegion(const MzClippingRegion* region) {
    if (region == nullptr || !MzPointInRect(*aPoint_, region->clippingRect())) return nullptr;
    const std::shared_ptr<MzAffineTransform> transform = region->transform();
    clippedPoint_ = transform == nullptr ? MzPoint{0, 0} : transform->transformPoint(*aPoint_);
    return &clippedPoint_;
}

}  // namespace mezalith
