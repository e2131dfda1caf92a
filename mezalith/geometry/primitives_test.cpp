// SPDX-License-Identifier: MIT
#include <mezalith/geometry/primitives.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <ostream>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {

// How a failed expectation shows them.
bool operator==(MzPoint a, MzPoint b) { return MzEqualPoints(a, b); }
bool operator==(MzRect a, MzRect b) { return MzEqualRects(a, b); }
std::ostream& operator<<(std::ostream& out, MzRect r) { return out << NSStringFromMzRect(r); }

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr MzRect kUnit{{0, 0}, {1, 1}};
constexpr MzRect kWorld{{-180, -90}, {360, 180}};

// Multiples of 1/64 up to about 1000: sums of a few are exact.
double moderate() { return *rc::gen::inRange(-65536, 65536) / 64.0; }
double extent() { return *rc::gen::inRange(1, 65536) / 64.0; }

MzRect anyRect() { return {{moderate(), moderate()}, {extent(), extent()}}; }

MzPoint anyPoint() { return {moderate(), moderate()}; }

// --- comparison and emptiness ----------------------------------------------

TEST(Equality, IsExactAndFalseForNaN) {
    EXPECT_TRUE(MzEqualPoints({1, 2}, {1, 2}));
    EXPECT_TRUE(MzEqualPoints({0, 0}, {-0.0, 0}));
    EXPECT_FALSE(MzEqualPoints({1, 2}, {1, std::nextafter(2, 3)}));
    EXPECT_FALSE(MzEqualPoints({1, 2}, {2, 2}));
    EXPECT_FALSE(MzEqualPoints({kNaN, 2}, {kNaN, 2}));
    EXPECT_TRUE(MzEqualSizes({3, 4}, {3, 4}));
    EXPECT_FALSE(MzEqualSizes({3, 4}, {3, 5}));
    EXPECT_FALSE(MzEqualSizes({3, kNaN}, {3, kNaN}));
}

TEST(Equality, OfRectanglesComparesAllFourFields) {
    const MzRect rect{{1, 2}, {3, 4}};
    EXPECT_TRUE(MzEqualRects(rect, rect));
    EXPECT_FALSE(MzEqualRects(rect, {{0, 2}, {3, 4}}));
    EXPECT_FALSE(MzEqualRects(rect, {{1, 0}, {3, 4}}));
    EXPECT_FALSE(MzEqualRects(rect, {{1, 2}, {0, 4}}));
    EXPECT_FALSE(MzEqualRects(rect, {{1, 2}, {3, 0}}));
    EXPECT_FALSE(MzEqualRects({{1, 2}, {kNaN, 4}}, {{1, 2}, {kNaN, 4}}));
}

TEST(EmptyRect, HasNoPositiveExtentInSomeDirection) {
    EXPECT_TRUE(MzIsEmptyRect({{0, 0}, {0, 5}}));
    EXPECT_TRUE(MzIsEmptyRect({{0, 0}, {5, 0}}));
    EXPECT_TRUE(MzIsEmptyRect({{0, 0}, {-1, -1}}));
    EXPECT_TRUE(MzIsEmptyRect({{0, 0}, {kNaN, 1}}));
    EXPECT_TRUE(MzIsEmptyRect(MzZeroRect));
    EXPECT_FALSE(MzIsEmptyRect(kUnit));
}

// --- moving and rounding ---------------------------------------------------

TEST(InsetRect, MayTurnNegative) {
    EXPECT_EQ(MzInsetRect({{0, 0}, {10, 20}}, 1, 2), (MzRect{{1, 2}, {8, 16}}));
    EXPECT_EQ(MzInsetRect({{0, 0}, {10, 20}}, 6, -2), (MzRect{{6, -2}, {-2, 24}}));
}

TEST(OffsetRect, MovesTheOrigin) {
    EXPECT_EQ(MzOffsetRect({{1, 2}, {3, 4}}, 10, -20), (MzRect{{11, -18}, {3, 4}}));
}

