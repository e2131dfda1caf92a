// SPDX-License-Identifier: MIT
#include <mezalith/clipping/exact_clipping.hpp>
#include <mezalith/clipping/test_support.hpp>

#include <algorithm>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace clipping_test;

MzClippingRegion exactly(MzRect rect, double minSpacing = 0) {
    MzClippingRegion region = regionOf(rect, minSpacing);
    region.setExact(true);
    return region;
}

Points clipTen(Kind kind, const Points& source) { return clip(kind, source, exactly(tenByTen)); }

Points reversed(Points points) {
    std::ranges::reverse(points);
    return points;
}

// --- independent answers --------------------------------------------------

int windingAround(const Points& ring, MzPoint point) {
    int winding = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint p = ring[i], q = ring[(i + 1) % ring.size()];
        if ((p.y > point.y) == (q.y > point.y)) continue;
        const double left = (q.x - p.x) * (point.y - p.y) - (q.y - p.y) * (point.x - p.x);
        if (q.y > p.y && left > 0) ++winding;
        if (q.y < p.y && left < 0) --winding;
    }
    return winding;
}

bool onBorder(MzPoint p, MzPoint q, const MzClippingRegion& region) {
    const MzPoint low = region.bounds()[0], high = region.bounds()[2];
    const auto both = [](double a, double b, double side) { return a == side && b == side; };
    return both(p.x, q.x, low.x) || both(p.x, q.x, high.x) || both(p.y, q.y, low.y) ||
           both(p.y, q.y, high.y);
}

/// The length of what of a line lies between the borders, not on them.
double lengthWithin(const Points& line, const MzClippingRegion& region) {
    double length = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const MzPoint p = line[i - 1], q = line[i];
        if (onBorder(p, q, region)) continue;
        double enter = 0, end = 1;
        const MzPoint low = region.bounds()[0], high = region.bounds()[2];
        for (const auto& [slope, room] : {std::pair{p.x - q.x, p.x - low.x},
                                          {q.x - p.x, high.x - p.x},
                                          {p.y - q.y, p.y - low.y},
                                          {q.y - p.y, high.y - p.y}}) {
            if (slope == 0 && room < 0) end = -1;
            if (slope < 0) enter = std::max(enter, room / slope);
            if (slope > 0) end = std::min(end, room / slope);
        }
        length += std::max(0.0, end - enter) * std::hypot(q.x - p.x, q.y - p.y);
    }
    return length;
}

Points thinned(const Points& source, double spacing) {
    Points kept{source.front()};
    for (std::size_t i = 1; i < source.size(); ++i) {
        const MzPoint p = kept.back(), q = source[i];
        const bool near = std::abs(p.x - q.x) + std::abs(p.y - q.y) < spacing;
        if (!near || i + 1 == source.size()) kept.push_back(q);
    }
    return kept;
}

// --- lines ----------------------------------------------------------------

TEST(ExactLine, PassesThroughInTheDirectionOfTravel) {
    EXPECT_EQ(difference(clipTen(Kind::line, {{-5, 5}, {15, 5}}), Points{{0, 5}, {10, 5}}), "");
    EXPECT_EQ(difference(clipTen(Kind::line, {{15, 5}, {-5, 5}}), Points{{10, 5}, {0, 5}}), "");
    EXPECT_EQ(difference(clipTen(Kind::line, {{-2, 9}, {1, 12}}), Points{}), "");
    EXPECT_EQ(difference(clipTen(Kind::line, {{-2, 6}, {6, 14}}), Points{{0, 8}, {2, 10}}), "");
}

TEST(ExactLine, MissesTheRegionOnEitherSideFromCornerToCorner) {
    for (const Points& line : {Points{{-1, -1}, {11, 200}},
                               {{-1, -1}, {200, 11}},
                               {{11, -1}, {-200, 11}},
                               {{11, -1}, {-1, 200}}}) {
        EXPECT_EQ(difference(clipTen(Kind::line, line), Points{}), "");
        EXPECT_EQ(difference(clipTen(Kind::line, reversed(line)), Points{}), "");
    }
}

