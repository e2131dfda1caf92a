// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/disjoint_sets.hpp"
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/polygon_skeleton.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Points;
using test::Random;
using test::Rings;
using test::uniform;
using Skeleton = std::shared_ptr<MzPolygonSkeleton>;

constexpr std::uint64_t kSeed = 20261121;
// A release build has time for all, one with sanitizers or without optimisation for some.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
constexpr int kPolygons = 10000;
#else
constexpr int kPolygons = 400;
#endif

Skeleton skeletonOf(const Rings& rings) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzPolygonSkeleton::skeletonFromPolygon(&polygon);
}

std::optional<MzSkeletonNode> deepestOf(const Rings& rings) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzDeepestPoint(&polygon);
}

std::size_t networksOf(const MzPolygonSkeleton& skeleton) {
    detail::DisjointSets sets(skeleton.nodes().size());
    std::size_t count = skeleton.nodes().size();
    for (const MzSkeletonArc& arc : skeleton.arcs()) count -= sets.join(arc.start, arc.end) ? 1 : 0;
    return count;
}

/// By how much the clearance in the middle of an arc differs from that at its start by more than
/// the way there.
double errorOfArc(const MzPolygonSkeleton& skeleton, const MzSkeletonArc& arc, const Rings& rings) {
    const MzPoint middle = skeleton.pointOfArc(arc, 0.5);
    const MzSkeletonNode& start = skeleton.nodes()[arc.start];
    const double way = std::hypot(middle.x - start.point.x, middle.y - start.point.y);
    const double clearance = test::distanceToRings(middle, rings);
    return std::max(0.0, std::abs(clearance - start.clearance) - way);
}

void expectSound(const Rings& rings, const char* what) {
    const Skeleton skeleton = skeletonOf(rings);
    ASSERT_NE(skeleton, nullptr) << what;
    ASSERT_EQ(networksOf(*skeleton), 1u) << what;
    const double tolerance = skeleton->tolerance();
    double greatest = 0;
    for (const MzSkeletonNode& node : skeleton->nodes()) {
        ASSERT_NEAR(node.clearance, test::distanceToRings(node.point, rings), tolerance) << what;
        ASSERT_TRUE(node.clearance <= tolerance || test::isInside(node.point, rings)) << what;
        greatest = std::max(greatest, node.clearance);
    }
    for (const MzSkeletonArc& arc : skeleton->arcs()) {
        ASSERT_LE(errorOfArc(*skeleton, arc, rings), 2 * tolerance) << what;
    }
    EXPECT_EQ(skeleton->deepestNode().clearance, greatest) << what;
    const auto deepest = deepestOf(rings);
    ASSERT_TRUE(deepest) << what;
    EXPECT_NEAR(deepest->clearance, greatest, tolerance) << what;
}

// --- known answers

TEST(PolygonSkeleton, OfASquareMeetsInItsMiddle) {
    const Skeleton skeleton = skeletonOf({test::square(1, 1, 4)});
    ASSERT_EQ(skeleton->nodes().size(), 5u);
    EXPECT_EQ(skeleton->arcs().size(), 4u);
    EXPECT_EQ(skeleton->deepestNode().clearance, 2);
    EXPECT_EQ(skeleton->deepestNode().point.x, 3);
    EXPECT_EQ(skeleton->deepestNode().point.y, 3);
    for (const MzSkeletonArc& arc : skeleton->arcs()) EXPECT_FALSE(arc.isParabola);
}

TEST(PolygonSkeleton, OfAReflexCornerHasParabolasAroundIt) {
    const Rings rings{{{1, 1}, {9, 1}, {9, 4.5}, {4, 4.5}, {4, 9}, {1, 9}, {1, 1}}};
    const Skeleton skeleton = skeletonOf(rings);
    int parabolas = 0;
    for (const MzSkeletonArc& arc : skeleton->arcs()) {
        if (!arc.isParabola) continue;
        ++parabolas;
        for (double share = 0; share <= 1; share += 0.125) {
            const MzPoint p = skeleton->pointOfArc(arc, share);
            const double toCorner = std::hypot(p.x - 4, p.y - 4.5);
            EXPECT_NEAR(toCorner, std::min(p.x - 1, p.y - 1), skeleton->tolerance());
            EXPECT_NEAR(toCorner, test::distanceToRings(p, rings), skeleton->tolerance());
        }
    }
    EXPECT_EQ(parabolas, 2);
}

TEST(PolygonSkeleton, GoesRoundAHole) {
    const Skeleton skeleton = skeletonOf({test::square(0, 0, 10), test::square(4, 4, 2)});
    EXPECT_EQ(networksOf(*skeleton), 1u);
    EXPECT_EQ(skeleton->arcs().size(), skeleton->nodes().size());  // one way round
    EXPECT_NEAR(skeleton->deepestNode().clearance, 4 - 4 * (std::sqrt(2) - 1), 1e-8);
    expectSound({test::square(0, 0, 10), test::square(4, 4, 2)}, "hole");
}

