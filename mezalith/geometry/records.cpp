// SPDX-License-Identifier: MIT
#include <mezalith/geometry/records.hpp>

namespace mezalith {
namespace {

constexpr std::size_t kHeader = 16;

// A header and an array of `count` points or of `count` further headers.
constexpr std::size_t sizeOfBlock(std::size_t count) { return kHeader + 16 * count; }

template <typename Record>
std::size_t sizeOfPointRecord(const Record* record) {
    return record == nullptr ? 0 : sizeOfBlock(record->count);
}

}  // namespace

std::size_t sizeOfMzPoint() { return sizeof(MzPoint); }

std::size_t sizeOfMzLineString(const MzLineString* lineString) {
    return sizeOfPointRecord(lineString);
}

std::size_t sizeOfMzMultiPoint(const MzMultiPoint* multiPoint) {
    return sizeOfPointRecord(multiPoint);
}

std::size_t sizeOfMzPolygon(const MzPolygon* polygon) {
    if (polygon == nullptr) return 0;
    const auto rings = ringsOf(polygon);
    std::size_t size = sizeOfBlock(rings.size());
    for (const MzLinearRing& ring : rings) size += sizeOfPointRecord(&ring) - kHeader;
    return size;
}

std::size_t sizeOfMzMultiLineString(const MzMultiLineString* lines) {
    if (lines == nullptr) return 0;
    const auto members = lineStringsOf(lines);
    std::size_t size = sizeOfBlock(members.size());
    for (const MzLineString& member : members) size += sizeOfMzLineString(&member);
    return size;
}

std::size_t sizeOfMzMultiPolygon(const MzMultiPolygon* polygons) {
    if (polygons == nullptr) return 0;
    const auto members = polygonsOf(polygons);
    std::size_t size = sizeOfBlock(members.size());
    for (const MzPolygon& member : members) size += sizeOfMzPolygon(&member);
    return size;
}

}  // namespace mezalith
