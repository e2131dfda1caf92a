// SPDX-License-Identifier: MIT
#include <mezalith/clipping/outcode_clipping.hpp>
#include <mezalith/clipping/test_support.hpp>

#include <cmath>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace clipping_test;

// --- a plain transcription to compare with --------------------------------

constexpr int edgeTableA[]{-1, 0, 0, 1, 1, -1, 0, 2, 2, 0, -1, 1, 1, 0, 0, -1};
constexpr int edgeTableB[]{-1, 3, 1, 3, 2, -1, 2, 3, 3, 2, -1, 2, 3, 1, 3, -1};
constexpr int maskTable[]{-1, 1, 1, 4, 4, -1, 1, 2, 2, 1, -1, 4, 4, 1, 1, -1};

struct Reference {
    const MzClippingRegion& region;
    Points out;

    void append(MzPoint p) { out.push_back(region.transform()->transformPoint(p)); }

    void corner(int code) {
        for (const auto& [corner, itsCode] : {std::pair{0u, 9}, {1u, 5}, {2u, 6}, {3u, 10}}) {
            if (code == itsCode) append(region.bounds()[corner]);
        }
    }

    static MzProjectiveLine lineOf(MzPoint p, MzPoint q) {
        return {q.y - p.y, p.x - q.x, p.y * q.x - q.y * p.x};
    }

    unsigned mask(MzPoint p, MzPoint q) const {
        const auto [a, b, c] = lineOf(p, q);
        unsigned m = 0;
        for (unsigned k = 0; k < 4; ++k) {
            const MzPoint corner = region.bounds()[k];
            if (a * corner.x + b * corner.y + c >= 0) m += 1u << k;
        }
        return m;
    }

    void cross(MzPoint p, MzPoint q, int edge) {
        const auto [a, b, c] = lineOf(p, q);
        const auto [ae, be, ce] = region.edges()[static_cast<unsigned>(edge)];
        const double d = a * be - b * ae;
        append({(b * ce - c * be) / d, (c * ae - a * ce) / d});
    }

    void line(MzPoint p, MzPoint q, int cp, int cq) {
        if (cp == 0 && cq == 0) return append(q);
        if ((cp & cq) != 0) return;
        const unsigned m = mask(p, q);
        const int A = edgeTableA[m], B = edgeTableB[m];
        if (A < 0) return;
        if (cp == 0) {
            cross(p, q, (cq & maskTable[m]) != 0 ? A : B);
        } else if (cq == 0) {
            cross(p, q, (cp & maskTable[m]) != 0 ? A : B);
            append(q);
        } else {
            cross(p, q, A);
            cross(p, q, B);
        }
    }

    void ringAround(unsigned m, int cp, int cq) {
        if (m == 15) {
            if ((cp & 8) != 0) corner(10);
            if ((cp & 4) != 0) corner(5);
            if ((cq & 4) != 0) corner(6);
            if ((cq & 8) != 0) corner(9);
        } else if (m == 0) {
            if ((cp & 8) != 0) corner(9);
            if ((cp & 4) != 0) corner(6);
            if ((cq & 4) != 0) corner(5);
            if ((cq & 8) != 0) corner(10);
        }
    }

    void ring(MzPoint p, MzPoint q, int cp, int cq) {
        if (cp == 0 && cq == 0) return append(q);
        if ((cp & cq) != 0) {
            if (cp == cq || (cp & cq & 8) != 0 || (cp & cq & 4) != 0) return;
            corner(cp);
            corner(cq);
            return;
        }
        const unsigned m = mask(p, q);
        const int A = edgeTableA[m], B = edgeTableB[m];
        if (A < 0) return ringAround(m, cp, cq);
        if (cp == 0) {
            const int E = (cq & maskTable[m]) != 0 ? A : B;
            cross(p, q, E);
            if (E == 0 || E == 2) corner(cq);
        } else if (cq == 0) {
            const int E = (cp & maskTable[m]) != 0 ? A : B;
            if (E == 0 || E == 2) corner(cp);
            cross(p, q, E);
            append(q);
        } else {
            const bool odd = (A + B) % 2 == 1;
            if (odd) corner(cp);
            cross(p, q, A);
            cross(p, q, B);
            if (odd) corner(cq);
        }
    }

