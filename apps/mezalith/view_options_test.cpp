// SPDX-License-Identifier: MIT
#include "apps/mezalith/view_options.hpp"

#include "apps/mezalith/arguments.hpp"

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

std::string usageErrorOf(const ViewTexts& texts) {
    try {
        viewOptionsOf(texts);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

TEST(ViewOptions, HaveDefaults) {
    const ViewOptions options = viewOptionsOf({});
    EXPECT_EQ(options.projection->name(), "Plate Carree");
    EXPECT_FALSE(options.area);
    EXPECT_EQ(options.size.width, 1200);
    EXPECT_EQ(options.size.height, 800);
    EXPECT_EQ(options.scaleFactor, 1);
    EXPECT_FALSE(options.pixelRatio);
    EXPECT_TRUE(options.background->isEqualToColor(platform::Color::whiteColor().get()));
}

TEST(ViewOptions, AreUnderstood) {
    const ViewOptions options = viewOptionsOf({.projection = "utm:33",
                                               .bbox = "-10,57,33,81.5",
                                               .size = "640x480.5",
                                               .scaleFactor = "0.5",
                                               .pixelRatio = "2",
                                               .background = "#102030"});
    EXPECT_EQ(options.projection->srid(), 32633);
    EXPECT_EQ(options.area, (host::BoundingBox{-10, 57, 33, 81.5}));
    EXPECT_EQ(options.size.height, 480.5);
    EXPECT_EQ(options.scaleFactor, 0.5);
    EXPECT_EQ(options.pixelRatio, 2);
    EXPECT_EQ(options.background->components()[2], 48.0 / 255);
}

TEST(ViewOptions, LetTheAreaCrossTheAntimeridian) {
    EXPECT_EQ(viewOptionsOf({.bbox = "170,-20,-170,-10"}).area,
              (host::BoundingBox{170, -20, 190, -10}));
    EXPECT_EQ(viewOptionsOf({.bbox = "5,6,5,6"}).area, (host::BoundingBox{5, 6, 5, 6}));
}

std::int64_t sridOf(const std::string& projection) {
    return viewOptionsOf({.projection = projection}).projection->srid();
}

TEST(ViewOptions, NameProjectionsInManyWays) {
    EXPECT_EQ(sridOf("utm:33"), 32633);
    EXPECT_FALSE(viewOptionsOf({.projection = "utm:33"}).projection->isUTM());
    EXPECT_EQ(sridOf("utm:33n"), 32633);
    EXPECT_TRUE(viewOptionsOf({.projection = "utm:33N"}).projection->isUTM());
    EXPECT_EQ(sridOf("utm:19s"), 32719);
    EXPECT_EQ(sridOf("epsg:3857"), 3857);
    EXPECT_EQ(sridOf("EPSG:32760"), 32760);
#ifdef MEZALITH_WITH_PROJ
    EXPECT_EQ(sridOf("epsg:25833"), 25833);
    EXPECT_LT(sridOf("+proj=moll +lon_0=150"), 0);
#endif
}

TEST(ViewOptions, SayWhatIsWrong) {
    EXPECT_EQ(usageErrorOf({.projection = "utm:0"}),
              std::string("--projection: \"utm:0\" is not ") + kProjectionHelp);
    EXPECT_NE(usageErrorOf({.projection = "utm:33.5"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "utm:61"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "utm:"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "mercator"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "utm:s"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "utm:61n"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "epsg:1"}), "no error");
    EXPECT_NE(usageErrorOf({.projection = "+proj=nonsense"}), "no error");
    EXPECT_EQ(usageErrorOf({.bbox = "1,2,3"}), "--bbox: \"1,2,3\" is not of the form W,S,E,N");
    EXPECT_EQ(usageErrorOf({.bbox = "1,5,2,4"}), "--bbox: no area in 1,5,2,4");
    EXPECT_EQ(usageErrorOf({.size = "0x100"}), "--size: no area in 0x100");
    EXPECT_EQ(usageErrorOf({.scaleFactor = "0"}), "--scale-factor: 0 is not greater than 0");
    EXPECT_EQ(usageErrorOf({.pixelRatio = "-1"}), "--pixel-ratio: -1 is not greater than 0");
    EXPECT_EQ(usageErrorOf({.background = "sea"}), "--background: \"sea\" is not a colour");
}

}  // namespace
}  // namespace mezalith::app
