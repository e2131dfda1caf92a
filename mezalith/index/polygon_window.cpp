// SPDX-License-Identifier: MIT
#include <mezalith/geometry/orientation.hpp>
#include <mezalith/geometry/plane_vector.hpp>
#include <mezalith/index/polygon_window.hpp>

#include <algorithm>
#include <array>
#include <limits>

namespace mezalith {
namespace {

/// Whether a side whose box meets `box` does so itself: not if all corners lie to one side of it.
bool sideMeets(MzPoint a, MzPoint b, const MzBox& box) {
    const std::array turns{
        MzOrientation(a, b, {box.minX, box.minY}), MzOrientation(a, b, {box.maxX, box.minY}),
        MzOrientation(a, b, {box.maxX, box.maxY}), MzOrientation(a, b, {box.minX, box.maxY})};
    const auto [low, high] = std::ranges::minmax(turns);
    return !(low > 0 || high < 0);
}

/// Whether the way to the right from `p` crosses the side, whose lower end counts and upper does
/// not.
bool isCrossed(MzPoint a, MzPoint b, MzPoint p) {
    if ((a.y > p.y) == (b.y > p.y)) return false;
    if (std::min(a.x, b.x) > p.x) return true;
    const int side = MzOrientation(a, b, p);
    return a.y < b.y ? side > 0 : side < 0;
}

}  // namespace

MzPolygonWindow::MzPolygonWindow(const MzPolygon& polygon) {
    for (const MzLinearRing& ring : ringsOf(&polygon)) addRing(ring);
    std::vector<MzBox> boxes;
    boxes.reserve(sides_.size());
    for (const auto& [a, b] : sides_) {
        boxes.push_back(
            {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)});
    }
    tree_ = MzPackedRTree::initWithBoxes(boxes);
    if (tree_ == nullptr) tree_ = std::make_shared<MzPackedRTree>();
}

void MzPolygonWindow::addRing(const MzLinearRing& ring) {
    std::vector<MzPoint> points;
    for (const MzPoint p : pointsOf(&ring)) {
        if (detail::isFinite(p)) points.push_back(p);
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        sides_.push_back({points[i], points[i + 1 < points.size() ? i + 1 : 0]});
    }
}

bool MzPolygonWindow::meets(const MzBox& box) const {
    const bool isApart = tree_->visitWindow(
        box, [&](std::uint32_t i) { return !sideMeets(sides_[i].from, sides_[i].to, box); });
    return !isApart || isInside(cornerOf(box));
}

bool MzPolygonWindow::hasSideNear(const MzBox& box) const {
    return !tree_->visitWindow(box, [](std::uint32_t) { return false; });
}

bool MzPolygonWindow::isInside(MzPoint point) const {
    bool inside = false;
    const double right = std::numeric_limits<double>::infinity();
    tree_->visitWindow({point.x, point.y, right, point.y}, [&](std::uint32_t i) {
        inside = inside != isCrossed(sides_[i].from, sides_[i].to, point);
    });
    return inside;
}

}  // namespace mezalith
