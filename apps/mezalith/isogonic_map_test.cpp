// SPDX-License-Identifier: MIT
#include "apps/mezalith/isogonic_map.hpp"

#include <mezalith/platform/recording_port.hpp>

#include <algorithm>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

constexpr host::BoundingBox kWorld{-180, -90, 180, 90};
constexpr host::BoundingBox kNorway{3, 57, 32, 72};

struct Map {
    explicit Map(host::BoundingBox area, std::shared_ptr<MzMapProjection> projection)
        : view({.projection = std::move(projection), .area = area, .size = {1200, 600}}),
          lines(MzGeomagneticField(*MzGeomagneticModel::internationalReferenceField(), 2026.0),
                view.seen()),
          isogons(isogonsInSight(view, lines,
                                 isogonicLevels(lines.least(), lines.greatest(), std::nullopt))) {}

    host::MapView view;
    host::IsogonicLines lines;
    std::vector<Isogon> isogons;
};

// Made once: tracing the lines of the world takes a moment.
Map& world() {
    static Map map(kWorld, MzMapProjection::mapProjectionWithPlateCarree());
    return map;
}

Map& norway() {
    static Map map(kNorway, MzMapProjection::mapProjectionWithUTMZone(33));
    return map;
}

IsogonicStyle styleOf(const Map& map) {
    std::vector<double> levels;
    for (const Isogon& isogon : map.isogons) levels.push_back(isogon.level);
    return IsogonicStyle(levels);
}

TEST(IsogonicMap, OfTheWorldHasEveryLevel) {
    const Map& map = world();
    ASSERT_EQ(map.isogons.size(), 20U);
    EXPECT_EQ(map.isogons.front().level, -150);
    EXPECT_EQ(map.isogons.back().level, 180);
    for (const Isogon& isogon : map.isogons) EXPECT_FALSE(isogon.lines.empty());
}

TEST(IsogonicMap, OfACountryHasTheLevelsInSight) {
    const Map& map = norway();
    ASSERT_FALSE(map.isogons.empty());
    EXPECT_GT(map.isogons.front().level, -45);
    EXPECT_LT(map.isogons.back().level, 60);
    // More can be had around what is in sight.
    EXPECT_LT(map.lines.least(), map.isogons.front().level);
}

TEST(IsogonicMap, DrawsZeroLastOnItsCasing) {
    Map& map = world();
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    drawIsogons(map.view, map.isogons, styleOf(map));
    std::vector<std::string> colors;
    for (const std::string& line : port.lines()) {
        if (line.starts_with("setStrokeColor")) colors.push_back(line);
    }
    ASSERT_GE(colors.size(), 22U);
    EXPECT_EQ(colors.back(), "setStrokeColor 0 0 0 1");
    EXPECT_EQ(colors[colors.size() - 2], "setStrokeColor 1 1 1 1");
}

bool overlap(const Caption& a, const Caption& b) {
    return !MzIsEmptyRect(MzIntersectionRect(captionBox(a), captionBox(b)));
}

TEST(IsogonicMap, PutsCaptionsWhereNoneCoversAnother) {
    for (const Map* map : {&world(), &norway()}) {
        const std::vector<Caption> captions =
            isogonCaptions(map->view, map->isogons, styleOf(*map));
        ASSERT_GE(captions.size(), 4U);
        EXPECT_EQ(captions.front().text, "0\u00b0");
        for (std::size_t i = 0; i < captions.size(); ++i) {
            const MzRect box = captionBox(captions[i]);
            EXPECT_TRUE(box.origin.x > 0 && box.origin.x + box.size.width < 1200);
            EXPECT_TRUE(box.origin.y > 0 && box.origin.y + box.size.height < 600);
            for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(overlap(captions[i], captions[j]));
        }
    }
}

TEST(IsogonicMap, WritesAnglesForReaders) {
    EXPECT_EQ(levelText(20), "20");
    EXPECT_EQ(levelText(-0.6000000000000001), "\u22120.6");
    EXPECT_EQ(levelText(0), "0");
}

}  // namespace
}  // namespace mezalith::app
