// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/record_bounds.hpp>

#include <utility>

namespace mezalith {

MzLineStringGeometry::MzLineStringGeometry() { MzLineStringGeometry::blockDidChange(); }

std::shared_ptr<MzLineStringGeometry> MzLineStringGeometry::initWithWKBData(MzData bytes) {
    return madeFromWKB<MzLineStringGeometry>(std::move(bytes));
}

std::shared_ptr<MzLineStringGeometry> MzLineStringGeometry::initWithCapacity(std::size_t bytes) {
    return madeWithCapacity<MzLineStringGeometry>(bytes);
}

std::shared_ptr<MzLineStringGeometry> MzLineStringGeometry::initWithLineString(
    MzLineString lineString) {
    auto geometry = std::make_shared<MzLineStringGeometry>();
    geometry->setLineStringGeometry(lineString);
    return geometry;
}

std::shared_ptr<MzLineStringGeometry> MzLineStringGeometry::initWithLineStringPtr(
    const MzLineString* lineString) {
    return lineString == nullptr ? nullptr : initWithLineString(*lineString);
}

std::shared_ptr<MzLineStringGeometry> MzLineStringGeometry::geometryWithLineString(
    MzLineString lineString) {
    return initWithLineString(lineString);
}

void MzLineStringGeometry::setLineStringGeometry(MzLineString lineString) {
    setBlock(detail::packedCopy(lineString));
}

void MzLineStringGeometry::blockDidChange() {
    MzGeometry::blockDidChange();
    aLineString_ = record<MzLineString>();
    aLineString_->points = reinterpret_cast<MzPoint*>(aLineString_ + 1);
}

MzGeometry::Leaves MzLineStringGeometry::makeLeafNodes() {
    const auto bounds = MzBoundsOfPoints(pointsOf(aLineString_));
    if (!bounds) return {};
    return {leafWithBounds(*bounds)};
}

std::shared_ptr<MzGeometry> MzLineStringGeometry::geometryWithProjection(
    const std::shared_ptr<MzMapProjection>& projection) {
    const bool known = projectedGeometries().contains(projection);
    auto projected = MzGeometry::geometryWithProjection(projection);
    return known ? projected : nullptr;
}

std::shared_ptr<MzGeometry> MzLineStringGeometry::makeProjected(
    const MzMapProjection& projection) const {
    auto projected = initWithLineString(*aLineString_);
    const std::span<MzPoint> points = pointsOf(projected->aLineString_);
    projection.projectCoordinates(points, points);
    return projected;
}

}  // namespace mezalith