TEST(IntegralRect, GrowsToWholeCoordinates) {
    EXPECT_EQ(MzIntegralRect({{0.5, 0.5}, {1, 1}}), (MzRect{{0, 0}, {2, 2}}));
    EXPECT_EQ(MzIntegralRect({{-0.5, 1}, {1, 2.25}}), (MzRect{{-1, 1}, {2, 3}}));
    EXPECT_EQ(MzIntegralRect({{1, 2}, {3, 4}}), (MzRect{{1, 2}, {3, 4}}));
}

TEST(IntegralRect, OfAnEmptyOneIsZero) {
    EXPECT_EQ(MzIntegralRect({{0, 0}, {0, 5}}), MzZeroRect);
    EXPECT_EQ(MzIntegralRect({{0, 0}, {-1, -1}}), MzZeroRect);
}

// --- union and intersection ------------------------------------------------

TEST(UnionRect, SpansBoth) {
    EXPECT_EQ(MzUnionRect({{0, 10}, {2, 2}}, {{5, 3}, {1, 1}}), (MzRect{{0, 3}, {6, 9}}));
}

TEST(UnionRect, CountsAnEmptyOneForNothing) {
    const MzRect empty{{100, 100}, {0, 5}};
    EXPECT_EQ(MzUnionRect(empty, kUnit), kUnit);
    EXPECT_EQ(MzUnionRect(kUnit, empty), kUnit);
    EXPECT_EQ(MzUnionRect(empty, empty), MzZeroRect);
}

TEST(UnionRect, IsTheSmallestThatContainsBoth) {
    EXPECT_TRUE(rc::check([] {
        const MzRect a = anyRect(), b = anyRect();
        const MzRect both = MzUnionRect(a, b);
        RC_ASSERT(both == MzUnionRect(b, a));
        RC_ASSERT(MzContainsRect(both, a) && MzContainsRect(both, b));
        RC_ASSERT(MzUnionRect(both, a) == both);
        const MzRect c = anyRect();
        RC_ASSERT(MzUnionRect(both, c) == MzUnionRect(a, MzUnionRect(b, c)));
    }));
}

TEST(IntersectionRect, OfASharedEdgeIsZero) {
    const MzRect beside{{1, 0}, {1, 1}}, above{{0, 1}, {1, 1}};
    EXPECT_EQ(MzIntersectionRect(kUnit, beside), MzZeroRect);
    EXPECT_EQ(MzIntersectionRect(beside, kUnit), MzZeroRect);
    EXPECT_EQ(MzIntersectionRect(kUnit, above), MzZeroRect);
    EXPECT_EQ(MzIntersectionRect(above, kUnit), MzZeroRect);
    EXPECT_FALSE(MzIntersectsRect(kUnit, beside));
    EXPECT_FALSE(MzIntersectsRect(beside, kUnit));
    EXPECT_FALSE(MzIntersectsRect(kUnit, above));
    EXPECT_FALSE(MzIntersectsRect(above, kUnit));
}

TEST(IntersectionRect, IsTheCommonPart) {
    EXPECT_EQ(MzIntersectionRect({{0, 0}, {10, 10}}, {{4, -5}, {20, 8}}), (MzRect{{4, 0}, {6, 3}}));
    EXPECT_EQ(MzIntersectionRect({{0, 0}, {10, 10}}, {{2, 3}, {4, 5}}), (MzRect{{2, 3}, {4, 5}}));
}

TEST(IntersectionRect, DoesNotRejectAnEmptyOneInside) {
    EXPECT_EQ(MzIntersectionRect({{0, 0}, {10, 10}}, {{5, 5}, {0, 0}}), (MzRect{{5, 5}, {0, 0}}));
}

TEST(IntersectionRect, TakesTheSecondOfEqualEdges) {
    const MzRect plus{{0.0, 0.0}, {1, 1}}, minus{{-0.0, -0.0}, {1, 1}};
    EXPECT_TRUE(std::signbit(MzIntersectionRect(plus, minus).origin.x));
    EXPECT_TRUE(std::signbit(MzIntersectionRect(plus, minus).origin.y));
    EXPECT_FALSE(std::signbit(MzIntersectionRect(minus, plus).origin.x));
    EXPECT_FALSE(std::signbit(MzIntersectionRect(minus, plus).origin.y));
}

