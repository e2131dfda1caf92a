// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb.hpp>
#include <mezalith/geometry/wkb_bytes.hpp>
#include <mezalith/geometry/wkb_walk.hpp>
#include <mezalith/platform/log.hpp>

#include <bit>
#include <cstring>
#include <span>
#include <string>

namespace mezalith {
namespace {

using detail::DesignatedArrays;
using detail::TrustedBytes;
using detail::WkbWalk;

}  // namespace

int wkbByteOrder(wkbCursor cursor) { return popByte(cursor) != 0 ? wkbLittleEndian : wkbBigEndian; }

std::uint32_t getInt(const std::byte* pointer, int order) {
    return detail::loadInt(pointer, order);
}

std::uint8_t getByte(const std::byte* pointer) { return std::to_integer<std::uint8_t>(*pointer); }

std::uint8_t popByte(wkbCursor cursor) { return getByte((*cursor)++); }

std::uint32_t popInt(wkbCursor cursor, int order) {
    const std::uint32_t value = getInt(*cursor, order);
    skipInt(cursor);
    return value;
}

double popDouble(wkbCursor cursor, int order) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, *cursor, sizeof bits);
    skipDouble(cursor);
    return std::bit_cast<double>(order == wkbBigEndian ? __builtin_bswap64(bits) : bits);
}

void skipByte(wkbCursor cursor) { *cursor += 1; }

void skipInt(wkbCursor cursor) { *cursor += 4; }

void skipDouble(wkbCursor cursor) { *cursor += 8; }

void writeByte(wkbWriteCursor cursor, const std::uint8_t* value) { detail::store(cursor, *value); }

void writeInt(wkbWriteCursor cursor, const std::uint32_t* value) { detail::store(cursor, *value); }

void writeDouble(wkbWriteCursor cursor, const double* value) { detail::store(cursor, *value); }

std::uint32_t geometryTypeFromData(const std::byte* bytes) {
    return getInt(bytes + 1, detail::orderOfElement(bytes));
}

std::uint8_t wkbByteOrderFromHost() { return 1; }

std::size_t pointToMzPoint(wkbCursor cursor, std::uint32_t n, MzPoint* points, int order) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).pairs(n, points, order);
}

std::size_t wkbPointToMzPoint(wkbCursor cursor, std::uint32_t n, MzPoint* points) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).points(n, points);
}

std::size_t linearRingToMzLinearRing(wkbCursor cursor, std::uint32_t r, MzLinearRing* rings,
                                     int order) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).rings(r, rings, order);
}

std::size_t wkbLineStringToMzLineString(wkbCursor cursor, std::uint32_t n, MzLineString* lines) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).lineStrings(n, lines);
}

std::size_t wkbPolygonToMzPolygon(wkbCursor cursor, std::uint32_t n, MzPolygon* polygons) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).polygons(n, polygons);
}

std::size_t wkbMultiPointToMzMultiPoint(wkbCursor cursor, MzMultiPoint* multiPoint) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).multiPoint(multiPoint);
}

std::size_t wkbMultiLineStringToMzMultiLineString(wkbCursor cursor, MzMultiLineString* lines) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).multiLineString(lines);
}

std::size_t wkbMultiPolygonToMzMultiPolygon(wkbCursor cursor, MzMultiPolygon* polygons) {
    TrustedBytes bytes(cursor);
    return WkbWalk(bytes, DesignatedArrays{}).multiPolygon(polygons);
}

void printHEX(const std::byte* bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    for (const std::byte byte : std::span(bytes, 16)) {
        const auto value = std::to_integer<unsigned>(byte);
        platform::log(std::string("Hex Out: ") + kDigits[value >> 4] + kDigits[value & 15]);
    }
}

}  // namespace mezalith
