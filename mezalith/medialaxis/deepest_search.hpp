// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/medialaxis/grid_outline.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mezalith::detail {

/// A square on the grid, and how far its middle is from the outline, in steps.
struct DeepCell {
    MzPoint middle;
    double half;
    double clearance;
    std::size_t first;  ///< of the segments that can be nearest to a point of it
    std::uint32_t count;
    bool isInside;  ///< all of it; unknown else
};

/// Where in an outline its deepest point can be: small squares inside, none of which touches the
/// outline, and for each the segments that it can be as far from as from no other.
class MEZALITH_EXPORT DeepestSearch {
  public:
    /// Halves squares, the most promising first, until those left are a thousandth of the clearance
    /// in size. Source: branch and bound by the distance of a square's middle, which changes by
    /// no more than the way to its corners. Gives up, without squares, where many places are about
    /// as deep, as along a canal.
    explicit DeepestSearch(std::span<const GridSegment> segments);

    std::span<const DeepCell> cells() const { return cells_; }
    std::span<const std::uint32_t> segmentsOf(const DeepCell& cell) const {
        return std::span(pool_).subspan(cell.first, cell.count);
    }
    /// Those of all the squares, each once.
    std::vector<GridSegment> segments() const;
    /// The clearance of a point that lies in one of the squares; none elsewhere.
    std::optional<double> clearanceAt(MzPoint point) const;

  private:
    struct Line {
        MzPoint from;
        MzPoint along;
        double inverseSquare;  ///< of the length
    };

    static double squareDistance(const Line& line, MzPoint point);
    std::optional<DeepCell> cellAt(MzPoint middle, double half, const DeepCell& whole);
    bool isInside(MzPoint point) const;
    void search(const DeepCell& root);

    std::span<const GridSegment> given_;
    std::vector<Line> lines_;
    std::vector<std::uint32_t> pool_;
    std::vector<double> squares_;  ///< of distances, while a cell is made
    std::vector<DeepCell> cells_;
    double best_ = 0;  ///< the greatest clearance of a middle so far
    std::size_t work_ = 0;
};

}  // namespace mezalith::detail
