// SPDX-License-Identifier: MIT
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/platform/shadow.hpp>

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Lines = std::vector<std::string>;

Shadow redShadow() {
    Shadow shadow;
    shadow.offset = {3.5, -1.5};
    shadow.blurRadius = 2;
    shadow.color = Color::colorWithCalibratedRed(1, 0, 0, 0.5);
    return shadow;
}

TEST(Shadow, BeginsStraightBelowInTheDefaultColor) {
    const Shadow shadow;
    EXPECT_EQ(shadow.offset.width, 0);
    EXPECT_EQ(shadow.offset.height, 0);
    EXPECT_EQ(shadow.blurRadius, 0);
    EXPECT_EQ(shadow.color->description(), "0 0 0 0.3333333333333333");
}

TEST(Shadow, ReachesAsFarAsOffsetAndBlur) {
    EXPECT_EQ(shadowReach({3, 4}, 0), 5 + 2);
    EXPECT_EQ(shadowReach({3, -4}, 10), 5 + 15 + 2);
    EXPECT_EQ(shadowReach({0, 0}, -1), 2);
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(shadowReach({infinity, 0}, 0), infinity);
    EXPECT_EQ(shadowReach({0, 0}, std::numeric_limits<double>::quiet_NaN()), infinity);
}

TEST(Shadow, IsSetOnTheCurrentPort) {
    RecordingPort outer;
    RecordingPort inner;
    const GraphicsContext outerContext(&outer);
    const GraphicsContext innerContext(&inner);
    redShadow().set();
    EXPECT_EQ(inner.lines(), Lines{"setShadowWithColor 3.5 -1.5 2 1 0 0 0.5"});
    EXPECT_EQ(outer.lines(), Lines{});
}

TEST(Shadow, WithoutAColorSwitchesTheShadowOff) {
    RecordingPort port;
    const GraphicsContext current(&port);
    Shadow shadow;
    shadow.color = nullptr;
    shadow.set();
    EXPECT_EQ(port.lines(), Lines{"setShadowWithColor 0 0 0 none"});
}

TEST(Shadow, IsSetNowhereWithoutAPort) {
    redShadow().set();
    RecordingPort port;
    const GraphicsContext outer(&port);
    const GraphicsContext withoutPort(nullptr);
    redShadow().set();
    EXPECT_EQ(port.lines(), Lines{});
}

TEST(Shadow, ReadsWhatItWrote) {
    const Shadow shadow = redShadow();
    mezalith::testing::KeyedStore store;
    shadow.encodeWithCoder(store);
    EXPECT_EQ(store.layout(), (Lines{"double offsetWidth", "double offsetHeight",
                                     "double blurRadius", "object color"}));
    EXPECT_EQ(shadow.archiveClassName(), "Shadow");
    const auto decoded = Shadow::initWithCoder(store);
    EXPECT_EQ(decoded->offset.width, 3.5);
    EXPECT_EQ(decoded->offset.height, -1.5);
    EXPECT_EQ(decoded->blurRadius, 2);
    EXPECT_EQ(decoded->color.get(), shadow.color.get());
}

TEST(Shadow, ReadsZerosFromAnEmptyArchive) {
    const auto decoded = Shadow::initWithCoder(mezalith::testing::KeyedStore());
    EXPECT_EQ(decoded->offset.width, 0);
    EXPECT_EQ(decoded->blurRadius, 0);
    EXPECT_EQ(decoded->color, nullptr);
}

}  // namespace
}  // namespace mezalith::platform
