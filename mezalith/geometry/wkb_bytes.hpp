// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/records.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mezalith::detail {

static_assert(std::endian::native == std::endian::little, "values are copied as little-endian");

// Sizes in WKB.
inline constexpr std::size_t kHeaderBytes = 5;   // byte order and type
inline constexpr std::size_t kPairBytes = 16;    // x and y
inline constexpr std::size_t kPointBytes = 21;   // a Point element
inline constexpr std::size_t kRingBytes = 4;     // a ring without points
inline constexpr std::size_t kElementBytes = 9;  // any other element without members

// Flags in the type codes of EWKB.
inline constexpr std::uint32_t kEWKBZ = 0x80000000U;
inline constexpr std::uint32_t kEWKBM = 0x40000000U;
inline constexpr std::uint32_t kEWKBSRID = 0x20000000U;

// The header of a geometry in a GeoPackage: "GP", version, flags, SRID, then the envelope.
inline constexpr std::size_t kGeoPackageBytes = 8;
inline constexpr std::array<std::size_t, 5> kEnvelopeBytes{0, 32, 48, 48, 64};  // by its kind
inline constexpr unsigned kGeoPackageEmpty = 0x10;
inline constexpr unsigned kGeoPackageExtended = 0x20;

inline std::uint32_t loadInt(const std::byte* from, int order) {
    std::uint32_t value = 0;
    std::memcpy(&value, from, sizeof value);
    return order == wkbBigEndian ? __builtin_bswap32(value) : value;
}

/// From the order to the host's or back. Values stay bit patterns on the way: no floating-point
/// register quiets a NaN.
inline void copyPairs(const std::byte* from, std::size_t n, std::byte* to, int order) {
    if (order != wkbBigEndian) {
        std::memcpy(to, from, n * kPairBytes);
        return;
    }
    for (std::size_t offset = 0; offset < n * kPairBytes; offset += sizeof(double)) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, from + offset, sizeof bits);
        bits = __builtin_bswap64(bits);
        std::memcpy(to + offset, &bits, sizeof bits);
    }
}

inline void loadPairs(const std::byte* from, std::size_t n, MzPoint* output, int order) {
    copyPairs(from, n, reinterpret_cast<std::byte*>(output), order);
}

inline int orderOfElement(const std::byte* element) {
    return *element == std::byte{0} ? wkbBigEndian : wkbLittleEndian;
}

/// Writes in host order and advances.
template <typename Value>
void store(wkbWriteCursor cursor, const Value& value) {
    std::memcpy(*cursor, &value, sizeof value);
    *cursor += sizeof value;
}

}  // namespace mezalith::detail
