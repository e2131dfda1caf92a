// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/bisector.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Points;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Bisector = std::shared_ptr<MzBisector>;
using Component = std::shared_ptr<MzRingComponent>;

Component edge(MzPoint start, MzPoint end) { return MzRingEdge::ringEdgeFromStart(start, end); }
Component vertex(MzPoint point) { return MzRingInflexVertex::ringInflexVertexFromPoint(point); }

MzBisectors bisectorsOf(Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzBisector::bisectorsFromRingComponents(MzRingComponent::ringComponentsFromRing(&ring));
}

void expectPoint(MzPoint point, double x, double y) {
    EXPECT_NEAR(point.x, x, 1e-12);
    EXPECT_NEAR(point.y, y, 1e-12);
}

Bisector bisectorBetween(const Component& left, const Component& right, MzPoint at) {
    auto l = std::make_shared<MzBisector>();
    auto r = std::make_shared<MzBisector>();
    l->setLeftComponent(left);
    r->setRightComponent(right);
    return MzBisector::bisectorFromLeftBisector(l, r, at);
}

Bisector line(MzPoint start, MzPoint direction) {
    auto bisector = std::make_shared<MzBisector>();
    bisector->setBisectorType(MzBisectorTypeLine);
    bisector->setStart(start);
    bisector->setDirection(direction);
    return bisector;
}

// y = x² with parameter x.
Bisector unitParabola() {
    auto bisector = std::make_shared<MzBisector>();
    bisector->setBisectorType(MzBisectorTypeParabola);
    bisector->setDirection({1, 0});
    bisector->setQuadratic({0, 1});
    return bisector;
}

struct Meeting {
    double s1 = 7;
    double s2 = 7;
    MzPoint point{};
};

Meeting meeting(const MzBisector& a, const MzBisector* b) {
    Meeting m;
    m.point = a.intersectionWithBisector(b, &m.s1, &m.s2);
    return m;
}

// An L, its reflex corner at (4, 4).
const Points kL{{1, 1}, {9, 1}, {9, 4}, {4, 4}, {4, 9}, {1, 9}, {1, 1}};

TEST(Bisector, EndsAtOneUntilItIsSet) {
    const MzBisector bisector;
    EXPECT_EQ(bisector.endParameter(), 1);
    EXPECT_EQ(bisector.bisectorType(), 0);
    EXPECT_EQ(bisector.leftBisector(), nullptr);
    EXPECT_EQ(bisector.rightComponent(), nullptr);
}

TEST(Bisector, LeavesEachConvexCornerInTheMiddle) {
    const auto bisectors = bisectorsOf({{1, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 1}});
    ASSERT_EQ(bisectors.size(), 4u);
    expectPoint(bisectors[0]->start(), 1, 1);
    expectPoint(bisectors[0]->direction(), std::sqrt(0.5), std::sqrt(0.5));
    expectPoint(bisectors[1]->start(), 5, 1);
    expectPoint(bisectors[1]->direction(), -std::sqrt(0.5), std::sqrt(0.5));
    EXPECT_EQ(bisectors[1]->leftComponent(), bisectors[0]->rightComponent());
    EXPECT_EQ(bisectors[0]->endParameter(), 1);
}

TEST(Bisector, LeavesAnInflexVertexAlongTheNormalsOfItsEdges) {
    const auto bisectors = bisectorsOf(kL);
    ASSERT_EQ(bisectors.size(), 7u);
    expectPoint(bisectors[3]->start(), 4, 4);
    expectPoint(bisectors[3]->direction(), 0, -1);
    expectPoint(bisectors[4]->start(), 4, 4);
    expectPoint(bisectors[4]->direction(), -1, 0);
    EXPECT_EQ(bisectors[3]->rightComponent(), bisectors[4]->leftComponent());
    EXPECT_EQ(bisectors[3]->rightComponent()->ringComponentType(), 2);
    EXPECT_EQ(bisectors[4]->rightComponent(), bisectors[5]->leftComponent());
}

TEST(Bisector, OfAnInflexVertexAtTheEndUsesTheFirstEdge) {
    // The reverse walk tests the first point last.
    const auto bisectors =
        bisectorsOf(test::reversed({{4, 4}, {4, 9}, {1, 9}, {1, 1}, {9, 1}, {9, 4}, {4, 4}}));
    ASSERT_EQ(bisectors.size(), 7u);
    expectPoint(bisectors[6]->start(), 4, 4);
    expectPoint(bisectors[6]->direction(), -1, 0);
    EXPECT_EQ(bisectors[6]->rightComponent(), bisectors[0]->leftComponent());
}