TEST(ExactLine, PassesAlongTheBorder) {
    for (const double side : {0, 10}) {
        EXPECT_EQ(difference(clipTen(Kind::line, {{side, -5}, {side, 15}}),
                             Points{{side, 0}, {side, 10}}),
                  "");
        EXPECT_EQ(difference(clipTen(Kind::line, {{15, side}, {-5, side}}),
                             Points{{10, side}, {0, side}}),
                  "");
    }
}

TEST(ExactLine, CrossesTheBorderWithTheDigitsOfItsNearerEnd) {
    const Points fromAfar = clipTen(Kind::line, {{1e12, 1e12 / 3}, {5, 5}});
    ASSERT_EQ(fromAfar.size(), 2u);
    EXPECT_NEAR(fromAfar[0].y, 5 + 5.0 / 3, 1e-10);
    EXPECT_EQ(
        difference(clipTen(Kind::line, {{-1.5e308, 5}, {1.5e308, 5}}), Points{{0, 5}, {10, 5}}),
        "");
}

TEST(ExactLine, JoinsAnExitToTheNextEntryThroughTheCornersBetween) {
    EXPECT_EQ(difference(clipTen(Kind::line, {{5, 5}, {15, 5}, {15, 15}, {5, 15}, {5, 6}}),
                         Points{{5, 5}, {10, 5}, {10, 10}, {5, 10}, {5, 6}}),
              "");
    EXPECT_EQ(
        difference(clipTen(Kind::line, {{5, 5}, {15, 5}, {15, 15}, {-5, 15}, {-5, 6}, {4, 6}}),
                   Points{{5, 5}, {10, 5}, {10, 10}, {0, 10}, {0, 6}, {4, 6}}),
        "");
    EXPECT_EQ(difference(clipTen(Kind::line, {{5, 5}, {15, 5}, {15, 15}, {15, 7}, {5, 7}}),
                         Points{{5, 5}, {10, 5}, {10, 7}, {5, 7}}),
              "");
}

TEST(ExactLine, HasNothingOfTheBorderBeforeAndBehind) {
    EXPECT_EQ(difference(clipTen(Kind::line, {{15, -5}, {15, 5}, {5, 5}, {5, 15}, {-5, 15}}),
                         Points{{10, 5}, {5, 5}, {5, 10}}),
              "");
    EXPECT_EQ(difference(clipTen(Kind::line, {{-5, -5}, {15, -5}, {15, 15}}), Points{}), "");
}

TEST(ExactLine, KeepsAnEndThatTouchesACorner) {
    const Points touching{{-5, 5}, {0, 10}, {5, 5}};
    EXPECT_EQ(difference(clip(Kind::line, touching, regionOf(tenByTen)), Points{{5, 5}}), "");
    EXPECT_EQ(difference(clipTen(Kind::line, touching), Points{{0, 10}, {5, 5}}), "");
}

TEST(ExactLine, KeepsItsLastPointHoweverNear) {
    const Points line{{1, 1}, {1.4, 1}, {3, 1}, {3.2, 1}};
    EXPECT_EQ(
        difference(clip(Kind::line, line, exactly(tenByTen, 1)), Points{{1, 1}, {3, 1}, {3.2, 1}}),
        "");
}

TEST(ExactLine, PassesOverWhatIsNotFinite) {
    const Points line{{nan, 1},         {1, 1},  {2, infinity}, {2, 2},
                      {-infinity, nan}, {15, 2}, {nan, nan}};
    EXPECT_EQ(difference(clipTen(Kind::line, line), Points{{1, 1}, {2, 2}, {10, 2}}), "");
    EXPECT_EQ(difference(clipTen(Kind::line, {{nan, nan}, {infinity, 0}}), Points{}), "");
}

