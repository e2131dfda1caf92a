// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace mezalith {
namespace {

MzRect boundsOf(const std::shared_ptr<MzTreeLeafNode>& leaf) {
    return leaf == nullptr ? MzZeroRect : leaf->bounds();
}

struct FreeBuffer {
    void operator()(std::byte* buffer) const { std::free(buffer); }
};

}  // namespace

MzGeometry::MzGeometry() : geometryData_(kLeastBlock) {}

MzGeometry::~MzGeometry() = default;

std::shared_ptr<MzGeometry> MzGeometry::geometryWithWKBData(std::span<const std::byte> bytes) {
    return geometryWithWKBData(
        std::make_shared<const std::vector<std::byte>>(bytes.begin(), bytes.end()));
}

std::shared_ptr<MzGeometry> MzGeometry::geometryWithWKBData(MzData bytes) {
    if (bytes == nullptr || bytes->size() < 5) return nullptr;
    switch (geometryTypeFromData(bytes->data())) {
        case MzGeometryTypePoint:
            return MzPointGeometry::initWithWKBData(std::move(bytes));
        case MzGeometryTypeLineString:
            return MzLineStringGeometry::initWithWKBData(std::move(bytes));
        case MzGeometryTypePolygon:
            return MzPolygonGeometry::initWithWKBData(std::move(bytes));
        case MzGeometryTypeMultiPoint:
            return MzMultiPointGeometry::initWithWKBData(std::move(bytes));
        case MzGeometryTypeMultiPolygon:
            return MzMultiPolygonGeometry::initWithWKBData(std::move(bytes));
        default:
            return nullptr;
    }
}

std::shared_ptr<MzGeometry> MzGeometry::initWithCapacity(std::size_t bytes) {
    return madeWithCapacity<MzGeometry>(bytes);
}

bool MzGeometry::readWKB(MzData bytes) {
    if (bytes == nullptr) return false;
    auto block = detail::packedBlockFromWKB(*bytes, geometryType());
    if (block.empty()) return false;
    setBlock(std::move(block));
    wkbData_ = std::move(bytes);
    return true;
}

void MzGeometry::setBlock(std::vector<std::byte> block) {
    geometryData_ = std::move(block);
    isGiven_ = true;
    blockDidChange();
}

void MzGeometry::blockDidChange() {
    wkbData_ = nullptr;
    leafNodes_.clear();
}

MzData MzGeometry::wkbData() {
    if (wkbData_ == nullptr && isGiven_) wkbData_ = encodeWKB();
    return wkbData_;
}

MzData MzGeometry::encodeWKB() const { return nullptr; }

MzData MzGeometry::takeEncoding(std::byte* buffer, std::uint64_t length) {
    const std::unique_ptr<std::byte, FreeBuffer> owner(buffer);
    if (buffer == nullptr) return nullptr;
    return std::make_shared<const std::vector<std::byte>>(buffer, buffer + length);
}

const MzGeometry::Leaves& MzGeometry::leafNodes() {
    if (leafNodes_.empty()) leafNodes_ = makeLeafNodes();
    return leafNodes_;
}

MzGeometry::Leaves MzGeometry::makeLeafNodes() { return {}; }

std::shared_ptr<MzTreeLeafNode> MzGeometry::leafWithBounds(MzRect bounds) {
    return MzTreeLeafNode::initWithBounds(bounds, this);
}

bool MzGeometry::leavesHold(MzPoint point) {
    return std::ranges::any_of(
        leafNodes(), [point](MzRect bounds) { return MzPointInRect(point, bounds); }, boundsOf);
}

bool MzGeometry::mbrInsertsectsRect(MzRect rect) {
    return std::ranges::any_of(
        leafNodes(), [rect](MzRect bounds) { return MzIntersectsRect(bounds, rect); }, boundsOf);
}

std::shared_ptr<MzGeometry> MzGeometry::geometryWithProjection(
    const std::shared_ptr<MzMapProjection>& projection) {
    if (projection == nullptr) return nullptr;
    const auto known = projectedGeometries_.find(projection);
    if (known != projectedGeometries_.end()) return known->second;
    auto projected = makeProjected(*projection);
    if (projected != nullptr) projectedGeometries_.emplace(projection, projected);
    return projected;
}

std::shared_ptr<MzGeometry> MzGeometry::makeProjected(const MzMapProjection&) const {
    return nullptr;
}

double MzGeometry::distance(const MzGeometry*) const { return 0.0; }

std::shared_ptr<MzGeometry> MzGeometry::envelope() const { return nullptr; }

std::string MzGeometry::asText() const { return {}; }

bool MzGeometry::isEmpty() const { return false; }

bool MzGeometry::isSimple() const { return false; }

std::shared_ptr<MzGeometry> MzGeometry::boundary() const { return nullptr; }

bool MzGeometry::equals(const MzGeometry*) const { return false; }

bool MzGeometry::disjoin(const MzGeometry*) const { return false; }

bool MzGeometry::intersects(const MzGeometry*) const { return false; }

bool MzGeometry::touches(const MzGeometry*) const { return false; }

bool MzGeometry::crosses(const MzGeometry*) const { return false; }

bool MzGeometry::within(const MzGeometry*) const { return false; }

bool MzGeometry::contains(MzGeometry*) { return false; }

bool MzGeometry::overlaps(const MzGeometry*) const { return false; }

std::shared_ptr<MzGeometry> MzGeometry::buffer(double) const { return nullptr; }

std::shared_ptr<MzGeometry> MzGeometry::convexHull() const { return nullptr; }

std::shared_ptr<MzGeometry> MzGeometry::intersection(const MzGeometry*) const { return nullptr; }

std::shared_ptr<MzGeometry> MzGeometry::unionGeom(const MzGeometry*) const { return nullptr; }

std::shared_ptr<MzGeometry> MzGeometry::difference(const MzGeometry*) const { return nullptr; }

std::shared_ptr<MzGeometry> MzGeometry::symmetricDifference(const MzGeometry*) const {
    return nullptr;
}

}  // namespace mezalith