TEST(Bisector, BetweenCollinearEdgesIsTheirLeftNormal) {
    const auto bisectors = bisectorsOf({{1, 1}, {3, 1}, {5, 1}, {5, 5}, {1, 5}});
    expectPoint(bisectors[1]->start(), 1, 1);
    expectPoint(bisectors[2]->start(), 3, 1);
    EXPECT_EQ(bisectors[2]->direction().x, 0);
    EXPECT_EQ(bisectors[2]->direction().y, 1);
}

TEST(Bisector, OfOddListsOfComponentsIsWhatCanBeSaid) {
    EXPECT_TRUE(MzBisector::bisectorsFromRingComponents({}).empty());
    EXPECT_TRUE(MzBisector::bisectorsFromRingComponents({nullptr, nullptr}).empty());
    EXPECT_TRUE(MzBisector::bisectorsFromRingComponents({vertex({1, 1}), vertex({2, 2})}).empty());
    const auto bisectors = MzBisector::bisectorsFromRingComponents(
        {edge({1, 1}, {2, 1}), vertex({2, 1}), vertex({3, 1})});
    ASSERT_EQ(bisectors.size(), 2u);
    EXPECT_TRUE(std::isnan(bisectors[1]->direction().x));
}

TEST(Bisector, OfParallelRaysMeetsNowhere) {
    const Meeting m = meeting(*line({0, 0}, {1, 0}), line({0, 1}, {1, 0}).get());
    EXPECT_EQ(m.s1, kInfinity);
    EXPECT_EQ(m.s2, kInfinity);
    expectPoint(m.point, 0, 0);
}

TEST(Bisector, OfLinesMeetsInAPoint) {
    const Meeting m = meeting(*line({0, 0}, {0, 1}), line({3, 4}, {-1, 0}).get());
    EXPECT_EQ(m.s1, 4);
    EXPECT_EQ(m.s2, 3);
    expectPoint(m.point, 0, 4);
}

TEST(Bisector, OfAnInflexVertexNeverMeetsTheOtherOneOfIt) {
    const auto bisectors = bisectorsOf(kL);
    const Meeting m = meeting(*bisectors[3], bisectors[4].get());
    EXPECT_EQ(m.s1, kInfinity);
    EXPECT_EQ(m.s2, kInfinity);
    expectPoint(m.point, 0, 0);
    // The other way round they do, in the vertex, where both start.
    EXPECT_EQ(meeting(*bisectors[4], bisectors[3].get()).s1, 0);
    // And so do those that came from somewhere.
    bisectors[3]->setLeftBisector(std::make_shared<MzBisector>());
    EXPECT_EQ(meeting(*bisectors[3], bisectors[4].get()).s1, 0);
}

TEST(Bisector, MeetsNothingNowhere) {
    const Meeting m = meeting(*line({3, 4}, {0, 1}), nullptr);
    EXPECT_EQ(m.s1, kInfinity);
    EXPECT_EQ(m.s2, kInfinity);
    expectPoint(m.point, 0, 0);
}

TEST(Bisector, OfALineAndAParabolaPicksTheRootOnTheLine) {
    // Crossing y = x + 2 at x = -1 and 2, seen from below and from above.
    const auto parabola = unitParabola();
    const Meeting below = meeting(*line({-3, -1}, {1, 1}), parabola.get());
    EXPECT_EQ(below.s1, 2);
    EXPECT_EQ(below.s2, -1);
    expectPoint(below.point, -1, 1);
    const Meeting above = meeting(*line({5, 7}, {-1, -1}), parabola.get());
    EXPECT_EQ(above.s1, 3);
    EXPECT_EQ(above.s2, 2);
    const Meeting nowhere = meeting(*line({0, -1}, {1, 0}), parabola.get());
    EXPECT_EQ(nowhere.s1, kInfinity);
    expectPoint(nowhere.point, 0, 0);
}

