// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>
#include <mezalith/index/tree_node.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace mezalith {

/// Bytes that several may hold and none may change.
using MzData = std::shared_ptr<const std::vector<std::byte>>;

/// A stored geometry: one record block with everything derived from it cached beside it. The base
/// class of the cluster is the abstract geometry without coordinates.
///
/// Coordinates are longitude and latitude in degrees unless the geometry is a projected copy. The
/// object owns its block, its projected copies and its clipped records; pointers and references it
/// hands out are valid until its next setter call or its end, clipped records until the next call
/// that makes them. Not safe for use from several threads at once, as reading fills the caches.
class MEZALITH_EXPORT MzGeometry : public platform::Object {
  public:
    using Leaves = std::vector<std::shared_ptr<MzTreeLeafNode>>;
    using ProjectedGeometries =
        std::map<std::shared_ptr<MzMapProjection>, std::shared_ptr<MzGeometry>>;
    /// By the identity of any object.
    using ClippedGeometries =
        std::map<std::shared_ptr<platform::Object>, std::shared_ptr<MzGeometry>>;

    MzGeometry();
    ~MzGeometry() override;
    MzGeometry(const MzGeometry&) = delete;
    MzGeometry& operator=(const MzGeometry&) = delete;

    /// The geometry that the bytes hold: types 1, 2, 3, 4 and 6. Null for other types, for bytes
    /// that end too early and for counts beyond what the bytes can hold. Member types, odd byte
    /// order values and trailing bytes are not checked.
    static std::shared_ptr<MzGeometry> geometryWithWKBData(std::span<const std::byte> bytes);
    /// The same, keeping the caller's buffer instead of a copy; null answers null.
    static std::shared_ptr<MzGeometry> geometryWithWKBData(MzData bytes);
    /// An abstract geometry with a zero-filled block of `bytes` (at least 16).
    static std::shared_ptr<MzGeometry> initWithCapacity(std::size_t bytes);

    virtual std::uint32_t geometryType() const { return 0; }
    virtual int dimension() const { return 0; }
    /// 4326 for every geometry, projected ones included.
    int srid() const { return 4326; }

    /// The bytes the geometry was made from; for multi-points and multi-polygons made in memory
    /// their encoding; otherwise null, as for those that were never given anything.
    /// Settled: points, line strings and polygons made in memory answer null, and a multi-polygon's
    /// encoding carries no coordinate pairs.
    MzData wkbData();
    MzData asBinary() { return wkbData(); }

    /// One leaf per piece that has points, with the geometry as its object and the bounding
    /// rectangle of the piece; none in the base class.
    const Leaves& leafNodes();
    /// The copy in `projection`'s plane, made once per projection object; null for a null
    /// projection. The base class only answers what `projectedGeometries` holds.
    /// Settled: the copies outlive every setter.
    virtual std::shared_ptr<MzGeometry> geometryWithProjection(
        const std::shared_ptr<MzMapProjection>& projection);
    /// Whether the geometry can touch `rect`, judged by the bounds of its leaves.
    virtual bool mbrInsertsectsRect(MzRect rect);

    ProjectedGeometries& projectedGeometries() { return projectedGeometries_; }
    ClippedGeometries& clippedGeometries() { return clippedGeometries_; }

    // Names of the simple-features operations. Not implemented: they answer 0, null or NO.
    double distance(const MzGeometry* other) const;
    std::shared_ptr<MzGeometry> envelope() const;
    std::string asText() const;
    bool isEmpty() const;
    bool isSimple() const;
    std::shared_ptr<MzGeometry> boundary() const;
    bool equals(const MzGeometry* other) const;
    bool disjoin(const MzGeometry* other) const;
    bool intersects(const MzGeometry* other) const;
    bool touches(const MzGeometry* other) const;
    bool crosses(const MzGeometry* other) const;
    bool within(const MzGeometry* other) const;
    /// Implemented by the polygon classes.
    virtual bool contains(MzGeometry* other);
    bool overlaps(const MzGeometry* other) const;
    std::shared_ptr<MzGeometry> buffer(double distance) const;
    std::shared_ptr<MzGeometry> convexHull() const;
    std::shared_ptr<MzGeometry> intersection(const MzGeometry* other) const;
    std::shared_ptr<MzGeometry> unionGeom(const MzGeometry* other) const;
    std::shared_ptr<MzGeometry> difference(const MzGeometry* other) const;
    std::shared_ptr<MzGeometry> symmetricDifference(const MzGeometry* other) const;

    /// The record block.
    std::span<const std::byte> geometryData() const { return geometryData_; }

  protected:
    /// A `Geometry` made from WKB of its own type; null unless the bytes hold all of it.
    template <typename Geometry>
    static std::shared_ptr<Geometry> madeFromWKB(MzData bytes) {
        auto geometry = std::make_shared<Geometry>();
        return geometry->readWKB(std::move(bytes)) ? geometry : nullptr;
    }
    /// A `Geometry` with a zero-filled block of `bytes`, at least 16.
    template <typename Geometry>
    static std::shared_ptr<Geometry> madeWithCapacity(std::size_t bytes) {
        auto geometry = std::make_shared<Geometry>();
        geometry->setBlock(std::vector<std::byte>(std::max(bytes, kLeastBlock)));
        return geometry;
    }

    /// Makes `block`, a record with its arrays and at least 16 bytes, the geometry's own. What the
    /// old block held may be used until then.
    void setBlock(std::vector<std::byte> block);
    /// The record at the block's start.
    template <typename Record>
    Record* record() {
        return reinterpret_cast<Record*>(geometryData_.data());
    }
    /// Points the class's record field at the new block and drops what was derived from the old
    /// one. The projected copies stay.
    virtual void blockDidChange();
    /// The class's leaves, asked when none are cached.
    virtual Leaves makeLeafNodes();
    /// Whether leaves are cached.
    bool hasLeafNodes() const { return !leafNodes_.empty(); }
    /// A leaf of this geometry.
    std::shared_ptr<MzTreeLeafNode> leafWithBounds(MzRect bounds);
    /// Whether some leaf's bounds hold the point (half-open).
    bool leavesHold(MzPoint point);
    /// A fresh copy in the projection's plane; null in the base class.
    virtual std::shared_ptr<MzGeometry> makeProjected(const MzMapProjection& projection) const;
    /// The class's encoding for `wkbData`; null where there is none.
    virtual MzData encodeWKB() const;
    /// The counted bytes of an encoder's buffer, which is freed; null for null.
    static MzData takeEncoding(std::byte* buffer, std::uint64_t length);

  private:
    static constexpr std::size_t kLeastBlock = 16;

    bool readWKB(MzData bytes);

    MzData wkbData_;
    bool isGiven_ = false;  ///< whether the block is more than that of a plain object
    std::vector<std::byte> geometryData_;
    Leaves leafNodes_;
    ProjectedGeometries projectedGeometries_;
    ClippedGeometries clippedGeometries_;
};

}  // namespace mezalith