TEST(IntersectionRect, IsContainedInBothAndContainsTheirPoints) {
    EXPECT_TRUE(rc::check([] {
        const MzRect a = anyRect(), b = anyRect();
        const MzRect common = MzIntersectionRect(a, b);
        RC_ASSERT(common == MzIntersectionRect(b, a));
        RC_ASSERT(MzIsEmptyRect(common) != MzIntersectsRect(a, b));
        if (!MzIsEmptyRect(common)) {
            RC_ASSERT(MzContainsRect(a, common) && MzContainsRect(b, common));
        }
        const MzPoint p = anyPoint();
        RC_ASSERT(MzPointInRect(p, common) == (MzPointInRect(p, a) && MzPointInRect(p, b)));
        RC_ASSERT(MzIntersectionRect(a, MzUnionRect(a, b)) == a);
    }));
}

TEST(IntersectsRect, CountsAnEmptyRectangleInsideWhereContainsDoesNot) {
    const MzRect whole{{0, 0}, {10, 10}}, point{{5, 5}, {0, 0}};
    EXPECT_TRUE(MzIntersectsRect(whole, point));
    EXPECT_FALSE(MzContainsRect(whole, point));
}

TEST(IntersectsRect, IsFalseForNaNWhereTheIntersectionIsNotZero) {
    const MzRect unknown{{kNaN, 0}, {1, 1}};
    EXPECT_FALSE(MzIntersectsRect(kUnit, unknown));
    EXPECT_FALSE(MzEqualRects(MzIntersectionRect(kUnit, unknown), MzZeroRect));
}

TEST(ContainsRect, IncludesSharedEdges) {
    EXPECT_TRUE(MzContainsRect(kUnit, kUnit));
    EXPECT_TRUE(MzContainsRect({{0, 0}, {10, 10}}, {{0, 5}, {10, 5}}));
    EXPECT_FALSE(MzContainsRect({{0, 0}, {10, 10}}, {{-1, 5}, {5, 5}}));
    EXPECT_FALSE(MzContainsRect({{0, 0}, {10, 10}}, {{5, -1}, {5, 5}}));
    EXPECT_FALSE(MzContainsRect({{0, 0}, {10, 10}}, {{5, 5}, {6, 5}}));
    EXPECT_FALSE(MzContainsRect({{0, 0}, {10, 10}}, {{5, 5}, {5, 6}}));
}

// --- points ----------------------------------------------------------------

TEST(PointInRect, ExcludesTheFarEdges) {
    EXPECT_FALSE(MzPointInRect({1, 1}, kUnit));
    EXPECT_TRUE(MzPointInRect({0, 0}, kUnit));
    EXPECT_FALSE(MzPointInRect({1, 0.5}, kUnit));
    EXPECT_FALSE(MzPointInRect({0.5, 1}, kUnit));
    EXPECT_FALSE(MzPointInRect({-0.1, 0.5}, kUnit));
    EXPECT_FALSE(MzPointInRect({0.5, -0.1}, kUnit));
    EXPECT_FALSE(MzPointInRect({kNaN, 0.5}, kUnit));
}

TEST(MouseInRect, ExcludesTheBottomAndIncludesTheTopUnlessFlipped) {
    EXPECT_FALSE(MzMouseInRect({0, 0}, kUnit, false));
    EXPECT_TRUE(MzMouseInRect({0, 1}, kUnit, false));
    EXPECT_FALSE(MzMouseInRect({1, 0.5}, kUnit, false));
    EXPECT_FALSE(MzMouseInRect({-0.1, 0.5}, kUnit, false));
    EXPECT_FALSE(MzMouseInRect({0, 1.1}, kUnit, false));
    EXPECT_TRUE(MzMouseInRect({0, 0}, kUnit, true));
    EXPECT_FALSE(MzMouseInRect({0, 1}, kUnit, true));
}

