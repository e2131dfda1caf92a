// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/css_color_names.hpp>
#include <mezalith/platform/keyed_store.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::KeyedStore;

using Components = std::array<double, 4>;

Components rgbOf(const std::shared_ptr<const Color>& color) {
    const auto rgb = color ? color->colorUsingColorSpace(ColorSpace::CalibratedRGB) : nullptr;
    return rgb ? rgb->components() : Components{-1, -1, -1, -1};
}

std::shared_ptr<const Color> throughArchive(const Color& color) {
    KeyedStore store;
    color.encodeWithCoder(store);
    return Color::initWithCoder(store);
}

TEST(Color, KeepsComponentsAsGiven) {
    const auto color = Color::colorWithDeviceRed(1.5, -2, 0.25, 7);
    EXPECT_EQ(color->colorSpace(), ColorSpace::DeviceRGB);
    EXPECT_EQ(color->components(), (Components{1.5, -2, 0.25, 0}));
    EXPECT_EQ(color->alphaComponent(), 7);
}

TEST(Color, HasTheFixedColors) {
    EXPECT_EQ(rgbOf(Color::blackColor()), (Components{0, 0, 0, 0}));
    EXPECT_EQ(rgbOf(Color::whiteColor()), (Components{1, 1, 1, 0}));
    EXPECT_EQ(rgbOf(Color::cyanColor()), (Components{0, 1, 1, 0}));
    EXPECT_EQ(rgbOf(Color::darkGrayColor()), (Components{1.0 / 3, 1.0 / 3, 1.0 / 3, 0}));
    EXPECT_EQ(Color::cyanColor()->alphaComponent(), 1);
}

TEST(Color, ReadsHexadecimalText) {
    EXPECT_EQ(rgbOf(Color::colorWithText("#f80")), (Components{1, 136 / 255.0, 0, 0}));
    EXPECT_EQ(rgbOf(Color::colorWithText("#12AbfF")), (Components{18 / 255.0, 171 / 255.0, 1, 0}));
    EXPECT_EQ(Color::colorWithText("#12abff")->alphaComponent(), 1);
    const auto translucent = Color::colorWithText("#ff000080");
    EXPECT_EQ(rgbOf(translucent), (Components{1, 0, 0, 0}));
    EXPECT_EQ(translucent->alphaComponent(), 128 / 255.0);
}

TEST(Color, ReadsNamesInAnyCase) {
    EXPECT_EQ(rgbOf(Color::colorWithText("RebeccaPurple")),
              (Components{102 / 255.0, 51 / 255.0, 153 / 255.0, 0}));
    EXPECT_EQ(Color::colorWithText("navy")->colorSpace(), ColorSpace::CalibratedRGB);
    EXPECT_EQ(Color::colorWithText("transparent")->alphaComponent(), 0);
    EXPECT_EQ(rgbOf(Color::colorWithText("transparent")), (Components{0, 0, 0, 0}));
}

TEST(Color, RefusesOtherText) {
    for (const char* text : {"", "#", "#12", "#1234", "#12345", "#1234567", "#123456789", "#xyz",
                             "#-12", "#+12", "# 12", "#0x1", "f80", "blueish", "rgb(1,2,3)"}) {
        EXPECT_EQ(Color::colorWithText(text), nullptr) << text;
    }
}

TEST(Color, FindsEveryNameOfItsTable) {
    ASSERT_TRUE(std::ranges::is_sorted(detail::cssColors, {}, &detail::NamedColor::name));
    for (const auto& [name, rgb] : detail::cssColors) {
        const auto color = Color::colorWithName(name)->colorUsingColorSpace(ColorSpace::DeviceRGB);
        ASSERT_NE(color, nullptr) << name;
        const auto& c = color->components();
        EXPECT_EQ(std::lround(c[0] * 255) * 65536 + std::lround(c[1] * 255) * 256 +
                      std::lround(c[2] * 255),
                  rgb)
            << name;
    }
}

TEST(Color, ConvertsCMYKAndGrey) {
    const auto cmyk = Color::colorWithDeviceCyan(0.25, 0.5, 1, 0.5, 0.75);
    EXPECT_EQ(rgbOf(cmyk), (Components{0.375, 0.25, 0, 0}));
    EXPECT_EQ(cmyk->colorUsingColorSpace(ColorSpace::DeviceRGB)->alphaComponent(), 0.75);
    EXPECT_EQ(rgbOf(Color::colorWithCalibratedWhite(0.3, 1)), (Components{0.3, 0.3, 0.3, 0}));
    const auto white = ColorSpace::CalibratedWhite;
    EXPECT_EQ(
        Color::colorWithDeviceRed(0.3, 0.3, 0.3, 1)->colorUsingColorSpace(white)->components(),
        (Components{0.3, 0, 0, 0}));
    EXPECT_DOUBLE_EQ(
        Color::colorWithDeviceRed(1, 0.5, 0.25, 1)->colorUsingColorSpace(white)->components()[0],
        0.2126 + 0.7152 * 0.5 + 0.0722 * 0.25);
    EXPECT_EQ(Color::blackColor()->colorUsingColorSpace(ColorSpace::DeviceCMYK)->components(),
              (Components{0, 0, 0, 1}));
}