TEST(Bisector, OfAParabolaAndALinePicksTheRootOnTheParabola) {
    const Meeting m = meeting(*unitParabola(), line({-3, -1}, {1, 1}).get());
    EXPECT_EQ(m.s1, 2);
    EXPECT_EQ(m.s2, 5);
    expectPoint(m.point, 2, 4);
    const Meeting nowhere = meeting(*unitParabola(), line({0, -1}, {1, 0}).get());
    EXPECT_EQ(nowhere.s2, kInfinity);
    expectPoint(nowhere.point, 0, 0);
}

TEST(Bisector, LeavesAMeetingOfTwoEdgesBetweenTheOuterOnes) {
    const auto bisector = bisectorBetween(edge({1, 1}, {5, 1}), edge({5, 5}, {5, 9}), {4, 2});
    EXPECT_EQ(bisector->bisectorType(), 1);
    expectPoint(bisector->start(), 4, 2);
    expectPoint(bisector->direction(), -std::sqrt(0.5), std::sqrt(0.5));
    const auto parallel = bisectorBetween(edge({1, 1}, {5, 1}), edge({1, 3}, {5, 3}), {4, 2});
    EXPECT_EQ(parallel->direction().x, 0);
    EXPECT_EQ(parallel->direction().y, 1);
}

TEST(Bisector, BetweenTwoInflexVerticesIsAtRightAnglesToThem) {
    const auto bisector = bisectorBetween(vertex({1, 1}), vertex({4, 5}), {0, 0});
    EXPECT_EQ(bisector->bisectorType(), 1);
    expectPoint(bisector->direction(), -0.8, 0.6);
}

TEST(Bisector, BetweenAnEdgeAndAnInflexVertexIsAParabolaThroughTheMeetingPoint) {
    // Directrix y = 0, focus (3, 4): y = 2 + (x - 3)²/8. At x = 7, y is 4 and the slope 1.
    const auto fromLeft = bisectorBetween(vertex({3, 4}), edge({0, 0}, {9, 0}), {7, 4});
    EXPECT_EQ(fromLeft->bisectorType(), 2);
    expectPoint(fromLeft->start(), 7, 4);
    expectPoint(fromLeft->direction(), 4, 4);
    expectPoint(fromLeft->quadratic(), 0, 2);
    // With the edge on the left it runs the other way.
    const auto fromRight = bisectorBetween(edge({0, 0}, {9, 0}), vertex({3, 4}), {7, 4});
    expectPoint(fromRight->start(), 7, 4);
    expectPoint(fromRight->direction(), -4, -4);
    expectPoint(fromRight->quadratic(), 0, 2);
}

TEST(Bisector, KeepsItsDistanceFromBothComponents) {
    test::Random random(20261121);
    for (int i = 0; i < 1000; ++i) {
        const auto at = [&] { return test::uniform(random, -9, 9); };
        const MzPoint start{at(), at()}, end{at(), at()}, focus{at(), at()};
        const auto directrix = MzRingEdge::ringEdgeFromStart(start, end);
        const MzPoint u = directrix->direction();
        const double h = u.x * (focus.y - start.y) - u.y * (focus.x - start.x);
        if (h < 0.1) continue;
        // A point of the parabola, x along the edge from under the focus.
        const double x = at();
        const double y = h / 2 + x * x / (2 * h);
        const double foot = u.x * (focus.x - start.x) + u.y * (focus.y - start.y) + x;
        const MzPoint p{start.x + u.x * foot - u.y * y, start.y + u.y * foot + u.x * y};
        const auto bisector = bisectorBetween(vertex(focus), directrix, p);
        for (double s = -2; s <= 2; s += 0.5) {
            const MzPoint c{
                bisector->start().x + bisector->direction().x * s + bisector->quadratic().x * s * s,
                bisector->start().y + bisector->direction().y * s +
                    bisector->quadratic().y * s * s};
            const double toEdge = u.x * (c.y - start.y) - u.y * (c.x - start.x);
            ASSERT_NEAR(std::hypot(c.x - focus.x, c.y - focus.y), toEdge, 1e-9 * (1 + toEdge));
        }
        ASSERT_NEAR(bisector->start().x, p.x, 1e-9 * (1 + y));
        ASSERT_NEAR(bisector->start().y, p.y, 1e-9 * (1 + y));
    }
}