TEST(PolygonSkeleton, IsTheSameForRingsThatRunTheOtherWayOrAreNotClosed) {
    Points outer = test::square(0, 0, 10);
    outer.pop_back();
    const Skeleton one = skeletonOf({test::square(0, 0, 10), test::square(3, 4, 2)});
    const Skeleton other =
        skeletonOf({test::reversed(outer), test::reversed(test::square(3, 4, 2))});
    ASSERT_EQ(one->nodes().size(), other->nodes().size());
    EXPECT_EQ(one->deepestNode().clearance, other->deepestNode().clearance);
}

TEST(PolygonSkeleton, TakesRepeatedAndCollinearPoints) {
    const Rings odd{{{0, 0}, {0, 0}, {2, 0}, {4, 0}, {4, 0}, {4, 4}, {2, 4}, {0, 4}, {0, 2}}};
    EXPECT_EQ(skeletonOf(odd)->nodes().size(), 5u);
    expectSound(odd, "odd");
}

TEST(PolygonSkeleton, TakesRingsThatTouchAndCross) {
    expectSound({test::square(0, 0, 10), {{0, 5}, {2, 4}, {2, 6}}}, "a hole at the outline");
    expectSound({{{0, 0}, {4, 0}, {4, 2}, {8, 2}, {4, 2}, {4, 4}, {0, 4}}}, "a spike");
    const Skeleton knot = skeletonOf({{{0, 0}, {4, 4}, {4, 0}, {0, 4}}});
    EXPECT_EQ(networksOf(*knot), 1u);  // through the corner in which both halves end
    EXPECT_NEAR(knot->deepestNode().clearance, 2 * (std::sqrt(2) - 1), 1e-8);
    const Skeleton across = skeletonOf({test::square(0, 0, 10), {{-1, 4}, {3, 3}, {3, 6}}});
    EXPECT_EQ(networksOf(*across), 1u);
    const Skeleton islands =
        skeletonOf({test::square(0, 0, 9), test::square(1, 1, 7), test::square(2, 2, 5)});
    EXPECT_EQ(networksOf(*islands), 2u);
}

// The diagram of these segments comes out wrong unless it is mirrored.
TEST(PolygonSkeleton, SeesWhenItsDiagramIsWrong) {
    expectSound({{{10, 8}, {10, 2}, {15, 7}, {15, 15}, {0, 0}}}, "upright at its end");
}

TEST(PolygonSkeleton, OfNothingIsNull) {
    EXPECT_EQ(MzPolygonSkeleton::skeletonFromPolygon(nullptr), nullptr);
    EXPECT_EQ(MzPolygonSkeleton::skeletonFromRing(nullptr), nullptr);
    EXPECT_TRUE(MzPolygonSkeleton::skeletonsFromMultiPolygon(nullptr).empty());
    EXPECT_EQ(skeletonOf({}), nullptr);
    EXPECT_EQ(skeletonOf({{{0, 0}, {1, 0}, {2, 0}, {0, 0}}}), nullptr);
    EXPECT_FALSE(MzDeepestPoint(nullptr));
    EXPECT_FALSE(deepestOf({{{3, 3}}}));
}

TEST(PolygonSkeleton, OfAMultiPolygonIsOneForEachPolygon) {
    test::OwnedMultiPolygon owned({{test::square(0, 0, 4)}, {{{1, 1}}}, {test::square(9, 9, 2)}});
    const MzMultiPolygon polygons = owned.record();
    const auto skeletons = MzPolygonSkeleton::skeletonsFromMultiPolygon(&polygons);
    ASSERT_EQ(skeletons.size(), 3u);
    EXPECT_EQ(skeletons[0]->deepestNode().clearance, 2);
    EXPECT_EQ(skeletons[1], nullptr);
    EXPECT_EQ(skeletons[2]->deepestNode().clearance, 1);
}

TEST(PolygonSkeleton, MeasuresArcs) {
    const Rings rings{{{1, 1}, {9, 1}, {9, 4.5}, {4, 4.5}, {4, 9}, {1, 9}, {1, 1}}};
    const Skeleton skeleton = skeletonOf(rings);
    for (const MzSkeletonArc& arc : skeleton->arcs()) {
        double length = 0;
        MzPoint before = skeleton->pointOfArc(arc, 0);
        for (int i = 1; i <= 4096; ++i) {
            const MzPoint p = skeleton->pointOfArc(arc, i / 4096.0);
            length += std::hypot(p.x - before.x, p.y - before.y);
            before = p;
        }
        EXPECT_NEAR(skeleton->lengthOfArc(arc), length, 1e-6 * length);
    }
}

