// SPDX-License-Identifier: MIT
#include <mezalith/projection/geodesic_geometry.hpp>
#include <mezalith/projection/great_circle.hpp>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::size_t largestBlock = std::numeric_limits<std::size_t>::max();

/// While one lives, memory ends at a gigabyte, whatever the machine has.
class ShortOfMemory {
  public:
    ShortOfMemory() { largestBlock = std::size_t{1} << 30; }
    ~ShortOfMemory() { largestBlock = std::numeric_limits<std::size_t>::max(); }
    ShortOfMemory(const ShortOfMemory&) = delete;
    ShortOfMemory& operator=(const ShortOfMemory&) = delete;
};

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const block = size <= largestBlock ? std::malloc(size) : nullptr;
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

namespace mezalith {
namespace {

constexpr MzPoint oslo{10.75, 59.91}, tokyo{139.69, 35.69};
constexpr MzPoint auckland{174.76, -36.85}, santiago{-70.65, -33.45};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

double distance(MzPoint a, MzPoint b) { return MzEarthDistance(a.x, a.y, b.x, b.y); }

std::span<MzPoint> line(MzPoint start, MzPoint end, double resolution) {
    static std::shared_ptr<MzGeodesicGeometry> last;
    last = MzGeodesicGeometry::initWithStart(start, end, resolution);
    return pointsOf(last->multiPointGeometry());
}

/// How many points a line gets whose length is `ratio` times its resolution.
std::size_t countForRatio(double ratio) {
    return line(oslo, tokyo, distance(oslo, tokyo) / ratio).size();
}

// --- how many points ------------------------------------------------------

TEST(GeodesicGeometry, HasTwoPointsFromAPointToItself) {
    const auto points = line(oslo, oslo, 1000);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_TRUE(MzEqualPoints(points[0], oslo));
    EXPECT_TRUE(MzEqualPoints(points[1], oslo));
}

TEST(GeodesicGeometry, HasTwoPointsUpToTwiceTheResolution) {
    EXPECT_EQ(countForRatio(0.5), 2u);
    EXPECT_EQ(countForRatio(1), 2u);
    EXPECT_EQ(countForRatio(1.5), 2u);
    EXPECT_EQ(countForRatio(2), 2u);
    EXPECT_EQ(countForRatio(2.99), 2u);
}

TEST(GeodesicGeometry, HasFivePointsAtFiveTimesTheResolution) { EXPECT_EQ(countForRatio(5), 5u); }

TEST(GeodesicGeometry, DoublesItsSegmentsWithTheRatioLessOne) {
    EXPECT_EQ(countForRatio(3.01), 3u);
    EXPECT_EQ(countForRatio(4.99), 3u);
    EXPECT_EQ(countForRatio(8.99), 5u);
    EXPECT_EQ(countForRatio(9.01), 9u);
    EXPECT_EQ(countForRatio(1025.01), 1025u);
}

TEST(GeodesicGeometry, CountsTheExponentModulo32) {
    EXPECT_EQ(countForRatio(std::ldexp(1.5, 32)), 2u);
    EXPECT_EQ(countForRatio(std::ldexp(1.5, 34)), 5u);
}

TEST(GeodesicGeometry, HasTwoPointsForAResolutionThatIsNone) {
    for (const double resolution : {nan, 0.0, -0.0, -1000.0, infinity, -infinity}) {
        EXPECT_EQ(line(oslo, tokyo, resolution).size(), 2u) << resolution;
    }
    EXPECT_EQ(line({nan, 0}, tokyo, 1000).size(), 2u);
}

TEST(GeodesicGeometry, IsNullWithoutMemory) {
    const ShortOfMemory shortOfMemory;
    const double resolution = distance(oslo, tokyo) / std::ldexp(1.5, 31);
    EXPECT_EQ(MzGeodesicGeometry::initWithStart(oslo, tokyo, resolution), nullptr);
}

// --- where they are -------------------------------------------------------

TEST(GeodesicGeometry, RunsFromStartToEndThroughTheMidpoint) {
    const auto points = line(oslo, tokyo, 10'000);
    ASSERT_EQ(points.size(), 513u);
    EXPECT_TRUE(MzEqualPoints(points.front(), oslo));
    EXPECT_TRUE(MzEqualPoints(points.back(), tokyo));
    const MzPoint middle = MzGeodesicMidpoint(oslo.x, oslo.y, tokyo.x, tokyo.y);
    EXPECT_TRUE(MzEqualPoints(points[256], middle));
    EXPECT_TRUE(MzEqualPoints(points[128], MzGeodesicMidpoint(oslo.x, oslo.y, middle.x, middle.y)));
    EXPECT_TRUE(
        MzEqualPoints(points[384], MzGeodesicMidpoint(middle.x, middle.y, tokyo.x, tokyo.y)));
}

TEST(GeodesicGeometry, SpacesItsPointsEqually) {
    for (const auto& [start, end] : {std::pair{oslo, tokyo}, {auckland, santiago}, {tokyo, oslo}}) {
        const auto points = line(start, end, 20'000);
        const double spacing = distance(start, end) / static_cast<double>(points.size() - 1);
        EXPECT_LT(spacing, 3 * 20'000);
        for (std::size_t i = 1; i < points.size(); ++i) {
            ASSERT_NEAR(distance(points[i - 1], points[i]), spacing, 1e-6) << i;
        }
    }
}

TEST(GeodesicGeometry, RunsOnBeyondThe180thMeridian) {
    const auto points = line(auckland, santiago, 50'000);
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        ASSERT_GT(points[i].x, points[i - 1].x) << i;
    }
    EXPECT_GT(points[points.size() - 2].x, 280);
    EXPECT_EQ(points.back().x, santiago.x);
}

TEST(GeodesicGeometry, IsAMultiPointInOneBlock) {
    const auto geometry = MzGeodesicGeometry::initWithStart(oslo, tokyo, 1e6);
    const MzMultiPoint* const record = geometry->multiPointGeometry();
    ASSERT_EQ(record->count, 5u);
    EXPECT_EQ(geometry->geometryType(), 4u);
    EXPECT_EQ(geometry->geometryData().size(), 16u + 5u * 16u);
    EXPECT_EQ(static_cast<const void*>(geometry->geometryData().data()), record);
    EXPECT_EQ(static_cast<const void*>(record + 1), record->points);
    EXPECT_EQ(geometry->wkbData()->size(), 9u + 5u * 21u);
    const auto projected =
        geometry->geometryWithProjection(MzMapProjection::mapProjectionWithUTMZone(33));
    ASSERT_NE(projected, nullptr);
    EXPECT_NE(dynamic_cast<MzGeodesicGeometry*>(projected.get()), nullptr);
}

// --- filling records ------------------------------------------------------

std::vector<MzPoint> filled(std::uint64_t low, std::uint64_t high, std::uint32_t count) {
    std::vector<MzPoint> points(9, MzPoint{-7, -7});
    points[0] = oslo;
    points[6] = tokyo;
    MzMultiPoint record{count, points.data()};
    MzRecursiveGeodesic(low, high, &record);
    return points;
}

TEST(RecursiveGeodesic, FillsStrictlyBetweenTheIndices) {
    const std::vector<MzPoint> points = filled(0, 6, 9);
    const auto middle = [](MzPoint a, MzPoint b) { return MzGeodesicMidpoint(a.x, a.y, b.x, b.y); };
    EXPECT_TRUE(MzEqualPoints(points[0], oslo));
    EXPECT_TRUE(MzEqualPoints(points[6], tokyo));
    EXPECT_TRUE(MzEqualPoints(points[3], middle(oslo, tokyo)));
    EXPECT_TRUE(MzEqualPoints(points[1], middle(oslo, points[3])));
    EXPECT_TRUE(MzEqualPoints(points[2], middle(points[1], points[3])));
    EXPECT_TRUE(MzEqualPoints(points[4], middle(points[3], tokyo)));
    EXPECT_TRUE(MzEqualPoints(points[5], middle(points[4], tokyo)));
    EXPECT_EQ(points[7].x, -7.0);
}

TEST(RecursiveGeodesic, DoesNothingWithoutPointsBetween) {
    for (const auto& [low, high] : {std::pair<std::uint64_t, std::uint64_t>{0, 0},
                                    {0, 1},
                                    {6, 0},
                                    {5, 4},
                                    {~std::uint64_t{0}, 6}}) {
        const std::vector<MzPoint> points = filled(low, high, 9);
        for (const std::size_t i : {1u, 2u, 3u, 4u, 5u}) EXPECT_EQ(points[i].x, -7.0) << low;
    }
}

TEST(RecursiveGeodesic, StaysWithinTheRecord) {
    EXPECT_EQ(filled(0, 6, 6)[3].x, -7.0);
    EXPECT_NE(filled(0, 6, 7)[3].x, -7.0);
    MzRecursiveGeodesic(0, 6, nullptr);
    MzMultiPoint withoutArray{9, nullptr};
    MzRecursiveGeodesic(0, 6, &withoutArray);
}

}  // namespace
}  // namespace mezalith
