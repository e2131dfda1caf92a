// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry_record.hpp>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mezalith {

/// Puts Well-Known Binary together, little-endian, where counts are known only at the end: what a
/// reader of another format hands on to `MzReadWKB`.
///
///     MzWKBBuilder builder;
///     builder.begin(MzGeometryTypePolygon);
///     builder.beginRing();
///     builder.add({0, 0});
///     ...
///     builder.end();
///     builder.end();
///
/// The calls are trusted: a geometry holds what its type holds.
class MEZALITH_EXPORT MzWKBBuilder {
  public:
    /// A geometry, the next member of the one that is open. Members of a multi-point are points.
    void begin(std::uint32_t type);
    /// The next ring of the open polygon.
    void beginRing();
    /// The coordinates of the open point, or the next of the open line or ring.
    void add(MzPoint point);
    /// Nothing more comes in what was begun last.
    void end();

    const std::vector<std::byte>& bytes() const { return bytes_; }

  private:
    struct Open {
        std::size_t offset;   ///< of the count
        std::uint32_t count;  ///< of members, rings or points so far
        bool isCounted;       ///< the count stands in the bytes
    };

    template <typename Value>
    void append(const Value& value);
    void open(bool isCounted);

    std::vector<std::byte> bytes_;
    std::vector<Open> open_;
};

}  // namespace mezalith
