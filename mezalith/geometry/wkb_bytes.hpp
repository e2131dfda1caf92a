// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/records.hpp>
#include <mezalith/geometry/wkb.hpp>

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

inline std::uint32_t loadInt(const std::byte* from, int order) {
    std::uint32_t value = 0;
    std::memcpy(&value, from, sizeof value);
    return order == wkbBigEndian ? __builtin_bswap32(value) : value;
}

/// Values stay bit patterns on the way: no floating-point register quiets a NaN.
inline void loadPairs(const std::byte* from, std::size_t n, MzPoint* output, int order) {
    if (order != wkbBigEndian) {
        std::memcpy(output, from, n * kPairBytes);
        return;
    }
    auto* to = reinterpret_cast<std::byte*>(output);
    for (std::size_t offset = 0; offset < n * kPairBytes; offset += sizeof(double)) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, from + offset, sizeof bits);
        bits = __builtin_bswap64(bits);
        std::memcpy(to + offset, &bits, sizeof bits);
    }
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