    void run(Kind kind, const Points& source) {
        MzPoint p = source[0];
        int cp = MzRegionCode(p, &region);
        if (cp == 0) append(p);
        for (std::size_t i = 1; i < source.size(); ++i) {
            const MzPoint q = source[i];
            if (std::fabs(p.y - q.y) + std::fabs(p.x - q.x) < region.minSpacing()) continue;
            const int cq = MzRegionCode(q, &region);
            if (kind == Kind::points && cq == 0) append(q);
            if (kind == Kind::line) line(p, q, cp, cq);
            if (kind == Kind::ring) ring(p, q, cp, cq);
            p = q;
            cp = cq;
        }
    }
};

void expectSameAsReference(const Points& source, const MzClippingRegion& region, int round) {
    for (const Kind kind : allKinds) {
        Reference reference{region, {}};
        reference.run(kind, source);
        const Points clipped = clip(kind, source, region);
        ASSERT_TRUE(sameBits(clipped, reference.out))
            << "seed " << seed << ", round " << round << ", kind " << static_cast<int>(kind)
            << "\nsource " << text(source) << "\ngot    " << text(clipped) << "\nnot    "
            << text(reference.out);
    }
}

// --- thinning and points --------------------------------------------------

TEST(OutcodeClipping, DropsPointsCloserThanTheMinimumSpacing) {
    const MzClippingRegion region = regionOf(tenByTen, 1);
    const Points source{{0, 0}, {0.3, 0.3}, {2, 0}};
    for (const Kind kind : allKinds) {
        EXPECT_EQ(difference(clip(kind, source, region), Points{{0, 0}, {2, 0}}), "");
    }
}

TEST(OutcodeClipping, MeasuresTheSpacingFromTheLastPointKept) {
    const MzClippingRegion region = regionOf(tenByTen, 1);
    const Points source{{0, 0}, {0.6, 0}, {1.2, 0}, {1.8, 0}, {2.2, 0}};
    for (const Kind kind : allKinds) {
        EXPECT_EQ(difference(clip(kind, source, region), Points{{0, 0}, {1.2, 0}, {2.2, 0}}), "");
    }
}

TEST(OutcodeClipping, KeepsThePointsInside) {
    const Points source{{-1, 5}, {5, 5}, {10, 10}, {10.5, 3}, {0, 0}, {3, -0.5}};
    EXPECT_EQ(difference(clip(Kind::points, source, regionOf(tenByTen)),
                         Points{{5, 5}, {10, 10}, {0, 0}}),
              "");
}

TEST(OutcodeClipping, MapsWhatItKeepsToPixels) {
    MzClippingRegion region = regionOf(tenByTen);
    const auto transform = MzAffineTransform::transform();
    transform->translateXBy(100, 200);
    transform->scaleXBy(2, 3);
    region.setTransform(transform);
    EXPECT_EQ(
        difference(clip(Kind::line, {{5, 5}, {15, 5}}, region), Points{{110, 215}, {120, 215}}),
        "");
}

// --- line strings ---------------------------------------------------------

TEST(ClipLineString, CutsWhereItLeaves) {
    EXPECT_EQ(difference(clip(Kind::line, {{5, 5}, {15, 5}}, regionOf(tenByTen)),
                         Points{{5, 5}, {10, 5}}),
              "");
}

TEST(ClipLineString, StartsWhereItEnters) {
    EXPECT_EQ(
        difference(clip(Kind::line, {{-5, 5}, {5, 5}}, regionOf(tenByTen)), Points{{0, 5}, {5, 5}}),
        "");
}

TEST(ClipLineString, GivesNothingBeyondOneSide) {
    EXPECT_EQ(
        difference(clip(Kind::line, {{-5, 5}, {-5, 15}, {-1, 20}}, regionOf(tenByTen)), Points{}),
        "");
    EXPECT_EQ(difference(clip(Kind::line, {{12, -5}, {20, 15}}, regionOf(tenByTen)), Points{}), "");
}