// --- division --------------------------------------------------------------

struct Pieces {
    MzRect slice{{7, 7}, {7, 7}};
    MzRect remainder{{8, 8}, {8, 8}};
};

Pieces divided(MzRect r, double amount, std::int32_t edge) {
    Pieces pieces;
    MzDivideRect(r, &pieces.slice, &pieces.remainder, amount, edge);
    return pieces;
}

void expectPieces(const Pieces& pieces, MzRect slice, MzRect remainder) {
    EXPECT_EQ(pieces.slice, slice);
    EXPECT_EQ(pieces.remainder, remainder);
}

constexpr MzRect kTen{{0, 0}, {10, 10}};
constexpr MzRect kOff{{1, 2}, {10, 20}};

TEST(DivideRect, CutsFromEachSide) {
    expectPieces(divided(kTen, 3, 8), {{0, 0}, {3, 10}}, {{3, 0}, {7, 10}});
    expectPieces(divided(kOff, 3, MzMinYEdge), {{1, 2}, {10, 3}}, {{1, 5}, {10, 17}});
    expectPieces(divided(kOff, 3, MzMaxYEdge), {{1, 19}, {10, 3}}, {{1, 2}, {10, 17}});
    expectPieces(divided(kOff, 3, MzMaxXEdge), {{8, 2}, {3, 20}}, {{1, 2}, {7, 20}});
    expectPieces(divided(kOff, 3, MzMinXEdge), {{1, 2}, {3, 20}}, {{4, 2}, {7, 20}});
}

TEST(DivideRect, TakesAllWhenTheAmountIsTooLarge) {
    expectPieces(divided(kTen, 12, 8), kTen, {{10, 0}, {0, 10}});
    expectPieces(divided(kOff, 21, MzMinYEdge), kOff, {{1, 22}, {10, 0}});
    expectPieces(divided(kOff, 21, MzMaxYEdge), kOff, {{1, 2}, {10, 0}});
    expectPieces(divided(kOff, 11, MzMaxXEdge), kOff, {{1, 2}, {0, 20}});
    expectPieces(divided(kOff, 11, MzMinXEdge), kOff, {{11, 2}, {0, 20}});
}

TEST(DivideRect, TakesExactlyAllWhenTheAmountIsTheExtent) {
    expectPieces(divided(kOff, 20, MzMinYEdge), kOff, {{1, 22}, {10, 0}});
    expectPieces(divided(kOff, 20, MzMaxYEdge), kOff, {{1, 2}, {10, 0}});
    expectPieces(divided(kOff, 10, MzMaxXEdge), kOff, {{1, 2}, {0, 20}});
    expectPieces(divided(kOff, 10, MzMinXEdge), kOff, {{11, 2}, {0, 20}});
}

TEST(DivideRect, MeasuresTheRemainderBetweenFarCoordinates) {
    const MzRect rect{{0.1, 0.1}, {0.7, 0.7}};
    EXPECT_NE((0.1 + 0.7) - (0.1 + 0.2), 0.7 - 0.2);
    EXPECT_EQ(divided(rect, 0.2, MzMinYEdge).remainder.size.height, (0.1 + 0.7) - (0.1 + 0.2));
    EXPECT_EQ(divided(rect, 0.2, MzMinXEdge).remainder.size.width, (0.1 + 0.7) - (0.1 + 0.2));
    EXPECT_EQ(divided(rect, 0.2, MzMaxYEdge).remainder.size.height, ((0.7 + 0.1) - 0.2) - 0.1);
    EXPECT_EQ(divided(rect, 0.2, MzMaxXEdge).remainder.size.width, ((0.7 + 0.1) - 0.2) - 0.1);
}

TEST(DivideRect, WritesNothingForAnUnknownEdge) {
    const Pieces untouched;
    for (const std::int32_t edge : {0, 3, 5, 6, 7, 9, 16, -1}) {
        expectPieces(divided(kTen, 3, edge), untouched.slice, untouched.remainder);
    }
}