TEST(Bisector, OfAFocusOnItsEdgeLogsAndStaysWhereItIs) {
    const test::LogLines log;
    const auto bisector = bisectorBetween(vertex({3, 0}), edge({0, 0}, {9, 0}), {7, 4});
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0],
              "Determinant is zero! This cannot happen -- there's a problem with the algorithm.");
    expectPoint(bisector->start(), 3, 0);
}

TEST(Bisector, BetweenUnknownComponentsHasNoType) {
    EXPECT_EQ(bisectorBetween(nullptr, edge({0, 0}, {9, 0}), {7, 4})->bisectorType(), 0);
    EXPECT_EQ(MzBisector::bisectorFromLeftBisector(nullptr, nullptr, {7, 4})->bisectorType(), 0);
}

// Two parabolas that share the edge y = 0 and have the foci (-2, 4) and (4, 8); they meet where the
// bisector of the foci meets either.
TEST(Bisector, OfTwoParabolasWithFociMeetsOnTheBisectorOfTheFoci) {
    const auto shared = edge({-9, 0}, {9, 0});
    const auto left = bisectorBetween(vertex({-2, 4}), shared, {-2, 2});
    const auto right = bisectorBetween(shared, vertex({4, 8}), {4, 4});
    const Meeting m = meeting(*left, right.get());
    EXPECT_GT(m.s1, 0);
    EXPECT_GT(m.s2, 0);
    const double toEdge = m.point.y;
    EXPECT_NEAR(std::hypot(m.point.x + 2, m.point.y - 4), toEdge, 1e-9);
    EXPECT_NEAR(std::hypot(m.point.x - 4, m.point.y - 8), toEdge, 1e-9);
}

// Two parabolas that share the focus (5, 3), with edges at right angles and with parallel ones.
TEST(Bisector, OfTwoParabolasWithEdgesMeetsOnTheBisectorOfTheEdges) {
    const auto focus = vertex({5, 3});
    const auto lower = MzRingEdge::ringEdgeFromStart({0, 0}, {9, 0});
    const auto left = MzRingEdge::ringEdgeFromStart({0, 9}, {0, 0});
    const auto upper = MzRingEdge::ringEdgeFromStart({9, 9}, {0, 9});
    const auto first = bisectorBetween(left, focus, {2.5, 3});
    const auto second = bisectorBetween(focus, lower, {5, 1.5});
    const auto met = meeting(*second, first.get());
    EXPECT_NEAR(met.point.x, met.point.y, 1e-9);
    EXPECT_NEAR(std::hypot(met.point.x - 5, met.point.y - 3), met.point.x, 1e-9);
    const auto third = bisectorBetween(upper, focus, {5, 6});
    const auto fourth = bisectorBetween(focus, lower, {5, 1.5});
    const auto parallel = meeting(*fourth, third.get());
    EXPECT_NEAR(parallel.point.y, 4.5, 1e-9);
    EXPECT_NEAR(std::hypot(parallel.point.x - 5, 1.5), 4.5, 1e-9);
}

/// Parabolas between a vertex and an edge they share; the bisector of the vertices is the x axis.
struct TwoParabolas {
    Bisector first = unitParabola();
    Bisector second = unitParabola();

    TwoParabolas() {
        const auto shared = edge({-9, 0}, {9, 0});
        first->setLeftComponent(vertex({0, -0.5}));
        first->setRightComponent(shared);
        second->setLeftComponent(shared);
        second->setRightComponent(vertex({0, 0.5}));
    }
};

/// Crosses the x axis upright, at parameter `depth`.
void runUpright(MzBisector& bisector, double x, double depth) {
    bisector.setStart({x, -depth});
    bisector.setDirection({0, 1});
    bisector.setQuadratic({0, 0});
}

TEST(Bisector, OfTwoParabolasMeetsWithinAMillionthOfTheLogarithm) {
    TwoParabolas two;
    runUpright(*two.first, 5, 1);
    for (const double apart : {2.2e-6, -2.2e-6, 0.0}) {
        runUpright(*two.second, 5 * (1 + apart), 2);
        const Meeting m = meeting(*two.first, two.second.get());
        EXPECT_EQ(m.s1, 1) << apart;
        EXPECT_EQ(m.s2, 2) << apart;
        EXPECT_EQ(m.point.x, 5) << apart;
    }
    for (const double apart : {2.4e-6, -2.4e-6}) {
        runUpright(*two.second, 5 * (1 + apart), 2);
        const Meeting m = meeting(*two.first, two.second.get());
        EXPECT_EQ(m.s1, kInfinity) << apart;
        EXPECT_EQ(m.s2, kInfinity) << apart;
    }
}

