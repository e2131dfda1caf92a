// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/ring_component.hpp>

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Points;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

MzRingComponents componentsOf(Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzRingComponent::ringComponentsFromRing(&ring);
}

std::string numberText(double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

std::string textOf(MzPoint p) { return numberText(p.x) + "," + numberText(p.y); }

/// "1,1-5,1 (5,1) ..." : edges and, in brackets, inflex vertices.
std::string textOf(const MzRingComponents& components) {
    std::string text;
    for (const auto& component : components) {
        if (const auto* edge = dynamic_cast<const MzRingEdge*>(component.get())) {
            text += textOf(edge->start()) + "-" + textOf(edge->end()) + " ";
        } else if (const auto* vertex = dynamic_cast<const MzRingInflexVertex*>(component.get())) {
            text += "(" + textOf(vertex->point()) + ") ";
        }
    }
    if (!text.empty()) text.pop_back();
    return text;
}

std::string textOf(const Points& points) { return textOf(componentsOf(points)); }

const Points kSquare{{1, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 1}};
const Points kL{{1, 1}, {9, 1}, {9, 4}, {4, 4}, {4, 9}, {1, 9}, {1, 1}};
// The same, from its reflex corner on.
const Points kLFromReflexCorner{{4, 4}, {4, 9}, {1, 9}, {1, 1}, {9, 1}, {9, 4}, {4, 4}};

TEST(RingComponent, TellsItsType) {
    EXPECT_EQ(MzRingComponent().ringComponentType(), 0);
    EXPECT_EQ(MzRingEdge().ringComponentType(), 1);
    EXPECT_EQ(MzRingInflexVertex().ringComponentType(), 2);
}

TEST(RingComponent, OfASquareIsItsEdgesFromTheFirstPointOn) {
    EXPECT_EQ(textOf(kSquare), "1,1-5,1 5,1-5,5 5,5-1,5 1,5-1,1");
}

TEST(RingComponent, OfAClockwiseSquareIsItsEdgesTheOtherWayRound) {
    EXPECT_EQ(textOf(test::reversed(kSquare)), "1,1-5,1 5,1-5,5 5,5-1,5 1,5-1,1");
    EXPECT_EQ(textOf(Points{{1, 1}, {1, 5}, {5, 5}, {5, 1}, {1, 1}}),
              "1,1-5,1 5,1-5,5 5,5-1,5 1,5-1,1");
}

TEST(RingComponent, PutsAnInflexVertexRightBehindTheEdgeThatEndsThere) {
    const std::string text = "1,1-9,1 9,1-9,4 9,4-4,4 (4,4) 4,4-4,9 4,9-1,9 1,9-1,1";
    EXPECT_EQ(textOf(kL), text);
    EXPECT_EQ(textOf(test::reversed(kL)), text);
}

TEST(RingComponent, LosesTheFirstVertexOfACounterClockwiseRingOnly) {
    EXPECT_EQ(textOf(kLFromReflexCorner), "4,4-4,9 4,9-1,9 1,9-1,1 1,1-9,1 9,1-9,4 9,4-4,4");
    EXPECT_EQ(textOf(test::reversed(kLFromReflexCorner)),
              "4,4-4,9 4,9-1,9 1,9-1,1 1,1-9,1 9,1-9,4 9,4-4,4 (4,4)");
}

TEST(RingComponent, FindsTheFirstVertexOfARingThatIsNotClosed) {
    Points open = kLFromReflexCorner;
    open.pop_back();
    EXPECT_EQ(textOf(open), "9,4-4,4 (4,4) 4,4-4,9 4,9-1,9 1,9-1,1 1,1-9,1 9,1-9,4");
}

TEST(RingComponent, DropsTheEdgeBetweenRepeatedPoints) {
    const Points repeated{{1, 1}, {5, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 1}};
    EXPECT_EQ(textOf(repeated), textOf(kSquare));
    EXPECT_EQ(textOf(test::reversed(repeated)), textOf(kSquare));
}

TEST(RingComponent, TestsACornerTwiceStoredOnTheReverseWalkOnly) {
    const Points repeated{{1, 1}, {9, 1}, {9, 4}, {4, 4}, {4, 4}, {4, 9}, {1, 9}, {1, 1}};
    EXPECT_EQ(textOf(repeated), "1,1-9,1 9,1-9,4 9,4-4,4 4,4-4,9 4,9-1,9 1,9-1,1");
    EXPECT_EQ(textOf(test::reversed(repeated)), "1,1-9,1 9,1-9,4 9,4-4,4 4,4-4,9 4,9-1,9 1,9-1,1");
}

TEST(RingComponent, StartsTheEdgeAfterANearlyRepeatedPointDifferentlyByDirection) {
    const double near = 5 + 5e-9;  // a relative 1e-9 further
    const auto forward = componentsOf({{1, 1}, {5, 1}, {near, 1}, {5, 5}, {1, 5}, {1, 1}});
    ASSERT_EQ(forward.size(), 4u);
    EXPECT_EQ(static_cast<const MzRingEdge&>(*forward[1]).start().x, near);
    // On its way back the reverse walk meets (5, 1) first and drops (near, 1).
    const auto reverse = componentsOf({{1, 1}, {1, 5}, {5, 5}, {near, 1}, {5, 1}, {1, 1}});
    ASSERT_EQ(reverse.size(), 4u);
    EXPECT_EQ(static_cast<const MzRingEdge&>(*reverse[1]).start().x, 5);
}

TEST(RingComponent, TakesPointsWithinARelative1e8ForOne) {
    const auto countWith = [](double apart) {
        return componentsOf({{100, 100}, {500, 100}, {500, 100 + apart}, {500, 500}, {100, 500}})
            .size();
    };
    EXPECT_EQ(countWith(1e-6), 4u);     // a relative 9.99999990e-9
    EXPECT_EQ(countWith(1.01e-6), 5u);  // a relative 1.01e-8: a straight corner
    EXPECT_EQ(countWith(0.99e-6), 4u);
}

TEST(RingComponent, SeesNoDifferenceAtACoordinateOfZero) {
    // The edges that end at (5, 0) and (0, 0) differ from their starts in x, but that is 0 at the
    // latter, and y is 0 at both.
    EXPECT_EQ(textOf(Points{{0, 0}, {5, 0}, {5, 5}, {0, 5}, {0, 0}}), "0,0-5,0 5,0-5,5");
}

TEST(RingComponent, OfNothingIsNothing) {
    EXPECT_TRUE(MzRingComponent::ringComponentsFromRing(nullptr).empty());
    const MzLinearRing none{7, nullptr};
    EXPECT_TRUE(MzRingComponent::ringComponentsFromRing(&none).empty());
    EXPECT_TRUE(componentsOf({}).empty());
}

TEST(RingComponent, WalksRingsOfOneAndTwoPointsForward) {
    EXPECT_TRUE(componentsOf({{1, 1}}).empty());
    EXPECT_EQ(textOf(Points{{1, 1}, {2, 3}}), "2,3-1,1 1,1-2,3");
}

TEST(RingComponent, WalksRingsWithoutAnAreaForward) {
    EXPECT_EQ(textOf(Points{{1, 1}, {2, 1}, {3, 1}}), "3,1-1,1 1,1-2,1 2,1-3,1");
    const auto components = componentsOf({{1, 1}, {kNaN, 2}, {3, 4}, {1, 5}});
    ASSERT_FALSE(components.empty());
    EXPECT_EQ(textOf(static_cast<const MzRingEdge&>(*components[0]).end()), "1,1");
}

TEST(RingComponent, GivesAnEdgeItsUnitDirection) {
    const auto edge = MzRingEdge::ringEdgeFromStart({1, 2}, {4, 6});
    EXPECT_EQ(edge->direction().x, 0.6);
    EXPECT_EQ(edge->direction().y, 0.8);
    const auto none = MzRingEdge::ringEdgeFromStart({1, 2}, {1, 2});
    EXPECT_TRUE(std::isnan(none->direction().x) && std::isnan(none->direction().y));
}

TEST(RingComponent, DescribesItself) {
    const auto behindBase = [](const std::string& text) { return text.substr(text.find("> ")); };
    const auto edge = MzRingEdge::ringEdgeFromStart({1.4, 2.6}, {4.4, 6.6});
    EXPECT_EQ(behindBase(edge->description()),
              "> Start: (1, 3) End: (4, 7) Direction: (0.600, 0.800)");
    EXPECT_EQ(edge->description().find("<MzRingEdge: 0x"), 0u);
    const auto vertex = MzRingInflexVertex::ringInflexVertexFromPoint({-0.6, 1e20});
    EXPECT_EQ(behindBase(vertex->description()), "> Point: (-1, 100000000000000000000)");
    EXPECT_EQ(MzRingComponent().description().find("<MzRingComponent: 0x"), 0u);
}

}  // namespace
}  // namespace mezalith