// --- laws

Rings randomPolygon(Random& random) {
    const int count = 5 + static_cast<int>(random() % 60);
    switch (random() % 5) {
        case 0:
            return {test::convexRing(random, count)};
        case 1:
            return {test::starRing(random, count, 0.2)};
        case 2:
            return {test::combRing(2 + count / 8, uniform(random, 0.3, 8))};
        case 3:
            return {test::spiralRing(count)};
        default:
            return {test::plusRing(uniform(random, 0.05, 1.5))};
    }
}

TEST(PolygonSkeleton, OfRandomPolygonsIsOneNetworkOfTrueClearances) {
    Random random(kSeed);
    for (int i = 0; i < kPolygons; ++i) {
        const double scale = std::pow(10, uniform(random, -6, 7));
        const double far = i % 2 == 0 ? 0 : 1e7;
        const MzPoint offset{uniform(random, -far, far), uniform(random, -far, far)};
        Rings rings = randomPolygon(random);
        const double angle = uniform(random, 0, 6.28);
        for (MzPoint& p : rings[0]) {
            p = {p.x * std::cos(angle) - p.y * std::sin(angle),
                 p.x * std::sin(angle) + p.y * std::cos(angle)};
        }
        for (Points& ring : rings) ring = test::placed(ring, scale, offset);
        ASSERT_NO_FATAL_FAILURE(expectSound(rings, "random"))
            << "polygon " << i << " scale " << scale;
    }
}

TEST(PolygonSkeleton, OfRandomPolygonsWithHolesIsOneNetworkOfTrueClearances) {
    Random random(kSeed);
    for (int i = 0; i < kPolygons / 4; ++i) {
        Rings rings{test::placed(test::starRing(random, 40, 0.8), 10, {0, 0})};
        const int holes = 1 + static_cast<int>(random() % 12);
        for (int k = 0; k < holes; ++k) {
            const MzPoint at{-3 + 2.0 * (k % 4), -3 + 2.5 * (k / 4)};
            rings.push_back(test::placed(test::starRing(random, 5 + k, 0.3), 0.9, at));
        }
        ASSERT_NO_FATAL_FAILURE(expectSound(rings, "holes")) << "polygon " << i;
    }
}

/// The greatest clearance by halving squares, to `precision`.
double searchDeepest(const Rings& rings, MzPoint middle, double half, double precision,
                     double& best) {
    const double here =
        test::distanceToRings(middle, rings) * (test::isInside(middle, rings) ? 1 : -1);
    best = std::max(best, here);
    if (here + half * std::sqrt(2) <= best + precision) return best;
    for (const double dx : {-0.5, 0.5}) {
        for (const double dy : {-0.5, 0.5}) {
            searchDeepest(rings, {middle.x + dx * half, middle.y + dy * half}, half / 2, precision,
                          best);
        }
    }
    return best;
}

TEST(PolygonSkeleton, FindsTheLargestCircleInside) {
    Random random(kSeed);
    for (int i = 0; i < 20; ++i) {
        const Rings rings = randomPolygon(random);
        double half = 0;
        for (const MzPoint p : rings[0]) half = std::max({half, std::abs(p.x), std::abs(p.y)});
        double best = 0;
        searchDeepest(rings, {0, 0}, half, 1e-4 * half, best);
        const double deepest = skeletonOf(rings)->deepestNode().clearance;
        EXPECT_GE(deepest, best - 1e-9 * half) << i;
        EXPECT_LE(deepest, best + 1e-4 * half + 1e-9) << i;
    }
}

TEST(PolygonSkeleton, TakesAnyPoints) {
    Random random(kSeed);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double odd[] = {
        nan, 1e308, -1e308, 5e-324, 0, 1, std::numeric_limits<double>::infinity()};
    for (int i = 0; i < 500; ++i) {
        Rings rings(1 + random() % 3);
        for (Points& ring : rings) {
            ring.resize(random() % 12);
            for (MzPoint& p : ring) {
                const auto coordinate = [&] {
                    return random() % 16 == 0 ? odd[random() % 7]
                                              : static_cast<double>(random() % 8);
                };
                p = {coordinate(), coordinate()};
            }
        }
        const Skeleton skeleton = skeletonOf(rings);
        if (skeleton == nullptr) continue;
        for (const MzSkeletonNode& node : skeleton->nodes()) {
            ASSERT_TRUE(std::isfinite(node.clearance) && node.clearance >= 0);
            ASSERT_TRUE(std::isfinite(node.point.x) && std::isfinite(node.point.y));
        }
        skeleton->prunedByRatio(1.5);
    }
}

}  // namespace
}  // namespace mezalith
