// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/round_rect.hpp>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using platform::BezierPath;
using platform::CairoPort;
using Lines = std::vector<std::string>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr float kInfiniteRadius = std::numeric_limits<float>::infinity();
constexpr MzPoint kTip{10, -20};

/// The four shapes, for laws that hold for each of them.
const std::vector<std::function<BezierPath(MzRect, float)>> kShapes{
    [](MzRect rect, float radius) { return bezierPathWithRoundedRect(rect, radius); },
    [](MzRect rect, float radius) { return bezierPathWithTopRoundedRect(rect, radius); },
    [](MzRect rect, float radius) { return bezierPathWithCartoonBubbleInRect(rect, radius); },
    [](MzRect rect, float radius) {
        return bezierPathWithCartoonBubbleInRect(rect, kTip, radius);
    }};

Lines recorded(const BezierPath& path) {
    platform::RecordingPort port;
    path.addTo(port);
    return port.lines();
}

TEST(RoundRect, RoundsEveryCornerFromTheMiddleOfTheTop) {
    EXPECT_EQ(
        recorded(bezierPathWithRoundedRect({{1, 2}, {100, 50}}, 10)),
        (Lines{"moveToPoint 51 52", "addArcToPoint 1 52 1 2 10", "addArcToPoint 1 2 101 2 10",
               "addArcToPoint 101 2 101 52 10", "addArcToPoint 101 52 1 52 10", "closeSubpath"}));
}

TEST(RoundRect, KeepsTheBottomCornersSquareWhereOnlyTheTopIsRounded) {
    EXPECT_EQ(
        recorded(bezierPathWithTopRoundedRect({{1, 2}, {100, 50}}, 10)),
        (Lines{"moveToPoint 51 52", "addArcToPoint 1 52 1 2 10", "addArcToPoint 1 2 101 2 0",
               "addArcToPoint 101 2 101 52 0", "addArcToPoint 101 52 1 52 10", "closeSubpath"}));
}

TEST(RoundRect, PutsTheStemOfABubbleBetween35And65AtATipAt10) {
    EXPECT_EQ(recorded(bezierPathWithCartoonBubbleInRect({{0, 0}, {100, 50}}, kTip, 30)),
              (Lines{"moveToPoint 50 50", "addArcToPoint 0 50 0 0 25", "addArcToPoint 0 0 35 0 25",
                     "addLineToPoint 35 0", "addLineToPoint 10 -20", "addLineToPoint 65 0",
                     "addArcToPoint 65 0 100 0 25", "addArcToPoint 100 0 100 50 25",
                     "addArcToPoint 100 50 0 50 25", "closeSubpath"}));
}

TEST(RoundRect, PutsTheStemOfABubbleWithoutATipOutOfTheRightSide) {
    EXPECT_EQ(
        recorded(bezierPathWithCartoonBubbleInRect({{0, 0}, {200, 160}}, 10)),
        (Lines{"moveToPoint 100 160", "addArcToPoint 0 160 0 0 10", "addArcToPoint 0 0 200 0 10",
               "addArcToPoint 200 0 200 30 10", "addLineToPoint 200 30", "addLineToPoint 250 105",
               "addLineToPoint 200 80", "addArcToPoint 200 80 200 160 10",
               "addArcToPoint 200 160 0 160 10", "closeSubpath"}));
}

TEST(RoundRect, LeavesTheStemBehindATipFarFromItsRectangle) {
    const Lines lines =
        recorded(bezierPathWithCartoonBubbleInRect({{0, 0}, {100, 50}}, {900, 8}, 5));
    EXPECT_EQ((Lines(lines.begin() + 2, lines.begin() + 7)),
              (Lines{"addArcToPoint 0 0 925 0 5", "addLineToPoint 925 0", "addLineToPoint 900 8",
                     "addLineToPoint 955 0", "addArcToPoint 955 0 100 0 5"}));
}

TEST(RoundRect, AppendsBehindWhatThePathHolds) {
    for (const auto append :
         {appendBezierPathWithRoundedRect, appendBezierPathWithTopRoundedRect}) {
        BezierPath path;
        path.moveToPoint({7, 8});
        append(path, {{0, 0}, {20, 20}}, 5);
        EXPECT_EQ(recorded(path).size(), 7U);
        EXPECT_EQ(recorded(path)[0], "moveToPoint 7 8");
    }
    BezierPath bubbles;
    appendBezierPathWithCartoonBubbleInRect(bubbles, {{0, 0}, {20, 20}}, 5);
    appendBezierPathWithCartoonBubbleInRect(bubbles, {{0, 0}, {20, 20}}, kTip, 5);
    EXPECT_EQ(recorded(bubbles).size(), 20U);
}

TEST(RoundRect, IsPlainForARadiusThatIsNotPositive) {
    const Lines plain{"moveToPoint 1 2", "addLineToPoint 11 2", "addLineToPoint 11 22",
                      "addLineToPoint 1 22", "closeSubpath"};
    for (const auto& shape : kShapes) {
        for (const float radius : {0.0F, -1.0F, -kInfiniteRadius, std::nanf("")}) {
            EXPECT_EQ(recorded(shape({{1, 2}, {10, 20}}, radius)), plain) << radius;
        }
    }
}