TEST(DivideRect, GivesTwoZeroRectanglesForAnEmptyOneWhateverTheEdge) {
    expectPieces(divided({{1, 2}, {0, 5}}, 3, MzMinXEdge), MzZeroRect, MzZeroRect);
    expectPieces(divided({{1, 2}, {5, -1}}, 3, 3), MzZeroRect, MzZeroRect);
}

TEST(DivideRect, DoesNotTakeAnExtentThatIsNoNumberForEmpty) {
    const Pieces pieces = divided({{1, 2}, {kNaN, 20}}, 3, MzMinYEdge);
    EXPECT_EQ(pieces.slice.size.height, 3);
    EXPECT_EQ(pieces.remainder.origin.y, 5);
    EXPECT_EQ(divided({{1, 2}, {kNaN, 20}}, 3, MzMinXEdge).slice.origin.x, 1);
}

TEST(DivideRect, WorksWithoutOutputs) {
    MzRect slice = MzZeroRect, remainder = MzZeroRect;
    MzDivideRect(kTen, &slice, nullptr, 3, MzMinXEdge);
    EXPECT_EQ(slice, (MzRect{{0, 0}, {3, 10}}));
    MzDivideRect(kTen, nullptr, &remainder, 3, MzMinXEdge);
    EXPECT_EQ(remainder, (MzRect{{3, 0}, {7, 10}}));
    MzDivideRect(kTen, nullptr, nullptr, 3, MzMinXEdge);
    MzDivideRect(MzZeroRect, nullptr, nullptr, 3, MzMinXEdge);
}

TEST(DivideRect, PiecesCoverTheRectangleAndDoNotOverlap) {
    EXPECT_TRUE(rc::check([] {
        const MzRect rect = anyRect();
        const auto edge = *rc::gen::element(MzMinYEdge, MzMaxYEdge, MzMaxXEdge, MzMinXEdge);
        const auto [slice, remainder] = divided(rect, extent(), edge);
        RC_ASSERT(MzUnionRect(slice, remainder) == rect);
        RC_ASSERT(MzIsEmptyRect(MzIntersectionRect(slice, remainder)));
        const double area = rect.size.width * rect.size.height;
        RC_ASSERT(slice.size.width * slice.size.height +
                      remainder.size.width * remainder.size.height ==
                  area);
    }));
}

// --- partition of a world that repeats -------------------------------------

using Partition = std::array<MzRect, 4>;

Partition partition(bool wrapX, bool wrapY, MzRect world, MzRect rect) {
    Partition pieces;
    pieces.fill({{7, 7}, {7, 7}});
    auto& [piece1, piece2, piece3, piece4] = pieces;
    MzTorusPartition(&piece1, &piece2, &piece3, &piece4, wrapX, wrapY, world, rect);
    return pieces;
}

// One step after the other, as often as it takes, unless a step is lost in rounding.
double steppedOneByOne(double low, double width, double origin) {
    const double step = low > origin ? width : -width;
    while (step > 0 ? low > origin : origin > low + width) {
        const double next = origin + step;
        if (next == origin) break;
        origin = next;
    }
    return origin;
}

// Whether a partition brings an origin to where single steps bring it.
bool stepsAsIfOneByOne(double low, double width, double origin) {
    const MzRect world{{low, 0}, {width, 1}};
    const Partition p = partition(true, false, world, {{origin, 0}, {width, 1}});
    const MzRect stepped{{steppedOneByOne(low, width, origin), 0}, {width, 1}};
    return p[0] == MzIntersectionRect(world, stepped) &&
           p[1] == MzIntersectionRect(world, MzOffsetRect(stepped, -width, 0));
}

TEST(TorusPartition, SplitsAcrossTheHighXEdge) {
    const Partition p = partition(true, false, kWorld, {{170, 0}, {20, 10}});
    EXPECT_EQ(p,
              (Partition{{{{170, 0}, {10, 10}}, {{-180, 0}, {10, 10}}, MzZeroRect, MzZeroRect}}));
}