// --- rings ----------------------------------------------------------------

TEST(ExactRing, FillsTheRegionFromARingAroundItAsOftenAsItWinds) {
    const Points ring{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, -5}};
    const Points box{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};
    EXPECT_EQ(difference(clipTen(Kind::ring, ring), box), "");
    EXPECT_EQ(difference(clipTen(Kind::ring, reversed(ring)), reversed(box)), "");
    Points twice = ring;
    twice.insert(twice.end(), ring.begin() + 1, ring.end());
    EXPECT_EQ(areaOf(clipTen(Kind::ring, twice)), 200);
}

TEST(ExactRing, IsClosed) {
    const Points square{{15, 5}, {15, 15}, {5, 15}, {5, 5}, {15, 5}};
    EXPECT_EQ(difference(clipTen(Kind::ring, square),
                         Points{{5, 10}, {5, 5}, {10, 5}, {10, 10}, {5, 10}}),
              "");
    const Points open{{1, 1}, {9, 1}, {5, 9}};
    EXPECT_EQ(difference(clipTen(Kind::ring, open), Points{{1, 1}, {9, 1}, {5, 9}, {1, 1}}), "");
}

TEST(ExactRing, IsNothingWhereTheRingIsOnlyBeside) {
    EXPECT_EQ(difference(clipTen(Kind::ring, {{20, 1}, {30, 1}, {30, 9}, {20, 1}}), Points{}), "");
    const Points bay{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, 12},
                     {12, 12}, {12, -2}, {-5, -2}, {-5, -5}};
    EXPECT_FALSE(clip(Kind::ring, bay, regionOf(tenByTen)).empty());
    EXPECT_EQ(difference(clipTen(Kind::ring, bay), Points{}), "");
}

/// A band across the region: the settled clipper turns both crossings of each side around, so that
/// the outline crosses itself.
TEST(ExactRing, HasTheTrueAreaWhereTheSettledOneCrossesItself) {
    const Points band{{-5, 2}, {15, 4}, {15, 8}, {-5, 6}, {-5, 2}};
    const Points settled = clip(Kind::ring, band, regionOf(tenByTen));
    EXPECT_EQ(difference(settled, Points{{10, 3.5}, {0, 2.5}, {10, 7.5}, {0, 6.5}}), "");
    EXPECT_EQ(areaOf(settled), 0);
    EXPECT_EQ(areaOf(clipTen(Kind::ring, band)), 40);
}

TEST(ExactRing, PassesOverWhatIsNotFinite) {
    const Points ring{{nan, 0}, {1, 1},  {nan, nan}, {9, 1}, {infinity, -infinity},
                      {5, 9},   {0, nan}};
    EXPECT_EQ(difference(clipTen(Kind::ring, ring), Points{{1, 1}, {9, 1}, {5, 9}, {1, 1}}), "");
}

TEST(ExactRing, KeepsAPointThatLiesAlone) {
    EXPECT_EQ(difference(clipTen(Kind::ring, {{3, 4}}), Points{{3, 4}}), "");
    EXPECT_EQ(difference(clipTen(Kind::ring, {{13, 4}}), Points{}), "");
}

// --- points ---------------------------------------------------------------

TEST(ExactPoints, AreSpacedFromThoseKept) {
    const Points source{{-0.1, 5}, {0.1, 5}, {0.3, 5}, {nan, 5}, {5, nan}, {infinity, 1}, {2, 5}};
    EXPECT_EQ(
        difference(clip(Kind::points, source, exactly(tenByTen, 1)), Points{{0.1, 5}, {2, 5}}), "");
    EXPECT_EQ(difference(clip(Kind::points, source, exactly(tenByTen)),
                         Points{{0.1, 5}, {0.3, 5}, {2, 5}}),
              "");
}

