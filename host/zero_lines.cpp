// SPDX-License-Identifier: MIT
#include "host/zero_lines.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace mezalith::host {
namespace {

using Line = std::vector<MzPoint>;

constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

/// Links the crossings of the sides of cells, each known by its side, and follows the links.
class Tracer {
  public:
    explicit Tracer(const SampledGrid& grid)
        : grid_(grid),
          columns_(grid.xs.size()),
          rows_(grid.ys.size()),
          links_(2 * columns_ * rows_, {kNone, kNone}) {}

    std::vector<Line> trace() {
        for (std::size_t j = 0; j + 1 < rows_; ++j) {
            for (std::size_t i = 0; i + 1 < columns_; ++i) linkCell(i, j);
        }
        std::vector<Line> lines;
        // What ends somewhere is followed from its end; then only rings are left.
        for (const bool fromEnds : {true, false}) {
            for (std::size_t side = 0; side < links_.size(); ++side) {
                const bool isEnd = links_[side][0] != kNone && links_[side][1] == kNone;
                const bool isLinked = links_[side][0] != kNone;
                if (fromEnds ? isEnd : isLinked) lines.push_back(follow(side));
            }
        }
        return lines;
    }

  private:
    /// The side from corner (i, j) to the right, or upwards.
    std::size_t sideToTheRight(std::size_t i, std::size_t j) const { return j * columns_ + i; }
    std::size_t sideUpwards(std::size_t i, std::size_t j) const {
        return (rows_ + j) * columns_ + i;
    }
    /// The corners that a side joins.
    std::array<std::size_t, 2> corners(std::size_t side) const {
        const bool upwards = side >= rows_ * columns_;
        const std::size_t corner = upwards ? side - rows_ * columns_ : side;
        return {corner, corner + (upwards ? columns_ : 1)};
    }

    bool isCrossed(std::size_t side) const {
        const auto [a, b] = corners(side);
        return (grid_.values[a] < 0) != (grid_.values[b] < 0);
    }
    double shareAt(std::size_t side) const {
        const auto [a, b] = corners(side);
        return grid_.values[a] / (grid_.values[a] - grid_.values[b]);
    }
    bool isOnItsSide(std::size_t side) const {
        const auto [a, b] = corners(side);
        return grid_.sides[a] + (grid_.sides[b] - grid_.sides[a]) * shareAt(side) > 0;
    }
    MzPoint pointAt(std::size_t side) const {
        const auto [a, b] = corners(side);
        const double share = shareAt(side);
        const auto between = [share](double from, double to) { return from + (to - from) * share; };
        return {between(grid_.xs[a % columns_], grid_.xs[b % columns_]),
                between(grid_.ys[a / columns_], grid_.ys[b / columns_])};
    }

    void linkCell(std::size_t i, std::size_t j) {
        const std::array<std::size_t, 4> sides{sideToTheRight(i, j), sideUpwards(i + 1, j),
                                               sideToTheRight(i, j + 1), sideUpwards(i, j)};
        std::array<std::size_t, 4> crossed{};
        std::size_t count = 0;
        for (const std::size_t side : sides) {
            if (isCrossed(side)) crossed[count++] = side;
        }
        if (count == 0 || !std::isfinite(sumOfCorners(i, j))) return;
        if (count == 2) return link(crossed[0], crossed[1]);
        const bool firstCornerIsWithTheMean =
            (sumOfCorners(i, j) < 0) == (grid_.values[sides[0]] < 0);
        link(crossed[0], crossed[firstCornerIsWithTheMean ? 1 : 3]);
        link(crossed[2], crossed[firstCornerIsWithTheMean ? 3 : 1]);
    }

    double sumOfCorners(std::size_t i, std::size_t j) const {
        const double* lower = grid_.values.data() + j * columns_ + i;
        return lower[0] + lower[1] + lower[columns_] + lower[columns_ + 1];
    }

    void link(std::size_t side, std::size_t other) {
        if (!isOnItsSide(side) || !isOnItsSide(other)) return;
        addLink(side, other);
        addLink(other, side);
    }

    void addLink(std::size_t from, std::size_t to) {
        links_[from][links_[from][0] == kNone ? 0 : 1] = to;
    }

    /// The line from `side` on, taking its links away.
    Line follow(std::size_t side) {
        Line line{pointAt(side)};
        while (links_[side][0] != kNone) {
            const std::size_t next = links_[side][0];
            removeLink(side, next);
            removeLink(next, side);
            side = next;
            line.push_back(pointAt(side));
        }
        return line;
    }

    void removeLink(std::size_t from, std::size_t to) {
        auto& links = links_[from];
        if (links[0] == to) links[0] = links[1];
        links[1] = kNone;
    }

    const SampledGrid& grid_;
    std::size_t columns_;
    std::size_t rows_;
    /// By side, what it is linked with.
    std::vector<std::array<std::size_t, 2>> links_;
};

}  // namespace

std::vector<Line> zeroLines(const SampledGrid& grid) {
    const std::size_t count = grid.xs.size() * grid.ys.size();
    if (grid.values.size() < count || grid.sides.size() < count) return {};
    return Tracer(grid).trace();
}

}  // namespace mezalith::host
