// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/graphics_port.hpp>

#include <cstdint>
#include <span>
#include <vector>

namespace mezalith {

/// How an outline is stroked: its width, ends, joins and dashes. All lengths are view points, to be
/// multiplied by the drawing's scale factor.
///
/// `lineDashCount` and `lineDash` are set apart from each other and may disagree; the entries in
/// use are those of `dashPattern`.
struct MEZALITH_EXPORT MzStroke {
    float strokeWidth = 2.0F;
    std::uint64_t lineJoin = 1;  ///< 0 miter, 1 round, 2 bevel; others leave the port's join
    std::uint64_t lineCap = 1;   ///< 0 butt, 1 round, 2 square; others leave the port's cap
    double lineDashOffset = 0;   ///< where in the pattern a line begins
    std::uint64_t lineDashCount = 0;
    std::vector<double> lineDash;  ///< alternating painted and unpainted lengths
    bool isDashed = false;         ///< whether the pattern is used

    /// The first `lineDashCount` entries of `lineDash`, all of them when there are fewer.
    std::span<const double> dashPattern() const;

    /// Sets cap, join, width and dash of the port, in this order, all lengths multiplied by
    /// `scaleFactor`. Without `isDashed` or without a pattern the line is solid.
    void applyTo(platform::GraphicsPort& port, double scaleFactor) const;

    /// How far ink can be from a line, in view points. Joins and caps that leave those of the port
    /// count as the farthest.
    double reach(double scaleFactor) const;

    /// Takes over `source`'s width, join, cap, offset, `isDashed` and, when it has one, its pattern
    /// with the pattern's count.
    /// Settled: without a pattern the count stays as it is.
    void copyFrom(const MzStroke& source);

    /// Whether width, join, cap, dash offset and dash count are equal; a NaN is equal to nothing.
    /// Settled: `isDashed` and the pattern are not compared.
    bool isEqualTo(const MzStroke& other) const;

    /// Writes "lineJoin", "lineCap", "lineDashOffset", "lineDashCount", "isDashed" and "lineDash";
    /// "strokeWidth" is the owner's to write. Counts and codes keep their low 32 bits, the offset
    /// is narrowed to float, the pattern is `dashPattern` as native doubles. The count is that of
    /// `dashPattern` unless it is empty.
    void encodeWithCoder(platform::KeyedArchiver& coder) const;

    /// Reads what `encodeWithCoder` wrote. A negative count counts as 0; of the pattern's bytes at
    /// most `lineDashCount` whole doubles are taken. Strict archives fail on a negative count, and
    /// on bytes that are there but not as many as `lineDashCount` says.
    void decodeWithCoder(const platform::KeyedUnarchiver& coder);
};

}  // namespace mezalith