TEST(ClipLineString, PassesThroughInTheOrderOfTheTables) {
    EXPECT_EQ(difference(clip(Kind::line, {{-5, 5}, {15, 5}}, regionOf(tenByTen)),
                         Points{{10, 5}, {0, 5}}),
              "");
    EXPECT_EQ(difference(clip(Kind::line, {{15, 5}, {-5, 5}}, regionOf(tenByTen)),
                         Points{{10, 5}, {0, 5}}),
              "");
}

TEST(ClipLineString, JoinsAnExitAndTheNextEntry) {
    EXPECT_EQ(difference(clip(Kind::line, {{5, 5}, {15, 5}, {15, 8}, {5, 8}}, regionOf(tenByTen)),
                         Points{{5, 5}, {10, 5}, {10, 8}, {5, 8}}),
              "");
}

TEST(ClipLineString, MissesARegionBetweenItsCorners) {
    EXPECT_EQ(difference(clip(Kind::line, {{-5, 8}, {8, 25}}, regionOf(tenByTen)), Points{}), "");
}

TEST(ClipLineString, TakesMultiPoints) {
    const MzClippingRegion region = regionOf(tenByTen);
    Points source{{5, 5}, {15, 5}};
    const MzMultiPoint from{2, source.data()};
    Points room(2);
    MzMultiPoint points{0, room.data()};
    MzClipLineString(&from, &points, &region);
    EXPECT_EQ(points.count, 2u);
    EXPECT_EQ(difference(room, Points{{5, 5}, {10, 5}}), "");
    room.assign(2, {});
    MzLineString line{0, room.data()};
    MzClipLineString(&from, &line, &region);
    EXPECT_EQ(line.count, 2u);
    EXPECT_EQ(difference(room, Points{{5, 5}, {10, 5}}), "");
}

// --- rings ----------------------------------------------------------------

TEST(ClipLinearRing, FillsTheRegionFromARingAroundIt) {
    const Points ring{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, -5}};
    EXPECT_EQ(difference(clip(Kind::ring, ring, regionOf(tenByTen)),
                         Points{{0, 0}, {10, 0}, {10, 10}, {0, 10}}),
              "");
}

TEST(ClipLinearRing, KeepsARingInside) {
    const Points ring{{1, 1}, {9, 1}, {5, 9}, {1, 1}};
    EXPECT_EQ(difference(clip(Kind::ring, ring, regionOf(tenByTen)), ring), "");
}

TEST(ClipLinearRing, ClosesAlongTheBorderByTheCornerBetween) {
    const Points square{{5, 5}, {15, 5}, {15, 15}, {5, 15}, {5, 5}};
    EXPECT_EQ(difference(clip(Kind::ring, square, regionOf(tenByTen)),
                         Points{{5, 5}, {10, 5}, {10, 10}, {5, 10}, {5, 5}}),
              "");
    const Points outByTheTop{{5, 5}, {11, 12}, {12, 5}, {5, 5}};
    const Points clipped = clip(Kind::ring, outByTheTop, regionOf(tenByTen));
    ASSERT_EQ(clipped.size(), 5u);
    EXPECT_EQ(clipped[1].y, 10.0);
    EXPECT_TRUE(MzEqualPoints(clipped[2], {10, 10}));
    EXPECT_TRUE(MzEqualPoints(clipped[3], {10, 5}));
}

TEST(ClipLinearRing, DropsARingApart) {
    const Points ring{{20, 1}, {30, 1}, {30, 9}, {20, 1}};
    EXPECT_EQ(difference(clip(Kind::ring, ring, regionOf(tenByTen)), Points{}), "");
}

TEST(AddTurningPoint, AppendsTheCornerOfACode) {
    MzClippingRegion region = regionOf(tenByTen);
    const auto transform = MzAffineTransform::transform();
    transform->translateXBy(100, 200);
    region.setTransform(transform);
    Points room(4);
    MzLinearRing ring{0, room.data()};
    for (const std::int32_t code : {9, 5, 6, 10}) MzAddTurningPointForCode(&ring, code, &region);
    EXPECT_EQ(ring.count, 4u);
    EXPECT_EQ(difference(room, Points{{100, 200}, {110, 200}, {110, 210}, {100, 210}}), "");
}

