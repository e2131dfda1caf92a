// SPDX-License-Identifier: MIT
#include <mezalith/projection/geodesic_geometry.hpp>
#include <mezalith/projection/great_circle.hpp>

#include <cmath>
#include <new>

namespace mezalith {
namespace {

constexpr double naturalLogarithmOf2 = 0.6931471805599453;

/// 2 to the power floor(log2(ratio - 1)), its exponent counted modulo 32.
std::uint32_t numberOfSegments(double ratio) {
    const double logarithm = std::log(ratio - 1) / naturalLogarithmOf2;
    if (!std::isfinite(logarithm) || logarithm < 1) return 1;
    return std::uint32_t{1} << (static_cast<std::uint32_t>(std::floor(logarithm)) % 32);
}

void bisect(std::uint64_t low, std::uint64_t high, MzPoint* points) {
    while (high - low >= 2) {
        const std::uint64_t middle = low + (high - low) / 2;
        points[middle] =
            MzGeodesicMidpoint(points[low].x, points[low].y, points[high].x, points[high].y);
        bisect(low, middle, points);
        low = middle;
    }
}

}  // namespace

std::shared_ptr<MzGeodesicGeometry> MzGeodesicGeometry::initWithStart(MzPoint start, MzPoint end,
                                                                      double resolution) try {
    const double distance = MzEarthDistance(start.x, start.y, end.x, end.y);
    const std::uint32_t segments = numberOfSegments(distance / resolution);
    const std::size_t count = std::size_t{segments} + 1;
    auto geometry =
        madeWithCapacity<MzGeodesicGeometry>(sizeof(MzMultiPoint) + count * sizeof(MzPoint));
    MzMultiPoint* const record = geometry->multiPointGeometry();
    record->count = segments + 1;
    record->points[0] = start;
    record->points[segments] = end;
    bisect(0, segments, record->points);
    return geometry;
} catch (const std::bad_alloc&) {
    return nullptr;
}

std::shared_ptr<MzMultiPointGeometry> MzGeodesicGeometry::newInstance() const {
    return std::make_shared<MzGeodesicGeometry>();
}

void MzRecursiveGeodesic(std::uint64_t low, std::uint64_t high, MzMultiPoint* multiPoint) {
    if (multiPoint == nullptr || multiPoint->points == nullptr) return;
    if (low < high && high < multiPoint->count) bisect(low, high, multiPoint->points);
}

}  // namespace mezalith
