// SPDX-License-Identifier: MIT
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>
#include <mezalith/medialaxis/polygon_spine.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/log.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

// Makes rings of any bytes and finds both of their axes. The first byte says whether the others are
// coordinates in doubles or, each, a place on a small grid, on which rings cross and touch at will.

namespace mezalith {
namespace {

using Points = std::vector<MzPoint>;

void require(bool holds) {
    if (!holds) std::abort();
}

Points pointsOfDoubles(std::span<const std::uint8_t> bytes) {
    Points points(bytes.size() / sizeof(MzPoint));
    if (!points.empty()) std::memcpy(points.data(), bytes.data(), points.size() * sizeof(MzPoint));
    return points;
}

Points pointsOfGrid(std::span<const std::uint8_t> bytes) {
    Points points;
    for (const std::uint8_t byte : bytes) {
        points.push_back({static_cast<double>(byte % 16), static_cast<double>(byte / 16)});
    }
    return points;
}

/// Parts the points in rings of `length`.
std::vector<MzLinearRing> ringsOfPoints(Points& points, std::size_t length) {
    std::vector<MzLinearRing> rings;
    for (std::size_t i = 0; i < points.size(); i += length) {
        const std::size_t count = std::min(length, points.size() - i);
        rings.push_back({static_cast<std::uint32_t>(count), points.data() + i});
    }
    return rings;
}

/// Its time grows with a power of the points.
constexpr std::size_t kMostForSettled = 64;

void askSettled(const MzLinearRing& ring) {
    if (ring.count > kMostForSettled) return;
    const auto axis = MzMedialAxis::medialAxisFromRing(&ring);
    if (axis == nullptr) return;
    require(axis->loops() <= axis->maxLoops());
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    axis->draw();
    for (const auto& arc : axis->arcs()) require(arc->start() != nullptr && arc->end() != nullptr);
}

void askSkeleton(const MzPolygon& polygon) {
    const auto skeleton = MzPolygonSkeleton::skeletonFromPolygon(&polygon);
    const auto deepest = MzDeepestPoint(&polygon);
    require((skeleton == nullptr) == !deepest);
    if (skeleton == nullptr) return;
    for (const MzSkeletonNode& node : skeleton->nodes()) {
        require(std::isfinite(node.clearance) && node.clearance >= 0);
    }
    const double apart = skeleton->deepestNode().clearance - deepest->clearance;
    require(std::abs(apart) <= skeleton->tolerance());
    const auto pruned = skeleton->prunedByRatio(1.5);
    require(!pruned->nodes().empty());
    require(!MzSpineOfPolygon(&polygon, pruned.get(), 9).empty());
    skeleton->prunedByLength(1);
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    mezalith::platform::setLogSink([](std::string_view) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace mezalith;
    if (size < 2) return 0;
    const auto rest = std::span(data, size).subspan(2);
    Points points = data[0] % 2 == 0 ? pointsOfGrid(rest) : pointsOfDoubles(rest);
    auto rings = ringsOfPoints(points, 1 + data[1]);
    for (const MzLinearRing& ring : rings) askSettled(ring);
    askSkeleton({static_cast<std::uint32_t>(rings.size()), rings.data()});
    return 0;
}