TEST(AddTurningPoint, DoesNothingForOtherCodes) {
    const MzClippingRegion region = regionOf(tenByTen);
    MzPoint untouched{-7, -7};
    MzLinearRing ring{0, &untouched};
    for (const std::int32_t code : {-1, 0, 1, 2, 3, 4, 7, 8, 11, 12, 13, 14, 15, 16, 25}) {
        MzAddTurningPointForCode(&ring, code, &region);
    }
    EXPECT_EQ(ring.count, 0u);
    EXPECT_EQ(untouched.x, -7.0);
    MzAddTurningPointForCode(nullptr, 9, &region);
    MzAddTurningPointForCode(&ring, 9, nullptr);
    ring.points = nullptr;
    MzAddTurningPointForCode(&ring, 9, &region);
    EXPECT_EQ(ring.count, 0u);
}

// --- what is not there ----------------------------------------------------

TEST(OutcodeClipping, GivesNothingForNothing) {
    const MzClippingRegion region = regionOf(tenByTen);
    MzPoint inside{5, 5}, untouched{-7, -7};
    const MzMultiPoint one{1, &inside}, empty{0, &inside}, withoutArray{3, nullptr};
    for (const auto& [source, view] :
         {std::pair{static_cast<const MzMultiPoint*>(nullptr), &region},
          {&empty, &region},
          {&withoutArray, &region},
          {&one, static_cast<const MzClippingRegion*>(nullptr)}}) {
        MzMultiPoint destination{9, &untouched};
        MzClipMultiPoint(source, &destination, view);
        EXPECT_EQ(destination.count, 0u);
        destination.count = 9;
        MzClipLineString(source, &destination, view);
        EXPECT_EQ(destination.count, 0u);
        EXPECT_EQ(untouched.x, -7.0);
    }
    const MzLinearRing noRing{0, nullptr};
    MzLinearRing ring{9, &untouched};
    MzClipLinearRing(&noRing, &ring, &region);
    EXPECT_EQ(ring.count, 0u);
}

TEST(OutcodeClipping, WritesNothingWithoutADestination) {
    const MzClippingRegion region = regionOf(tenByTen);
    MzPoint inside{5, 5};
    const MzMultiPoint one{1, &inside};
    MzClipMultiPoint(&one, nullptr, &region);
    MzMultiPoint withoutArray{9, nullptr};
    MzClipMultiPoint(&one, &withoutArray, &region);
    EXPECT_EQ(withoutArray.count, 0u);
}

TEST(OutcodeClipping, MapsToTheOriginWithoutATransform) {
    MzClippingRegion region = regionOf(tenByTen);
    region.setTransform(nullptr);
    const Points source{{5, 5}, {15, 5}};
    EXPECT_EQ(difference(clip(Kind::points, source, region), Points{{0, 0}}), "");
    EXPECT_EQ(difference(clip(Kind::line, source, region), Points{{0, 0}, {0, 0}}), "");
    Points room(1, {-7, -7});
    MzLinearRing ring{0, room.data()};
    MzAddTurningPointForCode(&ring, 6, &region);
    EXPECT_EQ(difference(room, Points{{0, 0}}), "");
}

// --- capacities -----------------------------------------------------------

TEST(ClippedCapacity, FollowsTheSourceAndIsNeverZero) {
    EXPECT_EQ(MzClippedMultiPointCapacity(0), 1u);
    EXPECT_EQ(MzClippedMultiPointCapacity(1), 1u);
    EXPECT_EQ(MzClippedMultiPointCapacity(7), 7u);
    EXPECT_EQ(MzClippedLineStringCapacity(0), 1u);
    EXPECT_EQ(MzClippedLineStringCapacity(1), 1u);
    EXPECT_EQ(MzClippedLineStringCapacity(2), 3u);
    EXPECT_EQ(MzClippedLineStringCapacity(7), 18u);
    EXPECT_EQ(MzClippedLinearRingCapacity(0), 1u);
    EXPECT_EQ(MzClippedLinearRingCapacity(1), 1u);
    EXPECT_EQ(MzClippedLinearRingCapacity(2), 7u);
    EXPECT_EQ(MzClippedLinearRingCapacity(5), 16u);
    EXPECT_EQ(MzClippedLinearRingCapacity(7), 24u);
    EXPECT_EQ(MzClippedLinearRingCapacity(0xFFFFFFFFu), 4 * std::size_t{0xFFFFFFFEu});
}

