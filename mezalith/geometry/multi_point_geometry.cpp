// SPDX-License-Identifier: MIT
#include <mezalith/clipping/outcode_clipping.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/record_bounds.hpp>
#include <mezalith/geometry/wkb_encoder.hpp>

#include <utility>

namespace mezalith {
namespace {

/// Room for `needed` points; never less than before.
MzPoint* reserve(std::vector<MzPoint>& points, std::size_t needed) {
    if (points.size() < needed) points.resize(needed);
    return points.data();
}

}  // namespace

MzMultiPointGeometry::MzMultiPointGeometry() { MzMultiPointGeometry::blockDidChange(); }

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::initWithWKBData(MzData bytes) {
    return madeFromWKB<MzMultiPointGeometry>(std::move(bytes));
}

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::initWithCapacity(std::size_t bytes) {
    return madeWithCapacity<MzMultiPointGeometry>(bytes);
}

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::initWithMultiPoint(
    MzMultiPoint multiPoint) {
    auto geometry = std::make_shared<MzMultiPointGeometry>();
    geometry->setMultiPointGeometry(multiPoint);
    return geometry;
}

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::initWithMultiPointPtr(
    const MzMultiPoint* multiPoint) {
    return multiPoint == nullptr ? nullptr : initWithMultiPoint(*multiPoint);
}

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::geometryWithMultiPoint(
    MzMultiPoint multiPoint) {
    return initWithMultiPoint(multiPoint);
}

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::geometryWithMultiPointPtr(
    const MzMultiPoint* multiPoint) {
    return initWithMultiPointPtr(multiPoint);
}

void MzMultiPointGeometry::setMultiPointGeometry(MzMultiPoint multiPoint) {
    setBlock(detail::packedCopy(multiPoint));
}

void MzMultiPointGeometry::blockDidChange() {
    MzGeometry::blockDidChange();
    aMultiPoint_ = record<MzMultiPoint>();
    aMultiPoint_->points = reinterpret_cast<MzPoint*>(aMultiPoint_ + 1);
    clippedMultiPointData_ = {};
    clippiedMultiPoint_ = {};
    clippedLineStringData_ = {};
    clippedLineString_ = {};
}

MzGeometry::Leaves MzMultiPointGeometry::makeLeafNodes() {
    const auto bounds = MzBoundsOfPoints(pointsOf(aMultiPoint_));
    if (!bounds) return {};
    return {leafWithBounds(*bounds)};
}

std::shared_ptr<MzGeometry> MzMultiPointGeometry::makeProjected(
    const MzMapProjection& projection) const {
    auto projected = newInstance();
    projected->setMultiPointGeometry(*aMultiPoint_);
    const std::span<MzPoint> points = pointsOf(projected->aMultiPoint_);
    projection.projectCoordinates(points, points);
    return projected;
}

std::shared_ptr<MzMultiPointGeometry> MzMultiPointGeometry::newInstance() const {
    return std::make_shared<MzMultiPointGeometry>();
}

MzData MzMultiPointGeometry::encodeWKB() const {
    std::uint64_t length = 0;
    std::byte* buffer = wkbMultiPointToData(aMultiPoint_, &length);
    return takeEncoding(buffer, length);
}

const MzMultiPoint* MzMultiPointGeometry::clippedMultiPointWithRegion(
    const MzClippingRegion* region) {
    const auto count = static_cast<std::uint32_t>(pointsOf(aMultiPoint_).size());
    clippiedMultiPoint_.points =
        reserve(clippedMultiPointData_, MzClippedMultiPointCapacity(count));
    MzClipMultiPoint(aMultiPoint_, &clippiedMultiPoint_, region);
    return &clippiedMultiPoint_;
}

const MzLineString* MzMultiPointGeometry::clippedLineStringWithRegion(
    const MzClippingRegion* region) {
    const auto count = static_cast<std::uint32_t>(pointsOf(aMultiPoint_).size());
    clippedLineString_.points = reserve(clippedLineStringData_, MzClippedLineStringCapacity(count));
    MzClipLineString(aMultiPoint_, &clippedLineString_, region);
    return &clippedLineString_;
}

}  // namespace mezalith
