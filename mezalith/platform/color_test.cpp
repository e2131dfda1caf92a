// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/css_color_names.hpp>

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Components = std::array<double, 4>;

Components rgbOf(const std::shared_ptr<const Color>& color) {
    const auto rgb = color ? color->colorUsingColorSpace(ColorSpace::CalibratedRGB) : nullptr;
    return rgb ? rgb->components() : Components{-1, -1, -1, -1};
}

/// Keeps what one object writes, and hands it out again.
class Memory final : public KeyedArchiver, public KeyedUnarchiver {
  public:
    std::map<std::string, std::string, std::less<>> strings;
    std::map<std::string, double, std::less<>> numbers;
    std::map<std::string, std::vector<double>, std::less<>> lists;
    std::vector<std::string> order;

    void encodeString(std::string_view value, std::string_view key) override {
        strings[note(key)] = value;
    }
    void encodeDouble(double value, std::string_view key) override { numbers[note(key)] = value; }
    void encodeDoubles(std::span<const double> values, std::string_view key) override {
        lists[note(key)] = {values.begin(), values.end()};
    }
    void encodeBool(bool, std::string_view) override {}
    void encodeInt(std::int32_t, std::string_view) override {}
    void encodeFloat(float, std::string_view) override {}
    void encodeBytes(std::span<const std::byte>, std::string_view) override {}
    void encodeNumber(std::optional<double>, std::string_view) override {}
    void encodeObject(const Archivable*, std::string_view) override {}
    void encodeObjects(std::span<const Archivable* const>, std::string_view) override {}

    std::string decodeString(std::string_view key) const override { return found(strings, key); }
    std::vector<double> decodeDoubles(std::string_view key) const override {
        return found(lists, key);
    }
    std::optional<double> decodeNumber(std::string_view key) const override {
        const auto place = numbers.find(key);
        return place == numbers.end() ? std::nullopt : std::optional(place->second);
    }
    double decodeDouble(std::string_view key) const override { return found(numbers, key); }
    bool containsValueForKey(std::string_view) const override { return false; }
    bool decodeBool(std::string_view) const override { return false; }
    std::int32_t decodeInt(std::string_view) const override { return 0; }
    float decodeFloat(std::string_view) const override { return 0; }
    std::vector<std::byte> decodeBytes(std::string_view) const override { return {}; }
    std::shared_ptr<const Archivable> decodeObject(std::string_view) const override {
        return nullptr;
    }
    std::vector<std::shared_ptr<const Archivable>> decodeObjects(std::string_view) const override {
        return {};
    }

  private:
    std::string note(std::string_view key) { return order.emplace_back(key); }
    template <typename Map>
    static typename Map::mapped_type found(const Map& map, std::string_view key) {
        const auto place = map.find(key);
        return place == map.end() ? typename Map::mapped_type{} : place->second;
    }
};

std::shared_ptr<const Color> throughArchive(const Color& color) {
    Memory memory;
    color.encodeWithCoder(memory);
    return Color::initWithCoder(memory);
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
    Memory memory;
    Color::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5)->encodeWithCoder(memory);
    EXPECT_EQ(memory.order, (std::vector<std::string>{"colorSpace", "components", "alpha"}));
    EXPECT_EQ(memory.strings["colorSpace"], "deviceCMYK");
    EXPECT_EQ(memory.lists["components"], (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(memory.numbers["alpha"], 0.5);
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

TEST(Color, IsNotMadeOfADamagedArchive) {
    Memory good;
    Color::cyanColor()->encodeWithCoder(good);
    ASSERT_NE(Color::initWithCoder(good), nullptr);
    Memory unknownSpace = good;
    unknownSpace.strings["colorSpace"] = "deviceHSV";
    EXPECT_EQ(Color::initWithCoder(unknownSpace), nullptr);
    Memory tooShort = good;
    tooShort.lists["components"].pop_back();
    EXPECT_EQ(Color::initWithCoder(tooShort), nullptr);
    Memory tooLong = good;
    tooLong.lists["components"].push_back(1);
    EXPECT_EQ(Color::initWithCoder(tooLong), nullptr);
    Memory withoutAlpha = good;
    withoutAlpha.numbers.clear();
    EXPECT_EQ(Color::initWithCoder(withoutAlpha), nullptr);
    EXPECT_EQ(Color::initWithCoder(Memory{}), nullptr);
}

}  // namespace
}  // namespace mezalith::platform
