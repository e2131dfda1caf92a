// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/index/box.hpp>

#include <cstddef>
#include <cstdint>
#include <span>

namespace mezalith::detail {

/// Where a Hilbert curve through 4096 x 4096 cells passes a cell: 0 to 2^24 - 1, from cell (0, 0)
/// to cell (4095, 0).
MEZALITH_EXPORT std::uint32_t hilbertKey(std::uint32_t x, std::uint32_t y);

/// Orders the boxes that are not empty as a Hilbert curve passes their centres, those of one cell
/// by index. Where many crowd in a cell, they are ordered along a curve of their own. Centres that
/// are not finite come where the curve begins or ends. At most 2^32 - 1 boxes; `order` and
/// `scratch` have a word for each. The indexes are the lower halves of the first words of `order`,
/// of which the answer says how many there are.
MEZALITH_EXPORT std::size_t orderAlongHilbertCurve(std::span<const MzBox> boxes,
                                                   std::span<std::uint64_t> order,
                                                   std::span<std::uint64_t> scratch);

}  // namespace mezalith::detail