TEST(ClippedCapacity, HoldsAsManyAsSettledClippersWrite) {
    const MzClippingRegion region = regionOf(tenByTen);
    EXPECT_EQ(clip(Kind::points, {{1, 1}, {2, 2}}, region).size(), 2u);
    EXPECT_EQ(clip(Kind::line, {{-5, 5}, {15, 5}, {-5, 6}}, region).size(), 4u);
    EXPECT_EQ(clip(Kind::ring, {{11, -9}, {-9, 11}}, region).size(), 4u);
}

TEST(ClippedCapacity, IsNeverExceeded) {
    Cases cases;
    const auto odd = [&cases] { return cases.oddPoint(); };
    for (int round = 0; round < 30'000; ++round) {
        const MzClippingRegion region = cases.region(odd);
        const Points source = cases.points(odd);
        for (const Kind kind : allKinds) clip(kind, source, region);
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", round " << round;
    }
}

// --- laws -----------------------------------------------------------------

TEST(OutcodeClipping, FollowsTheTablesOnAGrid) {
    Cases cases;
    const auto onGrid = [&cases] { return cases.gridPoint(); };
    for (int round = 0; round < 30'000; ++round) {
        const MzClippingRegion region = cases.region(onGrid);
        ASSERT_NO_FATAL_FAILURE(expectSameAsReference(cases.points(onGrid), region, round));
    }
}

TEST(OutcodeClipping, FollowsTheTablesAnywhere) {
    Cases cases;
    const auto anywhere = [&cases] { return cases.anyPoint(); };
    for (int round = 0; round < 20'000; ++round) {
        const MzClippingRegion region = cases.region(anywhere);
        ASSERT_NO_FATAL_FAILURE(expectSameAsReference(cases.points(anywhere), region, round));
    }
}

TEST(OutcodeClipping, FollowsTheTablesForNumbersThatAreNoLengths) {
    Cases cases;
    const auto odd = [&cases] { return cases.oddPoint(); };
    for (int round = 0; round < 20'000; ++round) {
        const MzClippingRegion region = cases.region(odd);
        const Points source = cases.points(odd);
        for (const Kind kind : allKinds) {
            Reference reference{region, {}};
            reference.run(kind, source);
            ASSERT_EQ(clip(kind, source, region).size(), reference.out.size())
                << "seed " << seed << ", round " << round << ' ' << text(source);
        }
    }
}

TEST(OutcodeClipping, LeavesNothingOutsideTheRegion) {
    Cases cases;
    const auto anywhere = [&cases] { return cases.anyPoint(); };
    constexpr double tolerance = 1e-9;  // pixels, for sizes of 1 to 10
    for (int round = 0; round < 20'000; ++round) {
        MzClippingRegion region = cases.region(anywhere);
        region.setClippingRect(MzUnionRect(region.clippingRect(), {{-1, -1}, {2, 2}}));
        const MzAffineTransform& transform = *region.transform();
        const MzPoint a = transform.transformPoint(region.bounds()[0]);
        const MzPoint b = transform.transformPoint(region.bounds()[2]);
        const MzRect pixels{
            {std::min(a.x, b.x) - tolerance, std::min(a.y, b.y) - tolerance},
            {std::abs(a.x - b.x) + 2 * tolerance, std::abs(a.y - b.y) + 2 * tolerance}};
        const Points source = cases.points(anywhere);
        for (const Kind kind : allKinds) {
            for (const MzPoint p : clip(kind, source, region)) {
                ASSERT_TRUE(MzPointInRect(p, pixels))
                    << "seed " << seed << ", round " << round << ": " << p.x << ' ' << p.y;
            }
        }
    }
}

}  // namespace
}  // namespace mezalith