TEST(ExactClipping, HasNothingInARegionWithoutAnInside) {
    const Points source{{-5, -5}, {5, 5}, {15, -5}, {-5, -5}};
    for (const MzRect rect : {MzRect{{10, 0}, {-10, 10}}, MzRect{{0, 10}, {10, -10}},
                              MzRect{{nan, 0}, {10, 10}}, MzRect{{0, 0}, {10, nan}}}) {
        for (const Kind kind : allKinds) {
            EXPECT_EQ(difference(clip(kind, source, exactly(rect)), Points{}), "");
        }
    }
}

TEST(ExactClipping, IsForRegionsThatAskForIt) {
    EXPECT_FALSE(MzClippingRegion().exact());
    EXPECT_FALSE(MzClippingRegion::initWithDrawContext(nullptr)->exact());
    EXPECT_TRUE(exactly(tenByTen).exact());
}

TEST(ExactClipping, MapsWhatItKeepsToPixels) {
    MzClippingRegion region = exactly(tenByTen);
    region.transform()->scaleXBy(2, 3);
    EXPECT_EQ(difference(clip(Kind::line, {{-5, 5}, {5, 5}}, region), Points{{0, 15}, {10, 15}}),
              "");
}

// --- laws -----------------------------------------------------------------

/// Rings and lines on a grid, where much falls on corners and sides, and anywhere.
class ExactLaws : public testing::Test {
  protected:
    /// Calls `law(source, region, what to say when it is broken)`.
    template <typename Law>
    void forRandom(int rounds, const Law& law) {
        Cases cases;
        const auto onGrid = [&cases] { return cases.gridPoint(); };
        const auto anywhere = [&cases] { return cases.anyPoint(); };
        for (int round = 0; round < rounds; ++round) {
            const Points source = round % 2 == 0 ? cases.points(onGrid) : cases.points(anywhere);
            const MzPoint a = cases.gridPoint(), b = cases.anyPoint();
            const MzRect rect{{std::min(a.x, b.x), std::min(a.y, b.y)},
                              {std::ceil(std::abs(a.x - b.x)), std::ceil(std::abs(a.y - b.y))}};
            const std::string context =
                "seed " + std::to_string(seed) + " round " + std::to_string(round);
            ASSERT_NO_FATAL_FAILURE(law(source, exactly(rect), context)) << text(source);
        }
    }
};

constexpr double kTolerance = 1e-10;  // for coordinates below 20

TEST_F(ExactLaws, ARingHasTheAreaThatSutherlandAndHodgmanCut) {
    forRandom(100'000, [](const Points& ring, const MzClippingRegion& region, const auto& context) {
        const double area = areaOf(clip(Kind::ring, ring, region));
        ASSERT_NEAR(area, areaOf(cutBySides(ring, region)), kTolerance) << context;
        ASSERT_NEAR(areaOf(clip(Kind::ring, reversed(ring), region)), -area, kTolerance) << context;
    });
}

TEST_F(ExactLaws, ARingWindsAroundInnerPointsAsItsSourceDoes) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> share{0.001, 0.999};
    forRandom(20'000, [&](const Points& ring, const MzClippingRegion& region, const auto& context) {
        const MzRect rect = region.clippingRect();
        const Points clipped = clip(Kind::ring, ring, region);
        const MzPoint point{rect.origin.x + share(random) * rect.size.width,
                            rect.origin.y + share(random) * rect.size.height};
        if (MzIsEmptyRect(rect)) return;
        ASSERT_EQ(windingAround(clipped, point), windingAround(ring, point)) << context;
    });
}

TEST_F(ExactLaws, NothingLiesOutsideAndRingsAreClosed) {
    forRandom(50'000,
              [](const Points& source, const MzClippingRegion& region, const auto& context) {
                  for (const Kind kind : allKinds) {
                      const Points clipped = clip(kind, source, region);
                      for (const MzPoint p : clipped)
                          ASSERT_EQ(MzRegionCode(p, &region), 0) << context;
                      if (kind != Kind::ring || clipped.empty()) continue;
                      ASSERT_TRUE(MzEqualPoints(clipped.front(), clipped.back())) << context;
                  }
              });
}

