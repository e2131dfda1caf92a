// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/image_decoder.hpp>
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/testing.hpp>
#include <tests/golden/golden.hpp>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::golden {
namespace {

using platform::GraphicsPort;
using platform::Image;
using testing::TestDrawContext;

constexpr double kPi = std::numbers::pi;
constexpr std::array<MzPoint, 4> kHotSpots{{{0, 0}, {0.5, 0.5}, {0.5, 0}, {1, 0.75}}};
constexpr std::array<double, 4> kRotations{0, kPi / 6, kPi / 2, -3 * kPi / 4};

std::shared_ptr<const Image> icon(const std::string& name) {
    const auto file = std::filesystem::path(MEZALITH_SOURCE_DIR) / "data/map/icons" / name;
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    return platform::decodeImage(std::as_bytes(std::span(bytes))).image;
}

/// Stamps the icon at a point, and a red dot on the point.
void stamp(GraphicsPort& port, const std::shared_ptr<const Image>& image, MzPoint place,
           MzPoint hotSpot, double rotation, MzSize size) {
    const auto symbolizer = MzImageSymbolizer::initWithImage(image, hotSpot, rotation, size);
    TestDrawContext context;
    testing::drawInto(port, *symbolizer, MzPointGeometry::initWithPoint(place), context);
    port.setRGBFillColor(1, 0, 0, 1);
    port.addEllipseInRect({{place.x - 1, place.y - 1}, {2, 2}});
    port.drawPath(platform::PathDrawingMode::Fill);
}

TEST(GoldenIcons, AtHotSpotsAndRotations) {
    const auto harbor = icon("harbor.png");
    platform::RecordingPort recorder;
    const auto draw = [&](GraphicsPort& port) {
        for (std::size_t i = 0; i < kHotSpots.size(); ++i) {
            const double x = 40 + 80 * static_cast<double>(i);
            stamp(port, harbor, {x, 120}, kHotSpots[i], 0, harbor->size());
            stamp(port, harbor, {x, 40}, {0.5, 0.25}, kRotations[i], {32, 24});
        }
    };
    draw(recorder);
    EXPECT_TRUE(matchesText("icons", recorder.text()));
    EXPECT_TRUE(matchesPicture("icons", pictureOf({320, 160}, 1, draw)));
}

// One picture of each format, larger than its pixels, twice the pixels to a point: what is drawn
// anew for its size is crisp, what has pixels of its own is as good as these.
TEST(GoldenIcons, OfEachFormatOnADenseScreen) {
    const auto picture = pictureOf({160, 40}, 2, [](GraphicsPort& port) {
        double x = 20;
        for (const char* name : {"harbor.svg", "harbor.png", "harbor.jpg", "mountain.tif"}) {
            stamp(port, icon(name), {x, 20}, {0.5, 0.5}, 0, {30, 30});
            x += 40;
        }
    });
    EXPECT_TRUE(matchesPicture("icon-formats", picture));
}

}  // namespace
}  // namespace mezalith::golden
