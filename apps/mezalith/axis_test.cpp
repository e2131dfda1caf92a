// SPDX-License-Identifier: MIT
#include "apps/mezalith/axis.hpp"

#include "mezalith/geometry/test_support.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

const test::Rings kHoled{{{1, 1}, {11, 1}, {11, 5}, {1, 5}, {1, 1}},
                         {{7, 2}, {9, 2}, {9, 4}, {7, 4}, {7, 2}}};

std::optional<Axis> axisOf(const test::Rings& rings, const AxisQuery& query) {
    test::OwnedPolygon owned(rings);
    return app::axisOf(owned.record(), query);
}

std::size_t countOf(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        ++count;
    return count;
}

TEST(Axis, IsOfThePolygonOrOfOneOfItsRings) {
    EXPECT_NEAR(axisOf(kHoled, {})->deepest->clearance, 2, 1e-8);
    EXPECT_NEAR(axisOf(kHoled, {.ring = 1})->deepest->clearance, 1, 1e-8);
    EXPECT_FALSE(axisOf(kHoled, {.ring = 2}));
    EXPECT_FALSE(axisOf({{{1, 1}, {2, 2}}}, {}));
}

TEST(Axis, IsPrunedWhereAsked) {
    const auto whole = axisOf({kHoled[0]}, {});
    const auto pruned = axisOf({kHoled[0]}, {.ratio = 1.5});
    EXPECT_EQ(whole->arcs.size(), 5u);
    EXPECT_EQ(pruned->arcs.size(), 1u);
    EXPECT_TRUE(whole->spine.empty());
    EXPECT_EQ(axisOf({kHoled[0]}, {.ratio = 1.5, .wantsSpine = true})->spine.size(), 129u);
}

TEST(Axis, OfTheSettledKindSaysHowItWent) {
    const auto axis = axisOf(kHoled, {.isSettled = true});
    ASSERT_TRUE(axis && axis->deepest);
    EXPECT_NEAR(axis->deepest->clearance, 2, 1e-9);
    EXPECT_EQ(axis->report.find("converged after "), 0u);
    EXPECT_NE(axis->report.find(" loops of at most 16"), std::string::npos);
    // From its reflex corner on.
    const auto lost =
        axisOf({{{4, 4}, {4, 9}, {1, 9}, {1, 1}, {9, 1}, {9, 4}, {4, 4}}}, {.isSettled = true});
    EXPECT_EQ(lost->report, "did not converge in 36 loops of at most 36");
}

TEST(Axis, BendsCurvesInSixteenPieces) {
    const auto axis = axisOf({{{1, 1}, {9, 1}, {9, 4.5}, {4, 4.5}, {4, 9}, {1, 9}, {1, 1}}}, {});
    const auto curve = std::ranges::find_if(axis->arcs, &MzSkeletonArc::isParabola);
    ASSERT_NE(curve, axis->arcs.end());
    const auto points = axis->pointsOf(*curve);
    ASSERT_EQ(points.size(), 17u);
    for (const MzPoint p : points) {
        EXPECT_NEAR(std::hypot(p.x - 4, p.y - 4.5), std::min(p.x - 1, p.y - 1), 1e-7);
    }
}

TEST(Axis, IsWrittenAFeatureALine) {
    const auto axis = axisOf(kHoled, {.wantsSpine = true});
    const std::string text = geoJSONOf(*axis, 7);
    EXPECT_EQ(countOf(text, "\"kind\":\"node\""), axis->nodes.size());
    EXPECT_EQ(countOf(text, "\"kind\":\"arc\""), axis->arcs.size());
    EXPECT_EQ(countOf(text, "\"kind\":\"deepest\""), 1u);
    EXPECT_EQ(countOf(text, "\"widths\":["), 1u);
    EXPECT_EQ(countOf(text, "\"polygon\":7"), countOf(text, "\"Feature\""));
    EXPECT_EQ(countOf(text, "\n") + 1, countOf(text, "\"Feature\""));
}

TEST(Axis, MakesFeaturesForEachLayer) {
    const auto axis = axisOf(kHoled, {.wantsSpine = true});
    const auto features = featuresOf(*axis, true);
    EXPECT_EQ(features.size(), axis->arcs.size() + 2);
    EXPECT_EQ(features.front()->kind(), "axis");
    EXPECT_EQ(features.back()->kind(), "spine");
    EXPECT_EQ(featuresOf(*axis, false).size(), axis->arcs.size() + 1);
}

}  // namespace
}  // namespace mezalith::app