TEST_F(ExactLaws, ALineIsAsLongInsideAsItsSource) {
    forRandom(50'000, [](const Points& line, const MzClippingRegion& region, const auto& context) {
        ASSERT_NEAR(lengthWithin(clip(Kind::line, line, region), region),
                    lengthWithin(line, region), kTolerance)
            << context;
    });
}

TEST_F(ExactLaws, WhatIsInsideStaysAsItIs) {
    forRandom(5'000, [](const Points& source, const MzClippingRegion&, const auto& context) {
        const MzClippingRegion wide = exactly({{-10, -10}, {20, 20}});
        Points ring = source;
        if (!MzEqualPoints(ring.front(), ring.back())) ring.push_back(ring.front());
        ASSERT_TRUE(sameBits(clip(Kind::ring, source, wide), ring)) << context;
        ASSERT_TRUE(sameBits(clip(Kind::line, source, wide), source)) << context;
        ASSERT_TRUE(sameBits(clip(Kind::points, source, wide), source)) << context;
    });
}

TEST_F(ExactLaws, NoInnerPointIsDropped) {
    forRandom(
        20'000, [](const Points& source, const MzClippingRegion& region, const auto& context) {
            for (const Kind kind : allKinds) {
                const Points clipped = clip(kind, source, region);
                auto from = clipped.begin();
                for (const MzPoint p : source) {
                    if (MzRegionCode(p, &region) != 0) continue;
                    from = std::find_if(from, clipped.end(),
                                        [p](MzPoint q) { return MzEqualPoints(p, q); });
                    ASSERT_NE(from, clipped.end()) << context << " kind " << static_cast<int>(kind);
                }
            }
        });
}

TEST_F(ExactLaws, SpacingThinsTheSourceAndChangesNothingElse) {
    forRandom(20'000, [](const Points& source, MzClippingRegion region, const auto& context) {
        const Points lineSource = thinned(source, 2);
        Points ringSource = lineSource;
        const Points ring = clip(Kind::ring, ringSource, region);
        const Points line = clip(Kind::line, lineSource, region);
        region.setMinSpacing(2);
        ASSERT_EQ(difference(clip(Kind::line, source, region), line), "") << context;
        ASSERT_EQ(difference(clip(Kind::ring, source, region), ring), "") << context;
    });
}

TEST(ExactLawsForOddNumbers, NothingLiesOutsideAndRoomSuffices) {
    Cases cases;
    const auto odd = [&cases] { return cases.oddPoint(); };
    for (int round = 0; round < 60'000; ++round) {
        MzClippingRegion region = cases.region(odd);
        region.setExact(true);
        region.setTransform(MzAffineTransform::transform());
        const Points source = cases.points(odd);
        for (const Kind kind : allKinds) {
            for (const MzPoint p : clip(kind, source, region)) {
                ASSERT_EQ(MzRegionCode(p, &region), 0) << "seed " << seed << ", round " << round;
                ASSERT_FALSE(std::isnan(p.x + p.y)) << "seed " << seed << ", round " << round;
            }
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", round " << round;
    }
}

/// A line that goes to and fro across the middles of the upper and the lower side and comes back
/// around a corner each time: two crossings and a corner for each segment, but none before the
/// first.
TEST(ExactCapacity, IsReachedButForOne) {
    constexpr double kHigh = 105;
    Points line;
    double x = 100;
    for (int i = 0; i < 20; ++i) {
        const double sign = i % 2 == 0 ? 1 : -1;
        line.push_back({5 + sign * x, 5 + sign * kHigh});
        x *= (kHigh + 5) / (kHigh - 5);
    }
    EXPECT_EQ(clipTen(Kind::line, line).size(), MzClippedLineStringCapacity(20) - 1);
}

}  // namespace
}  // namespace mezalith
