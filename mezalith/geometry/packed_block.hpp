// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mezalith::detail {

// A packed block holds a record and everything in it without gaps, depth first: the record's
// 16-byte header, its array, and, where the array's elements are records themselves, the arrays of
// element 0 with all they hold, then those of element 1, and so on.
//
//     line string, multi-point   header, points
//     polygon                    header, rings, points of ring 0, points of ring 1, ...
//     multi-polygon              header, polygons, rings of polygon 0, points of its ring 0, ...,
//                                rings of polygon 1, ...
//
// A point's block is the point. An array without elements lies where it would begin. Moving a block
// keeps its pointers valid, copying it does not.

using Block = std::vector<std::byte>;

/// Hands out the arrays of a packed block, one behind the other in the order of the calls.
class PackedArrays {
  public:
    /// Arrays begin behind the 16-byte header at `block`.
    explicit PackedArrays(std::byte* block) : next_(block + sizeof(MzPolygon)) {}

    /// Each points the record, whose count is set, at its array, and answers it.
    MzPoint* place(MzLineString& line) { return take(line.count, line.points); }
    MzPoint* place(MzLinearRing& ring) { return take(ring.count, ring.points); }
    MzPoint* place(MzMultiPoint& points) { return take(points.count, points.points); }
    MzLinearRing* place(MzPolygon& polygon) { return take(polygon.count, polygon.rings); }
    MzPolygon* place(MzMultiPolygon& multi) { return take(multi.count, multi.polygons); }

  private:
    template <typename Element>
    Element* take(std::uint32_t count, Element*& array) {
        array = reinterpret_cast<Element*>(next_);
        next_ += count * sizeof(Element);
        return array;
    }

    std::byte* next_;
};

/// A packed copy of the record, in which null arrays are empty and their counts 0. The block has
/// the size that the copy's `sizeOf...` function says: that of a multi-polygon ends in 16 spare
/// bytes a member.
MEZALITH_EXPORT Block packedCopy(const MzLineString& line);
MEZALITH_EXPORT Block packedCopy(const MzMultiPoint& points);
MEZALITH_EXPORT Block packedCopy(const MzPolygon& polygon);
MEZALITH_EXPORT Block packedCopy(const MzMultiPolygon& polygons);

/// The packed block of the WKB geometry in `bytes`. Empty unless they begin with a complete
/// geometry of type `type`, one of 1, 2, 3, 4 and 6: counts are believed only as far as the bytes
/// can hold them. Member types, odd byte order values and trailing bytes are not checked.
MEZALITH_EXPORT Block packedBlockFromWKB(std::span<const std::byte> bytes, std::uint32_t type);

}  // namespace mezalith::detail