TEST(RoundRect, IsNothingForAnEmptyRectangle) {
    for (const auto& shape : kShapes) {
        for (const float radius : {0.0F, 5.0F}) {
            EXPECT_TRUE(shape({{1, 2}, {0, 20}}, radius).isEmpty());
            EXPECT_TRUE(shape({{1, 2}, {10, 0}}, radius).isEmpty());
            EXPECT_TRUE(shape({{1, 2}, {-10, 20}}, radius).isEmpty());
            EXPECT_TRUE(shape({{1, 2}, {10, -20}}, radius).isEmpty());
        }
    }
}

TEST(RoundRect, IsNothingWhereSidesAreNotFinite) {
    for (const auto& shape : kShapes) {
        for (const double bad : {std::nan(""), kInfinity, -kInfinity}) {
            for (const float radius : {0.0F, 5.0F}) {
                EXPECT_TRUE(shape({{bad, 2}, {10, 20}}, radius).isEmpty());
                EXPECT_TRUE(shape({{1, bad}, {10, 20}}, radius).isEmpty());
                EXPECT_TRUE(shape({{1, 2}, {bad, 20}}, radius).isEmpty());
                EXPECT_TRUE(shape({{1, 2}, {10, bad}}, radius).isEmpty());
            }
        }
        EXPECT_TRUE(shape({{1e308, 0}, {1e308, 1}}, 5).isEmpty());
        EXPECT_TRUE(shape({{0, 1e308}, {1, 1e308}}, 5).isEmpty());
    }
}

TEST(RoundRect, HasNoStemToATipThatIsNotFinite) {
    const Lines rounded = recorded(bezierPathWithRoundedRect({{0, 0}, {100, 50}}, 10));
    for (const MzPoint tip : {MzPoint{std::nan(""), 0}, MzPoint{0, kInfinity}}) {
        EXPECT_EQ(recorded(bezierPathWithCartoonBubbleInRect({{0, 0}, {100, 50}}, tip, 10)),
                  rounded);
    }
}

TEST(RoundRect, NarrowsHalfTheShorterSideToSinglePrecision) {
    const Lines lines = recorded(bezierPathWithRoundedRect({{0, 0}, {0.2, 7}}, kInfiniteRadius));
    EXPECT_EQ(lines[1], "addArcToPoint 0 7 0 0 0.10000000149011612");
    EXPECT_EQ(recorded(bezierPathWithRoundedRect({{0, 0}, {7, 0.2}}, 0.1F))[1],
              "addArcToPoint 0 0.2 0 0 0.10000000149011612");
}

TEST(RoundRect, KeepsTheRadiusOfAHugeRectangleFinite) {
    const Lines lines =
        recorded(bezierPathWithRoundedRect({{0, 0}, {1e300, 1e300}}, kInfiniteRadius));
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[1], "addArcToPoint 0 1e+300 0 0 3.4028234663852886e+38");
}

TEST(RoundRect, IsDrawnWithoutAFaultForAnyNumbers) {
    const auto number = [] {
        static const std::array<double, 14> kNumbers{
            0,    -0.0,   1,     -1,        25,         1e-300,       -1e-300,
            1e30, -1e300, 1e308, kInfinity, -kInfinity, std::nan(""), 0.1};
        return *rc::gen::oneOf(rc::gen::elementOf(kNumbers), rc::gen::arbitrary<double>());
    };
    EXPECT_TRUE(rc::check("a port takes every shape", [&] {
        const MzRect rect{{number(), number()}, {number(), number()}};
        const MzPoint tip{number(), number()};
        const float radius = *rc::gen::element(0.0F, 5.0F, 1e-40F, 3e38F, kInfiniteRadius, -1.0F);
        const auto port = CairoPort::pixelPort({16, 16});
        for (const auto& shape : kShapes) {
            shape(rect, radius).fill(*port);
            shape(rect, radius).stroke(*port);
        }
        bezierPathWithCartoonBubbleInRect(rect, tip, radius).fill(*port);
        bezierPathWithCartoonBubbleInRect(rect, tip, radius).stroke(*port);
        RC_ASSERT(!port->error());
    }));
}

/// The alpha, 0 to 255, of the pixel around (x, y), y up.
std::uint32_t alphaAt(const CairoPort& port, int x, int y) {
    const int row = port.pixelHeight() - 1 - y;
    return port.pixelRow(row)[static_cast<std::size_t>(x)] >> 24;
}

TEST(RoundRect, FillsABubbleAndItsStem) {
    const auto port = CairoPort::pixelPort({120, 80});
    port->setRGBFillColor(0, 0, 0, 1);
    bezierPathWithCartoonBubbleInRect({{5, 25}, {100, 50}}, {15, 5}, 15).fill(*port);
    EXPECT_EQ(alphaAt(*port, 50, 50), 255U);
    EXPECT_EQ(alphaAt(*port, 6, 50), 255U);
    EXPECT_EQ(alphaAt(*port, 6, 26), 0U);    // rounded off
    EXPECT_EQ(alphaAt(*port, 103, 73), 0U);  // rounded off
    EXPECT_EQ(alphaAt(*port, 45, 23), 255U);
    EXPECT_EQ(alphaAt(*port, 30, 15), 255U);  // halfway down the stem
    EXPECT_EQ(alphaAt(*port, 80, 20), 0U);
}

}  // namespace
}  // namespace mezalith