TEST(TorusPartition, SplitsAcrossTheHighYEdge) {
    const Partition p = partition(false, true, kWorld, {{0, 85}, {20, 10}});
    EXPECT_EQ(p, (Partition{{{{0, 85}, {20, 5}}, MzZeroRect, {{0, -90}, {20, 5}}, MzZeroRect}}));
}

TEST(TorusPartition, WrapsNothingInADirectionThatDoesNotRepeat) {
    const MzRect corner{{170, 85}, {20, 10}};
    EXPECT_EQ(partition(true, false, kWorld, corner),
              (Partition{{{{170, 85}, {10, 5}}, {{-180, 85}, {10, 5}}, MzZeroRect, MzZeroRect}}));
    EXPECT_EQ(partition(false, true, kWorld, corner),
              (Partition{{{{170, 85}, {10, 5}}, MzZeroRect, {{170, -90}, {10, 5}}, MzZeroRect}}));
    EXPECT_EQ(partition(false, false, kWorld, corner),
              (Partition{{{{170, 85}, {10, 5}}, MzZeroRect, MzZeroRect, MzZeroRect}}));
}

TEST(TorusPartition, SplitsAcrossTheCornerIntoFour) {
    const Partition p = partition(true, true, kWorld, {{170, 85}, {20, 10}});
    EXPECT_EQ(p, (Partition{{{{170, 85}, {10, 5}},
                             {{-180, 85}, {10, 5}},
                             {{170, -90}, {10, 5}},
                             {{-180, -90}, {10, 5}}}}));
}

TEST(TorusPartition, BringsTheOriginIntoTheWorldFirst) {
    EXPECT_EQ(partition(true, false, kWorld, {{-540, 0}, {20, 10}})[0],
              (MzRect{{-180, 0}, {20, 10}}));
    EXPECT_EQ(partition(true, false, kWorld, {{900, 0}, {20, 10}})[1],
              (MzRect{{-180, 0}, {20, 10}}));  // 180 is within: the high end is accepted
    EXPECT_EQ(partition(false, true, kWorld, {{0, -1000}, {20, 10}})[0],
              (MzRect{{0, 80}, {20, 10}}));
    EXPECT_EQ(partition(false, true, kWorld, {{0, 1000}, {20, 10}})[0],
              (MzRect{{0, -80}, {20, 10}}));
}

TEST(TorusPartition, ArrivesAtZeroWithoutASign) {
    for (const MzPoint origin : {MzPoint{360, 180}, {720, 360}, {-360, -180}}) {
        const MzRect piece = partition(true, true, kWorld, {origin, {20, 10}})[0];
        EXPECT_EQ(NSStringFromMzRect(piece), "{{0, 0}, {20, 10}}");
    }
    const MzRect untouched = partition(true, true, kWorld, {{-0.0, -0.0}, {20, 10}})[0];
    EXPECT_EQ(NSStringFromMzRect(untouched), "{{-0, -0}, {20, 10}}");
}

TEST(TorusPartition, AllowsNullPieces) {
    MzRect piece2 = kUnit;
    MzTorusPartition(nullptr, &piece2, nullptr, nullptr, true, true, kWorld, {{170, 0}, {20, 10}});
    EXPECT_EQ(piece2, (MzRect{{-180, 0}, {10, 10}}));
}

TEST(TorusPartition, KeepsTheAreaOfARectangleNoLargerThanTheWorld) {
    EXPECT_TRUE(rc::check([] {
        const MzRect world = anyRect();
        const MzRect rect{
            anyPoint(),
            {std::min(extent(), world.size.width), std::min(extent(), world.size.height)}};
        double area = 0;
        for (const MzRect& piece : partition(true, true, world, rect)) {
            RC_ASSERT(MzEqualRects(piece, MzZeroRect) || MzContainsRect(world, piece));
            area += piece.size.width * piece.size.height;
        }
        RC_ASSERT(area == rect.size.width * rect.size.height);
    }));
}

