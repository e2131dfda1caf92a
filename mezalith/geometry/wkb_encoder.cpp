// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb.hpp>
#include <mezalith/geometry/wkb_bytes.hpp>
#include <mezalith/geometry/wkb_encoder.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <span>

namespace mezalith {
namespace {

using detail::store;

void writeHeader(wkbWriteCursor cursor, std::uint32_t type) {
    store(cursor, wkbByteOrderFromHost());
    store(cursor, type);
}

void writeCountedHeader(wkbWriteCursor cursor, std::uint32_t type, std::size_t count) {
    writeHeader(cursor, type);
    store(cursor, static_cast<std::uint32_t>(count));
}

void writePairs(wkbWriteCursor cursor, std::span<const MzPoint> points) {
    for (const MzPoint& point : points) store(cursor, point);
}

/// The buffer with room for `needed` bytes behind the `length` counted ones, a new one when there
/// are none. Without room the buffer is freed and the answer null, after a line that blames `who`.
std::byte* grow(std::byte* buffer, std::uint64_t length, std::uint64_t needed, const char* who) {
    const bool fresh = length == 0;
    void* grown = nullptr;
    if (fresh) {
        grown = std::malloc(std::max<std::uint64_t>(needed, 1));
    } else if (needed <= std::numeric_limits<std::size_t>::max() - length) {
        grown = std::realloc(buffer, length + needed);
    }
    if (grown == nullptr) {
        std::fprintf(stderr, "ERROR: %s failed in %s", fresh ? "malloc" : "realloc", who);
        if (!fresh) std::free(buffer);
    }
    return static_cast<std::byte*>(grown);
}

/// A new buffer with the header of a multi element.
std::byte* beginMulti(std::uint32_t type, std::size_t count, std::uint64_t* length,
                      const char* who) {
    std::byte* buffer = grow(nullptr, 0, detail::kElementBytes, who);
    if (buffer == nullptr) return nullptr;
    std::byte* cursor = buffer;
    writeCountedHeader(&cursor, type, count);
    *length = detail::kElementBytes;
    return buffer;
}

/// The points of the ring that the `step`-th round writes.
std::span<const MzPoint> ringPoints(const MzLinearRing* rings, std::uint32_t step) {
    return pointsOf(&rings[static_cast<std::uint8_t>(step)]);
}

}  // namespace

std::byte* wkbPointToData(const MzPoint* points, std::uint32_t n, std::byte* buffer,
                          std::uint64_t* length) {
    if (points == nullptr) n = 0;
    const std::uint64_t needed = n * detail::kPointBytes;
    buffer = grow(buffer, *length, needed, "wkbPointToData");
    if (buffer == nullptr) return nullptr;
    std::byte* cursor = buffer + *length;
    *length += needed;
    for (std::uint32_t i = 0; i < n; ++i) {
        writeHeader(&cursor, MzGeometryTypePoint);
        store(&cursor, points[i]);
    }
    return buffer;
}

std::byte* wkbLinearRingToData(const MzLinearRing* rings, std::uint32_t r, std::byte* buffer,
                               std::uint64_t* length) {
    if (rings == nullptr) r = 0;
    const std::uint64_t counted = r * detail::kRingBytes;
    std::uint64_t needed = counted;
    for (std::uint32_t step = 0; step < r; ++step) needed += ringPoints(rings, step).size_bytes();
    if (needed == 0) return buffer;
    buffer = grow(buffer, *length, needed, "wkbLinearRingToData");
    if (buffer == nullptr) return nullptr;
    std::byte* cursor = buffer + *length;
    *length += counted;
    const auto firstCount = static_cast<std::uint32_t>(pointsOf(rings).size());
    for (std::uint32_t step = 0; step < r; ++step) {
        store(&cursor, firstCount);
        writePairs(&cursor, ringPoints(rings, step));
    }
    return buffer;
}

std::byte* wkbLineStringToData(const MzLineString* lines, std::uint32_t n, std::byte* buffer,
                               std::uint64_t* length) {
    if (lines == nullptr) n = 0;
    const std::uint64_t counted = n * detail::kElementBytes;
    std::uint64_t needed = counted;
    for (std::uint32_t i = 0; i < n; ++i) needed += pointsOf(&lines[i]).size_bytes();
    if (needed == 0) return buffer;
    buffer = grow(buffer, *length, needed, "wkbLineStringToData");
    if (buffer == nullptr) return nullptr;
    std::byte* cursor = buffer + *length;
    *length += counted;
    for (std::uint32_t i = 0; i < n; ++i) {
        writeCountedHeader(&cursor, MzGeometryTypeLineString, pointsOf(lines).size());
        writePairs(&cursor, pointsOf(&lines[i]));
    }
    return buffer;
}

std::byte* wkbPolygonToData(const MzPolygon* polygons, std::uint32_t n, std::byte* buffer,
                            std::uint64_t* length) {
    if (polygons == nullptr) n = 0;
    for (std::uint32_t round = 0; round < n; ++round) {
        const std::span<const MzLinearRing> rings = ringsOf(polygons);
        buffer = grow(buffer, *length, detail::kElementBytes, "wkbPolygonToData");
        if (buffer == nullptr) return nullptr;
        std::byte* cursor = buffer + *length;
        writeCountedHeader(&cursor, MzGeometryTypePolygon, rings.size());
        *length += detail::kElementBytes;
        buffer = wkbLinearRingToData(rings.data(), static_cast<std::uint32_t>(rings.size()), buffer,
                                     length);
        if (buffer == nullptr) return nullptr;
    }
    return buffer;
}

std::byte* wkbMultiPointToData(const MzMultiPoint* multiPoint, std::uint64_t* length) {
    const std::span<const MzPoint> points = pointsOf(multiPoint);
    // Settled: the text names the encoder of points.
    std::byte* buffer =
        beginMulti(MzGeometryTypeMultiPoint, points.size(), length, "wkbPointToData");
    if (buffer == nullptr) return nullptr;
    return wkbPointToData(points.data(), static_cast<std::uint32_t>(points.size()), buffer, length);
}

std::byte* wkbMultiLineStringToData(const MzMultiLineString* lines, std::uint64_t* length) {
    const std::span<const MzLineString> members = lineStringsOf(lines);
    std::byte* buffer = beginMulti(MzGeometryTypeMultiLineString, members.size(), length,
                                   "wkbMultiLineStringToData");
    if (buffer == nullptr) return nullptr;
    return wkbLineStringToData(members.data(), static_cast<std::uint32_t>(members.size()), buffer,
                               length);
}

std::byte* wkbMultiPolygonToData(const MzMultiPolygon* polygons, std::uint64_t* length) {
    const std::span<const MzPolygon> members = polygonsOf(polygons);
    std::byte* buffer =
        beginMulti(MzGeometryTypeMultiPolygon, members.size(), length, "wkbMultiPolygonToData");
    if (buffer == nullptr) return nullptr;
    return wkbPolygonToData(members.data(), static_cast<std::uint32_t>(members.size()), buffer,
                            length);
}

}  // namespace mezalith