TEST(Bisector, OfTwoParabolasThatMeetTwicePicksByTheParametersOfTheFirst) {
    // y = s² - 1 at x = 2 + s, and y = s² - 4 at x = 2 - s/2: together at x = 1 and x = 3.
    TwoParabolas two;
    two.first->setStart({2, -1});
    two.second->setStart({2, -4});
    two.second->setDirection({-0.5, 0});
    const Meeting m = meeting(*two.first, two.second.get());
    EXPECT_EQ(m.s1, 1);
    EXPECT_EQ(m.s2, -2);
    expectPoint(m.point, 3, 0);
    const Meeting back = meeting(*two.second, two.first.get());
    EXPECT_EQ(back.s1, kInfinity) << "their line runs along negative x";
}

TEST(Bisector, OfTwoParabolasWithNothingInCommonLooksAtTheOuterComponents) {
    TwoParabolas two;
    two.second->setLeftComponent(edge({-9, 7}, {9, 7}));
    runUpright(*two.first, 5, 1);
    runUpright(*two.second, 5, 2);
    EXPECT_EQ(meeting(*two.first, two.second.get()).s1, 1);
}

TEST(Bisector, OfTwoParabolasRunsAlongTheBareDifferenceOfTheEdges) {
    TwoParabolas two;
    runUpright(*two.first, 5, 1);
    runUpright(*two.second, 5, 2);
    const auto meets = [&](double apart) {
        const auto upright = std::make_shared<MzRingEdge>(),
                   leaning = std::make_shared<MzRingEdge>();
        upright->setDirection({0, 1});
        leaning->setDirection({apart, 1});
        two.first->setLeftComponent(upright);
        two.second->setRightComponent(leaning);
        return meeting(*two.first, two.second.get()).s1 == 1;
    };
    EXPECT_TRUE(meets(1.1e-7));
    EXPECT_FALSE(meets(0.9e-7)) << "a line that hardly runs along x is measured along y";
}

TEST(Bisector, OfTwoParabolasTakesPlacesOnEitherSideOfTheMiddleForOne) {
    // Both cross the axis at x = -1 and x = 1; the first root of the one fits either of the other.
    TwoParabolas two;
    two.first->setStart({0, -1});
    two.second->setStart({0, -4});
    two.second->setDirection({-0.5, 0});
    const Meeting m = meeting(*two.first, two.second.get());
    EXPECT_EQ(m.s1, -1);
    EXPECT_EQ(m.s2, 2);
    expectPoint(m.point, -1, 0);
}

TEST(Bisector, OfTwoParabolasWithoutSuchALineMeetsNowhere) {
    const test::LogLines log;
    const auto one = bisectorBetween(vertex({-2, 4}), edge({-9, 0}, {9, 0}), {-2, 2});
    const auto other = bisectorBetween(vertex({4, 8}), edge({9, 1}, {-9, 1}), {4, 4});
    const Meeting m = meeting(*one, other.get());
    EXPECT_EQ(m.s1, kInfinity);
    EXPECT_EQ(m.s2, kInfinity);
    expectPoint(m.point, 0, 0);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0], "Is this case really possible???");
}

TEST(Bisector, KnowsAFakeRendezvousByTheChainOnOneSide) {
    const auto receiver = line({0, 0}, {1, 0});
    const auto reached = line({3, -2}, {0, 1});
    const auto missed = line({-3, -2}, {0, 1});
    const auto tip = line({9, 9}, {1, 1});
    const auto middle = line({8, 8}, {0, 1});
    middle->setLeftBisector(reached);
    tip->setLeftBisector(middle);
    reached->setEndParameter(2);  // ends where they would meet, not beyond
    EXPECT_FALSE(receiver->fakeRendezvousWithBisectorOnRight(tip.get()));
    reached->setEndParameter(2.5);
    EXPECT_TRUE(receiver->fakeRendezvousWithBisectorOnRight(tip.get()));
    EXPECT_FALSE(receiver->fakeRendezvousWithBisectorOnLeft(tip.get()));
    middle->setLeftBisector(missed);
    EXPECT_FALSE(receiver->fakeRendezvousWithBisectorOnRight(tip.get()));
    middle->setRightBisector(reached);
    tip->setRightBisector(middle);
    EXPECT_TRUE(receiver->fakeRendezvousWithBisectorOnLeft(tip.get()));
    EXPECT_FALSE(receiver->fakeRendezvousWithBisectorOnLeft(nullptr));
    EXPECT_FALSE(receiver->fakeRendezvousWithBisectorOnRight(nullptr));
}