TEST(TorusPartition, LeavesTheOriginInAWorldWithoutExtent) {
    for (const double none : {0.0, -360.0, kNaN, -kInfinity}) {
        const MzRect world{{-180, -90}, {none, none}};
        partition(true, true, world, {{1000, -1000}, {20, 10}});
    }
    const MzRect narrow{{0, 0}, {-5, 10}};
    EXPECT_EQ(partition(true, false, narrow, {{-30, 1}, {40, 2}})[0],
              MzIntersectionRect(narrow, {{-30, 1}, {40, 2}}));
}

TEST(TorusPartition, EndsForValuesThatAreNotFinite) {
    for (const double odd : {kNaN, kInfinity, -kInfinity}) {
        for (const MzRect& rect : {MzRect{{odd, odd}, {1, 1}}, MzRect{{0, 0}, {odd, odd}}}) {
            partition(true, true, kWorld, rect);
            partition(true, true, rect, {{1000, -1000}, {20, 10}});
        }
    }
    EXPECT_EQ(partition(true, true, kWorld, {{kInfinity, 0}, {1, 1}})[0], MzZeroRect);
}

TEST(TorusPartition, EndsWhereAShiftIsLostInRounding) {
    EXPECT_EQ(partition(true, false, kWorld, {{1e30, 0}, {20, 10}})[0], MzZeroRect);
    EXPECT_EQ(partition(true, false, kWorld, {{-1e30, 0}, {20, 10}})[0], MzZeroRect);
    const MzRect farWorld{{1e30, 0}, {360, 180}};
    EXPECT_EQ(partition(true, false, farWorld, {{0, 0}, {20, 10}})[0], MzZeroRect);
    const double most = std::numeric_limits<double>::max();
    partition(true, true, {{most, -most}, {most, 1e-300}}, {{-most, most}, {1, 1}});
}

TEST(TorusPartition, StepsThousandsOfTimesAsIfOneByOne) {
    EXPECT_TRUE(rc::check([] {
        const double low = moderate() / 3;
        const double width = extent() / 1000;  // few of the steps are exact
        for (int i = 0; i < 10; ++i) RC_ASSERT(stepsAsIfOneByOne(low, width, moderate() / 7));
    }));
}

TEST(TorusPartition, StepsAsIfOneByOneWhereStepsAreRounded) {
    // Far from zero each step is rounded to a few units of the last place, halves to even. A world
    // near a power of two is reached from units of another size.
    EXPECT_TRUE(rc::check([] {
        const double unit = std::ldexp(1.0, *rc::gen::inRange(-8, 8));
        const double width = *rc::gen::inRange(1, 128) / 16.0 * unit;
        const double sign = *rc::gen::element(-1.0, 1.0);
        const double low = sign * std::ldexp(unit, *rc::gen::element(52, 53)) + moderate() * unit;
        for (int i = 0; i < 50; ++i) {
            const double distance = *rc::gen::inRange(-20000, 20000) * unit;
            RC_ASSERT(stepsAsIfOneByOne(low, width, low + distance));
        }
    }));
}

TEST(TorusPartition, StepsATrillionTimesAtOnce) {
    const MzRect piece = partition(true, false, kWorld, {{3e15, 0}, {20, 10}})[0];
    EXPECT_EQ(piece, (MzRect{{120, 0}, {20, 10}}));  // each step is exact
    const MzRect world{{0, 0}, {1e-3, 1}};
    const Partition p = partition(true, false, world, {{-1e12, 0}, {1e-3, 1}});
    EXPECT_NEAR(p[0].size.width + p[1].size.width, 1e-3, 1e-18);
}

// --- text ------------------------------------------------------------------

TEST(Text, ShowsSixSignificantDigits) {
    EXPECT_EQ(NSStringFromMzPoint({1, -2.5}), "{1, -2.5}");
    EXPECT_EQ(NSStringFromMzSize({1e10, 1.0 / 3}), "{1e+10, 0.333333}");
    EXPECT_EQ(NSStringFromMzRect({{1, 2.5}, {3, 4}}), "{{1, 2.5}, {3, 4}}");
    EXPECT_EQ(NSStringFromMzPoint({kInfinity, kNaN}), "{inf, nan}");
}

}  // namespace
}  // namespace mezalith
