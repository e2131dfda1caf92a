// SPDX-License-Identifier: MIT
#include <mezalith/platform/shadow.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/testing.hpp>
#include <tests/golden/golden.hpp>

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::golden {
namespace {

using platform::Color;
using platform::GraphicsPort;
using testing::TestDrawContext;

constexpr std::array<const char*, 5> kShapes{"square", "circle", "triangle", "cross", "star"};
constexpr std::array<float, 3> kRotations{0, 30, 90};

/// A large marker that shows what it is made of.
std::shared_ptr<MzPointSymbolizer> marker(int shape, float rotation) {
    auto point = std::make_shared<MzPointSymbolizer>();
    point->setSymbolType(shape);
    point->setSymbolRotation(rotation);
    point->setSymbolSize(24);
    point->setStrokeWidth(2);
    point->setFillColor(Color::colorWithDeviceRed(0.96, 0.75, 0.2, 1));
    point->setStrokeColor(Color::colorWithDeviceRed(0.12, 0.2, 0.35, 1));
    return point;
}

void drawAt(GraphicsPort& port, MzPointSymbolizer& point, MzPoint place, bool selected = false) {
    TestDrawContext context;
    testing::drawInto(port, point, MzPointGeometry::initWithPoint(place), context, selected);
}

std::string recorded(MzPointSymbolizer& point, bool selected = false) {
    platform::RecordingPort port;
    drawAt(port, point, {100, 50}, selected);
    return port.text();
}

TEST(GoldenMarkers, EachShapeAtEachRotation) {
    for (std::size_t shape = 0; shape < kShapes.size(); ++shape) {
        std::string text;
        for (const float rotation : kRotations) {
            text += "rotation " + std::to_string(static_cast<int>(rotation)) + '\n';
            text += recorded(*marker(static_cast<int>(shape), rotation));
        }
        EXPECT_TRUE(matchesText(std::string("marker-") + kShapes[shape], text));
    }
}

TEST(GoldenMarkers, LookAsTheyShould) {
    const auto picture = pictureOf({180, 108}, 2, [](GraphicsPort& port) {
        for (std::size_t shape = 0; shape < kShapes.size(); ++shape) {
            for (std::size_t row = 0; row < kRotations.size(); ++row) {
                drawAt(port, *marker(static_cast<int>(shape), kRotations[row]),
                       {18 + 36 * static_cast<double>(shape), 90 - 36 * static_cast<double>(row)});
            }
        }
    });
    EXPECT_TRUE(matchesPicture("markers", picture));
}

TEST(GoldenMarkers, ASelectedMarkerHasItsHaloBeneath) {
    EXPECT_TRUE(matchesText("halo", recorded(*marker(1, 0), true)));
    const auto picture = pictureOf({144, 48}, 2, [](GraphicsPort& port) {
        int x = 24;
        for (const int shape : {0, 1, 4}) {
            drawAt(port, *marker(shape, 0), {static_cast<double>(x), 24}, true);
            x += 48;
        }
    });
    EXPECT_TRUE(matchesPicture("halo", picture));
}

TEST(GoldenMarkers, ShadowsFallFromWhatIsStamped) {
    const auto shadowed = [](bool fill, bool stroke) {
        auto point = marker(1, 0);
        point->setShouldFill(fill);
        point->setShouldStroke(stroke);
        point->setShouldShadow(true);
        point->setShadowOffsetWidth(4);
        point->setShadowOffsetHeight(-3);
        point->setShadowBlurRadius(3);
        return point;
    };
    EXPECT_TRUE(matchesText("marker-shadow", recorded(*shadowed(true, true))));
    const auto picture = pictureOf({144, 48}, 2, [&](GraphicsPort& port) {
        drawAt(port, *shadowed(true, true), {22, 26});
        drawAt(port, *shadowed(true, false), {70, 26});
        drawAt(port, *shadowed(false, true), {118, 26});
    });
    EXPECT_TRUE(matchesPicture("marker-shadow", picture));
}

}  // namespace
}  // namespace mezalith::golden