TEST(Color, ConvertsToCMYKAndBack) {
    for (int rgb = 0; rgb < 16 * 16 * 16; ++rgb) {
        const auto color = Color::colorWithDeviceRed((rgb >> 8) / 15.0, ((rgb >> 4) & 15) / 15.0,
                                                     (rgb & 15) / 15.0, 1);
        const auto back = rgbOf(color->colorUsingColorSpace(ColorSpace::DeviceCMYK));
        for (std::size_t i = 0; i < 3; ++i) {
            ASSERT_NEAR(back[i], color->components()[i], 1e-15) << rgb;
        }
    }
}

TEST(Color, ConvertsNothingToNamesOrPatternsNorFromThem) {
    const auto red = Color::colorWithName("red");
    EXPECT_EQ(red->colorUsingColorSpace(ColorSpace::Named), nullptr);
    EXPECT_EQ(Color::cyanColor()->colorUsingColorSpace(ColorSpace::Pattern), nullptr);
    for (const auto& color :
         {Color::colorWithName("no such colour"), Color::colorWithPatternName("red")}) {
        for (const auto space : {ColorSpace::CalibratedRGB, ColorSpace::DeviceRGB,
                                 ColorSpace::CalibratedWhite, ColorSpace::DeviceCMYK}) {
            EXPECT_EQ(color->colorUsingColorSpace(space), nullptr);
        }
        EXPECT_EQ(color->deviceRGB(), std::nullopt);
    }
}

TEST(Color, GivesRedGreenBlueAndAlpha) {
    for (const auto& color :
         {Color::colorWithName("tomato"), Color::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5),
          Color::colorWithCalibratedWhite(0.25, 0.75)}) {
        const auto device = color->colorUsingColorSpace(ColorSpace::DeviceRGB);
        const auto& c = device->components();
        EXPECT_EQ(color->deviceRGB(),
                  (std::array<double, 4>{c[0], c[1], c[2], device->alphaComponent()}));
    }
}

TEST(Color, ReplacesAlpha) {
    EXPECT_EQ(
        Color::colorWithDeviceRed(1, 0, 0, 0.5)->colorWithAlphaComponent(0.25)->alphaComponent(),
        0.25);
    const auto named = Color::colorWithName("red")->colorWithAlphaComponent(0.5);
    EXPECT_EQ(named->colorSpace(), ColorSpace::Named);
    EXPECT_EQ(named->colorUsingColorSpace(ColorSpace::DeviceRGB)->alphaComponent(), 0.5);
    EXPECT_EQ(Color::colorWithPatternName("p")->colorWithAlphaComponent(0.5)->alphaComponent(), 1);
}

TEST(Color, IsEqualAcrossSpacesWhenItsRGBAgrees) {
    const auto white = Color::whiteColor();
    EXPECT_TRUE(white->isEqualToColor(Color::colorWithDeviceRed(1, 1, 1, 1).get()));
    EXPECT_TRUE(white->isEqualToColor(Color::colorWithDeviceCyan(0, 0, 0, 0, 1).get()));
    EXPECT_TRUE(white->isEqualToColor(Color::colorWithName("white").get()));
    EXPECT_FALSE(white->isEqualToColor(Color::colorWithCalibratedWhite(1, 0.5).get()));
    EXPECT_FALSE(white->isEqualToColor(Color::colorWithDeviceRed(1, 1, 0.999, 1).get()));
}

TEST(Color, APatternIsEqualToNothing) {
    const auto pattern = Color::colorWithPatternName("hatch");
    EXPECT_FALSE(pattern->isEqualToColor(pattern.get()));
    EXPECT_FALSE(pattern->isEqualToColor(Color::blackColor().get()));
    EXPECT_FALSE(Color::blackColor()->isEqualToColor(pattern.get()));
}

TEST(Color, NullIsEqualToNothing) {
    const std::shared_ptr<const Color> none;
    EXPECT_FALSE(isEqualToColor(none, none));
    EXPECT_FALSE(isEqualToColor(none, Color::blackColor()));
    EXPECT_FALSE(isEqualToColor(Color::blackColor(), none));
    EXPECT_TRUE(isEqualToColor(Color::blackColor(), Color::blackColor()));
}

TEST(Color, NaNIsNotEqual) {
    const auto color = Color::colorWithDeviceRed(std::nan(""), 0, 0, 1);
    EXPECT_FALSE(color->isEqualToColor(color.get()));
}

