// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry_record.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace mezalith {

/// A geometry of any type in one block of its own: its record and behind it, depth first and
/// without gaps, every array in it; bytes may be left over at its end. Moves, and its pointers stay
/// valid; is not copied.
class MzGeometryBlock {
  public:
    /// No geometry.
    MzGeometryBlock() = default;
    /// Room for `size` bytes, which the maker fills; at least a record.
    explicit MzGeometryBlock(std::size_t size)
        : bytes_(std::make_unique_for_overwrite<std::byte[]>(size)), size_(size) {}

    /// Null when there is no geometry.
    const MzGeometryRecord* record() const {
        return reinterpret_cast<const MzGeometryRecord*>(bytes_.get());
    }
    std::byte* data() { return bytes_.get(); }
    std::size_t size() const { return size_; }

  private:
    std::unique_ptr<std::byte[]> bytes_;
    std::size_t size_ = 0;
};

/// Why something could not be read.
struct MzReadError {
    std::size_t offset = 0;  ///< of the byte that is wrong, the first being 0
    std::string expected;    ///< "a Point"
    std::string found;       ///< "a LineString"

    /// "byte 10: expected a Point, found a LineString".
    MEZALITH_EXPORT std::string text() const;
};

}  // namespace mezalith
