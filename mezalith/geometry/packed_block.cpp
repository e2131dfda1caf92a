// SPDX-License-Identifier: MIT
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/wkb_walk.hpp>

#include <algorithm>

namespace mezalith::detail {
namespace {

// The `sizeOf...` figures, except that an array of points that is not there takes no room.

template <typename Record>
std::size_t blockSize(const Record& record) {
    return sizeof(Record) + pointsOf(&record).size_bytes();
}

std::size_t blockSize(const MzPolygon& polygon) {
    std::size_t size = sizeof(MzPolygon);
    for (const MzLinearRing& ring : ringsOf(&polygon)) size += blockSize(ring);
    return size;
}

std::size_t blockSize(const MzMultiPolygon& polygons) {
    std::size_t size = sizeof(MzMultiPolygon) + polygonsOf(&polygons).size_bytes();
    for (const MzPolygon& polygon : polygonsOf(&polygons)) size += blockSize(polygon);
    return size;
}

template <typename Record>
void fill(Record& record, const Record& source, PackedArrays& arrays) {
    const std::span<const MzPoint> points = pointsOf(&source);
    record.count = static_cast<std::uint32_t>(points.size());
    std::ranges::copy(points, arrays.place(record));
}

void fill(MzPolygon& record, const MzPolygon& source, PackedArrays& arrays) {
    record.count = static_cast<std::uint32_t>(ringsOf(&source).size());
    MzLinearRing* ring = arrays.place(record);
    for (const MzLinearRing& from : ringsOf(&source)) fill(*ring++, from, arrays);
}

void fill(MzMultiPolygon& record, const MzMultiPolygon& source, PackedArrays& arrays) {
    record.count = static_cast<std::uint32_t>(polygonsOf(&source).size());
    MzPolygon* polygon = arrays.place(record);
    for (const MzPolygon& from : polygonsOf(&source)) fill(*polygon++, from, arrays);
}

template <typename Record>
Block packed(const Record& source) {
    Block block(blockSize(source));
    PackedArrays arrays(block.data());
    fill(*reinterpret_cast<Record*>(block.data()), source, arrays);
    return block;
}

template <typename Walk>
std::size_t walkGeometry(Walk walk, std::uint32_t type, std::byte* record) {
    switch (type) {
        case MzGeometryTypePoint:
            return walk.points(1, reinterpret_cast<MzPoint*>(record));
        case MzGeometryTypeLineString:
            return walk.lineStrings(1, reinterpret_cast<MzLineString*>(record));
        case MzGeometryTypePolygon:
            return walk.polygons(1, reinterpret_cast<MzPolygon*>(record));
        case MzGeometryTypeMultiPoint:
            return walk.multiPoint(reinterpret_cast<MzMultiPoint*>(record));
        case MzGeometryTypeMultiPolygon:
            return walk.multiPolygon(reinterpret_cast<MzMultiPolygon*>(record));
        default:
            return 0;
    }
}

/// The block's size; 0 unless the bytes hold all of the geometry.
std::size_t checkedSize(std::span<const std::byte> bytes, std::uint32_t type) {
    if (bytes.size() < kHeaderBytes || geometryTypeFromData(bytes.data()) != type) return 0;
    CheckedBytes checked(bytes);
    const std::size_t size = walkGeometry(WkbWalk(checked, DesignatedArrays{}), type, nullptr);
    return checked.heldEverything() ? size : 0;
}

}  // namespace

Block packedCopy(const MzLineString& line) { return packed(line); }

Block packedCopy(const MzMultiPoint& points) { return packed(points); }

Block packedCopy(const MzPolygon& polygon) { return packed(polygon); }

Block packedCopy(const MzMultiPolygon& polygons) { return packed(polygons); }

Block packedBlockFromWKB(std::span<const std::byte> bytes, std::uint32_t type) {
    Block block(checkedSize(bytes, type));
    if (block.empty()) return block;
    const std::byte* cursor = bytes.data();
    TrustedBytes trusted(&cursor);
    walkGeometry(WkbWalk(trusted, PackedArrays(block.data())), type, block.data());
    return block;
}

}  // namespace mezalith::detail