TEST(Color, DescribesItselfInRGBOrByName) {
    EXPECT_EQ(Color::colorWithDeviceRed(0.1, 1, 0, 0.5)->description(), "0.1 1 0 0.5");
    EXPECT_EQ(Color::colorWithName("lime")->description(), "0 1 0 1");
    EXPECT_EQ(Color::colorWithName("nowhere")->description(), "nowhere");
    EXPECT_EQ(Color::colorWithPatternName("hatch")->description(), "hatch");
}

TEST(Color, WritesSpaceComponentsAndAlphaInThisOrder) {
    KeyedStore store;
    Color::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5)->encodeWithCoder(store);
    EXPECT_EQ(store.layout(),
              (std::vector<std::string>{"string space", "doubles components", "number alpha"}));
    EXPECT_EQ(store.decodeString("space"), "deviceCMYK");
    EXPECT_EQ(store.decodeDoubles("components"), (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(store.decodeNumber("alpha"), 0.5);
    KeyedStore named;
    Color::colorWithName("navy")->encodeWithCoder(named);
    EXPECT_EQ(named.layout(),
              (std::vector<std::string>{"string space", "string name", "number alpha"}));
    EXPECT_EQ(Color::blackColor()->archiveClassName(), "Color");
}

TEST(Color, ComesBackFromItsArchive) {
    for (const auto& color :
         {Color::colorWithCalibratedRed(9, -1, 0.1, 2), Color::colorWithDeviceRed(0, 1, 0, 1),
          Color::colorWithCalibratedWhite(0.7, 0), Color::colorWithDeviceCyan(1, 2, 3, 4, 5),
          Color::colorWithName("Navy"), Color::colorWithPatternName("hatch")}) {
        const auto back = throughArchive(*color);
        ASSERT_NE(back, nullptr) << color->description();
        EXPECT_EQ(back->colorSpace(), color->colorSpace());
        EXPECT_EQ(back->components(), color->components());
        EXPECT_EQ(back->alphaComponent(), color->alphaComponent());
        EXPECT_EQ(back->name(), color->name());
    }
}

TEST(Color, IsHexadecimalTextWhenThatSaysAllOfIt) {
    EXPECT_EQ(Color::cyanColor()->archiveText(), "#00ffffff");
    EXPECT_EQ(Color::colorWithText("#1280fE7f")->archiveText(), "#1280fe7f");
    EXPECT_EQ(Color::colorWithCalibratedRed(0.5, 0, 0, 1)->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithCalibratedRed(-0.0, 0, 0, 1)->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithCalibratedRed(2, 0, 0, 1)->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithCalibratedRed(1, 0, 0, 0.25)->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithCalibratedRed(1, 0, 0, std::nan(""))->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithDeviceRed(1, 0, 0, 1)->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithCalibratedWhite(1, 1)->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithName("red")->archiveText(), std::nullopt);
    EXPECT_EQ(Color::colorWithPatternName("red")->archiveText(), std::nullopt);
}

TEST(Color, HasTextForEveryByteOfEveryChannel) {
    for (int byte = 0; byte < 256; ++byte) {
        const double channel = byte / 255.0;
        const auto color = Color::colorWithCalibratedRed(channel, channel, channel, channel);
        const auto text = color->archiveText();
        ASSERT_TRUE(text) << byte;
        EXPECT_EQ(Color::colorWithText(*text)->components(), color->components());
        EXPECT_EQ(Color::colorWithText(*text)->alphaComponent(), channel);
    }
}

/// The archive of a colour.
struct Fields {
    std::string space = "calibratedRGB";
    std::vector<double> components{0, 1, 1};
    std::optional<double> alpha = 1;

    std::shared_ptr<const Color> color() const {
        KeyedStore store;
        store.encodeString(space, "space");
        store.encodeDoubles(components, "components");
        store.encodeNumber(alpha, "alpha");
        return Color::initWithCoder(store);
    }
};

TEST(Color, IsNotMadeOfADamagedArchive) {
    EXPECT_NE(Fields{}.color(), nullptr);
    EXPECT_EQ(Fields{.space = "deviceHSV"}.color(), nullptr);
    EXPECT_EQ((Fields{.components = {0, 1}}.color()), nullptr);
    EXPECT_EQ((Fields{.components = {0, 1, 1, 1}}.color()), nullptr);
    EXPECT_EQ(Fields{.alpha = std::nullopt}.color(), nullptr);
    EXPECT_EQ(Color::initWithCoder(KeyedStore()), nullptr);
}

TEST(Color, IsOpaqueWithoutAnAlpha) {
    KeyedStore store;
    store.encodeString("deviceRGB", "space");
    store.encodeDoubles(std::array{1.0, 0.5, 0.0}, "components");
    EXPECT_EQ(Color::initWithCoder(store)->alphaComponent(), 1);
}

}  // namespace
}  // namespace mezalith::platform