TEST(Bisector, KnowsNoFakeRendezvousWhereEitherStarts) {
    const auto earlier = line({3, -2}, {0, 1});
    earlier->setEndParameter(9);
    const auto tip = line({9, 9}, {1, 1});
    tip->setLeftBisector(earlier);
    const auto isFake = [&](MzPoint start) {
        return line(start, {1, 0})->fakeRendezvousWithBisectorOnRight(tip.get());
    };
    EXPECT_TRUE(isFake({2, 0}));
    EXPECT_FALSE(isFake({3, 0}));
    EXPECT_FALSE(isFake({2, -2}));
}

TEST(Bisector, MeasuresTheDistanceToItsLeftComponent) {
    auto bisector = line({3, 4}, {1, 0});
    EXPECT_EQ(bisector->distanceFromStartToComponents(), 0);
    bisector->setLeftComponent(edge({-1, 1}, {0, 1}));
    EXPECT_EQ(bisector->distanceFromStartToComponents(), 3);
    bisector->setLeftComponent(vertex({0, 0}));
    EXPECT_EQ(bisector->distanceFromStartToComponents(), 5);
}

std::string drawn(MzBisector& bisector) {
    platform::RecordingPort port;
    bisector.path().addTo(port);
    return port.text();
}

TEST(Bisector, DrawsALineToItsEnd) {
    auto bisector = line({1, 2}, {3, 4});
    bisector->setEndParameter(2);
    EXPECT_EQ(drawn(*bisector), "moveToPoint 1 2\naddLineToPoint 7 10\n");
    EXPECT_EQ(bisector->path().lineWidth(), 0.125);
    EXPECT_EQ(bisector->endParameter(), 2);
}

TEST(Bisector, DrawsNothingWhileItsEndIsInfinite) {
    auto bisector = line({1, 2}, {3, 4});
    bisector->setEndParameter(kInfinity);
    EXPECT_TRUE(bisector->path().isEmpty());
    EXPECT_EQ(bisector->path().lineWidth(), 0.125);
}

TEST(Bisector, DrawsAParabolaTwiceAsTheSameCubic) {
    auto bisector = unitParabola();
    bisector->setEndParameter(3);
    const std::string first = drawn(*bisector);
    EXPECT_EQ(first, "moveToPoint 0 0\naddCurveToPoint 1 0 2 3 3 9\n");
    EXPECT_EQ(bisector->endParameter(), 1);
    EXPECT_EQ(drawn(*bisector), first);
    EXPECT_EQ(bisector->endParameter(), 1);
    expectPoint(bisector->direction(), 3, 0);
    expectPoint(bisector->quadratic(), 0, 9);
}

TEST(Bisector, DescribesItself) {
    const auto behindBase = [](const std::string& text) { return text.substr(text.find("> ")); };
    EXPECT_EQ(behindBase(line({1, 2}, {0.6, 0.8})->description()),
              "> Start: (1, 2) Direction: (0.600, 0.800)");
    EXPECT_EQ(behindBase(unitParabola()->description()),
              "> Start: (0, 0) Direction: (1.000, 0.000) Quadratic: (0.000, 1.000)");
    EXPECT_EQ(unitParabola()->description().find("<MzBisector: 0x"), 0u);
}

TEST(Bisector, ReleasesDeepTreesWithoutRecursion) {
    Bisector tip = std::make_shared<MzBisector>();
    for (int i = 0; i < 300000; ++i) {
        tip = MzBisector::bisectorFromLeftBisector(tip, std::make_shared<MzBisector>(), {0, 0});
    }
    const std::weak_ptr<MzBisector> below = tip->leftBisector();
    tip.reset();
    EXPECT_TRUE(below.expired());
}

}  // namespace
}  // namespace mezalith
