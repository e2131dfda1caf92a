// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/medialaxis/deepest_search.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <queue>

namespace mezalith::detail {
namespace {

/// The size of the squares that are kept, as a share of the clearance.
constexpr double kFine = 0x1p-10;
/// The most distances to measure for each segment, and besides, before giving up.
constexpr std::size_t kWorkEach = 64;
constexpr std::size_t kWorkBesides = 30000;
/// Looking whether a point lies inside passes all segments, and so many of them count as one
/// distance: few points need it, but with many rooms beside a long outline they would be all.
constexpr std::size_t kPassedEach = 64;
/// Bounds that fall short of the best by less, as a share, may do so by rounding.
constexpr double kRounding = 0x1p-40;

double reachOf(const DeepCell& cell) { return cell.half * std::numbers::sqrt2; }

/// No point of the square is deeper.
double boundOf(const DeepCell& cell) { return cell.clearance + reachOf(cell); }

struct LessPromising {
    bool operator()(const DeepCell& a, const DeepCell& b) const { return boundOf(a) < boundOf(b); }
};

MzPoint pointOf(GridPoint p) { return {static_cast<double>(p.x), static_cast<double>(p.y)}; }

/// The square around all ends.
std::pair<MzPoint, double> squareAround(std::span<const GridSegment> segments) {
    MzPoint low = pointOf(segments.front().low);
    MzPoint high = low;
    for (const GridSegment& s : segments) {
        low.x = std::min<double>(low.x, s.low.x);
        high.x = std::max<double>(high.x, s.high.x);
        low.y =
            std::min<double>({low.y, static_cast<double>(s.low.y), static_cast<double>(s.high.y)});
        high.y =
            std::max<double>({high.y, static_cast<double>(s.low.y), static_cast<double>(s.high.y)});
    }
    return {times(plus(low, high), 0.5), 0.5 * std::max(high.x - low.x, high.y - low.y)};
}

}  // namespace

DeepestSearch::DeepestSearch(std::span<const GridSegment> segments) : given_(segments) {
    if (segments.empty()) return;
    lines_.reserve(segments.size());
    for (const GridSegment& s : segments) {
        const MzPoint along = minus(pointOf(s.high), pointOf(s.low));
        lines_.push_back({pointOf(s.low), along, 1 / dot(along, along)});
    }
    pool_.resize(segments.size());
    std::iota(pool_.begin(), pool_.end(), 0U);
    const auto [middle, half] = squareAround(segments);
    search({middle, half, std::numeric_limits<double>::infinity(), 0,
            static_cast<std::uint32_t>(segments.size()), false});
}

double DeepestSearch::squareDistance(const Line& line, MzPoint point) {
    const MzPoint away = minus(point, line.from);
    const double share = std::clamp(dot(away, line.along) * line.inverseSquare, 0.0, 1.0);
    const MzPoint left = minus(away, times(line.along, share));
    return dot(left, left);
}

/// A square within another one; none when it lies outside.
std::optional<DeepCell> DeepestSearch::cellAt(MzPoint middle, double half, const DeepCell& whole) {
    work_ += whole.count;
    squares_.resize(whole.count);
    double least = std::numeric_limits<double>::infinity();
    for (std::uint32_t i = 0; i < whole.count; ++i) {
        squares_[i] = squareDistance(lines_[pool_[whole.first + i]], middle);
        least = std::min(least, squares_[i]);
    }
    DeepCell cell{middle, half, std::sqrt(least), pool_.size(), 0, whole.isInside};
    const double reach = reachOf(cell);
    if (!cell.isInside && cell.clearance > reach) {
        work_ += given_.size() / kPassedEach;
        if (!isInside(middle)) return std::nullopt;
        cell.isInside = true;
    }
    const double farthest = cell.clearance + 2 * reach;
    for (std::uint32_t i = 0; i < whole.count; ++i) {
        if (squares_[i] <= farthest * farthest) pool_.push_back(pool_[whole.first + i]);
    }
    cell.count = static_cast<std::uint32_t>(pool_.size() - cell.first);
    return cell;
}

bool DeepestSearch::isInside(MzPoint point) const {
    bool isInside = false;
    for (const GridSegment& s : given_) {
        if ((s.low.y > point.y) == (s.high.y > point.y)) continue;
        const MzPoint along = minus(pointOf(s.high), pointOf(s.low));
        const double side = cross(along, minus(point, pointOf(s.low)));
        isInside ^= (side > 0) == (s.high.y > s.low.y);
    }
    return isInside;
}

void DeepestSearch::search(const DeepCell& root) {
    std::priority_queue<DeepCell, std::vector<DeepCell>, LessPromising> cells;
    cells.push(root);
    const std::size_t most = kWorkEach * lines_.size() + kWorkBesides;
    const auto isHopeless = [this](const DeepCell& cell) {
        return boundOf(cell) < best_ * (1 - kRounding);
    };
    while (!cells.empty() && !isHopeless(cells.top())) {
        const DeepCell cell = cells.top();
        cells.pop();
        if (cell.isInside && cell.half <= kFine * cell.clearance) {
            cells_.push_back(cell);
            continue;
        }
        const double half = cell.half / 2;
        for (const MzPoint way :
             {MzPoint{-half, -half}, {half, -half}, {-half, half}, {half, half}}) {
            const auto part = cellAt(plus(cell.middle, way), half, cell);
            if (!part) continue;
            if (part->isInside) best_ = std::max(best_, part->clearance);
            if (isHopeless(*part)) {
                pool_.resize(part->first);
            } else {
                cells.push(*part);
            }
        }
        if (work_ > most) {
            cells_.clear();
            pool_ = {};
            return;
        }
    }
    std::erase_if(cells_, isHopeless);
}

std::vector<GridSegment> DeepestSearch::segments() const {
    std::vector<std::uint32_t> indices;
    for (const DeepCell& cell : cells_) {
        const auto own = segmentsOf(cell);
        indices.insert(indices.end(), own.begin(), own.end());
    }
    std::ranges::sort(indices);
    const auto spare = std::ranges::unique(indices);
    indices.erase(spare.begin(), spare.end());
    std::vector<GridSegment> segments;
    segments.reserve(indices.size());
    for (const std::uint32_t index : indices) segments.push_back(given_[index]);
    return segments;
}

std::optional<double> DeepestSearch::clearanceAt(MzPoint point) const {
    const auto holds = [point](const DeepCell& cell) {
        const MzPoint away = minus(point, cell.middle);
        return std::max(std::abs(away.x), std::abs(away.y)) <= cell.half;
    };
    const auto cell = std::ranges::find_if(cells_, holds);
    if (cell == cells_.end()) return std::nullopt;
    double least = std::numeric_limits<double>::infinity();
    for (const std::uint32_t i : segmentsOf(*cell)) {
        least = std::min(least, squareDistance(lines_[i], point));
    }
    return std::sqrt(least);
}

}  // namespace mezalith::detail
