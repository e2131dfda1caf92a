// SPDX-License-Identifier: MIT
#include <tests/golden/golden.hpp>

#include <array>
#include <filesystem>

#include <gtest/gtest.h>

namespace mezalith::golden {
namespace {

using platform::Bitmap;

/// Folders that are empty before the test and gone after it.
class Golden : public ::testing::Test {
  protected:
    Golden() { std::filesystem::remove_all(root_); }
    ~Golden() override { std::filesystem::remove_all(root_); }

    Folders folders(bool renews = false) const {
        return {root_ / "expected", root_ / "actual", renews};
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(root_ / name); }

  private:
    std::filesystem::path root_ =
        std::filesystem::path(::testing::TempDir()) /
        ("mezalith-golden-" +
         std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
};

Bitmap gray(std::uint32_t level, std::int32_t width = 4) {
    const std::uint32_t pixel = 0xFF000000 | level << 16 | level << 8 | level;
    const auto count = static_cast<std::size_t>(width) * 4;
    return {width, 4, std::vector<std::uint32_t>(count, pixel)};
}

TEST_F(Golden, RoundsNumbersToSixDecimals) {
    EXPECT_EQ(roundedNumbers("moveToPoint 1.2246467991473532e-16 -0.49999999999\n"),
              "moveToPoint 0 -0.5\n");
    EXPECT_EQ(roundedNumbers("setLineDash 0.1 [4 1.00000012]"), "setLineDash 0.1 [4 1]");
    EXPECT_EQ(roundedNumbers("drawImageInRect 2x1 -0 100000.1234567 0 0"),
              "drawImageInRect 2x1 0 100000.123457 0 0");
}

TEST_F(Golden, TextsAreTheSameUpToTheLastBitsOfNumbers) {
    EXPECT_TRUE(isSameText("a 0\nb [1 2]\n", "a 1e-17\nb [1.0000000001 2]\n"));
    EXPECT_FALSE(isSameText("a 0\n", "a 0.00001\n"));
    EXPECT_FALSE(isSameText("a 0\n", "b 0\n"));
    EXPECT_FALSE(isSameText("a 0\n", "a 0 0\n"));
    EXPECT_FALSE(isSameText("a 0\n", "a\n0"));
    EXPECT_FALSE(isSameText("a none\n", "a 0\n"));
}

TEST_F(Golden, MeasuresDifferencesByChannel) {
    Bitmap other = gray(100);
    other.pixels[5] = 0xFF646488;
    const Difference found = difference(gray(100), other);
    EXPECT_EQ(found.largest, 0x88 - 100);
    EXPECT_DOUBLE_EQ(found.mean, (0x88 - 100) / 64.0);
}

TEST_F(Golden, FailsWhenATextIsMissingAndShowsIt) {
    EXPECT_FALSE(matchesText("a", "b 1\n", folders()));
    EXPECT_TRUE(exists("actual/a.txt"));
    EXPECT_FALSE(exists("expected/a.txt"));
}

TEST_F(Golden, FailsWhenATextDiffers) {
    EXPECT_FALSE(matchesText("a", "b 1\n", folders(true))) << "renewing is no success";
    EXPECT_TRUE(matchesText("a", "b 1\n", folders()));
    EXPECT_FALSE(matchesText("a", "b 2\n", folders()));
    EXPECT_TRUE(exists("actual/a.txt"));
}

TEST_F(Golden, FailsWhenAPictureIsMissingOrOfAnotherSize) {
    EXPECT_FALSE(matchesPicture("a", gray(100), {}, folders()));
    EXPECT_TRUE(exists("actual/a-actual.png"));
    EXPECT_FALSE(matchesPicture("a", gray(100), {}, folders(true)));
    EXPECT_TRUE(matchesPicture("a", gray(100), {}, folders()));
    EXPECT_FALSE(matchesPicture("a", gray(100, 5), {}, folders()));
    EXPECT_FALSE(exists("actual/a-difference.png"));
}

TEST_F(Golden, FailsWhenOnePixelDiffersMuchOrAllDiffer) {
    EXPECT_FALSE(matchesPicture("a", gray(100), {}, folders(true)));
    Bitmap one = gray(100);
    one.pixels[5] = 0xFF648864;
    EXPECT_TRUE(matchesPicture("a", one, {36, 1}, folders()));
    EXPECT_FALSE(matchesPicture("a", one, {35, 1}, folders()));
    EXPECT_TRUE(exists("actual/a-difference.png"));
    EXPECT_TRUE(matchesPicture("a", gray(102), {2, 2}, folders()));
    EXPECT_FALSE(matchesPicture("a", gray(102), {2, 1}, folders()));
}

TEST_F(Golden, DrawsOnWhiteAtTheRatio) {
    const Bitmap picture = pictureOf({2, 1}, 2, [](platform::GraphicsPort& port) {
        port.setRGBFillColor(1, 0, 0, 1);
        port.addLines(std::array{MzPoint{0, 0}, MzPoint{1, 0}, MzPoint{1, 1}, MzPoint{0, 1}});
        port.drawPath(platform::PathDrawingMode::Fill);
    });
    EXPECT_EQ(picture.width, 4);
    EXPECT_EQ(picture.height, 2);
    EXPECT_EQ(picture.row(1)[1], 0xFFFF0000U);
    EXPECT_EQ(picture.row(1)[2], 0xFFFFFFFFU);
}

}  // namespace
}  // namespace mezalith::golden
