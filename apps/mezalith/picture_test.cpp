// SPDX-License-Identifier: MIT
#include "apps/mezalith/picture.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure_of.hpp"
#include "host/wkb_file.hpp"
#include "tests/support/temporary_folder.hpp"
#include <mezalith/platform/recording_port.hpp>

#include <filesystem>
#include <string_view>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

namespace fs = std::filesystem;

using mezalith::testing::failureOf;

class PictureTest : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.path(name); }

    mezalith::testing::TemporaryFolder folder_;
};

std::string draw(const std::string& path, std::optional<double> pixelRatio = std::nullopt) {
    Picture picture(path, false, {20, 10}, pixelRatio);
    fillBackground(picture.port(), {20, 10}, *platform::Color::colorWithText("#336699"));
    picture.finish();
    const auto bytes = host::readFile(path);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST_F(PictureTest, TakesItsFormatFromTheEnding) {
    EXPECT_EQ(pictureFormatOf("a.b/c.PNG"), PictureFormat::PNG);
    EXPECT_EQ(pictureFormatOf("c.svg"), PictureFormat::SVG);
    EXPECT_EQ(pictureFormatOf("c.png.pdf"), PictureFormat::PDF);
    EXPECT_THROW(pictureFormatOf("c.jpg"), UsageError);
    EXPECT_THROW(pictureFormatOf("png"), UsageError);
}

TEST_F(PictureTest, WritesEachFormat) {
    EXPECT_TRUE(draw(path("a.png")).starts_with("\x89PNG\r\n"));
    EXPECT_NE(draw(path("a.svg")).find("<svg"), std::string::npos);
    EXPECT_TRUE(draw(path("a.pdf")).starts_with("%PDF-"));
}

TEST_F(PictureTest, HasPixelsByItsRatio) {
    // Width and height stand in the header, most significant byte first.
    EXPECT_EQ(draw(path("one.png")).substr(16, 8), std::string_view("\0\0\0\x14\0\0\0\x0a", 8));
    EXPECT_EQ(draw(path("two.png"), 2).substr(16, 8), std::string_view("\0\0\0\x28\0\0\0\x14", 8));
}

TEST_F(PictureTest, KeepsVerticesCloserTogetherInDocuments) {
    EXPECT_EQ(Picture(path("a.png"), false, {20, 10}, 2).spacing(), 0.5);
    EXPECT_EQ(Picture(path("a.pdf"), false, {20, 10}, 2).spacing(), 0.25);
    EXPECT_EQ(Picture(path("a.svg"), false, {20, 10}, 2).spacing(), 0.25);
}

TEST_F(PictureTest, AppearsOnlyWhenFinished) {
    { const Picture picture(path("a.svg"), false, {20, 10}, std::nullopt); }
    EXPECT_TRUE(fs::is_empty(folder_.path()));
}

TEST_F(PictureTest, ReportsAFullDisk) {
    for (const char* name : {"a.png", "a.svg", "a.pdf"}) {
        fs::create_symlink("/dev/full", path(name));
        EXPECT_EQ(failureOf([&] { draw(path(name)); }), path(name) + ": No space left on device");
    }
}

TEST_F(PictureTest, RefusesSizesThatCannotBe) {
    const std::string message = path("a.png") + ": a picture of this size cannot be made";
    EXPECT_EQ(failureOf([&] { Picture(path("a.png"), false, {1e6, 10}, std::nullopt); }), message);
    EXPECT_TRUE(fs::is_empty(folder_.path()));
}

TEST(Outlines, AreFilledAndClippedToByTheEvenOddRule) {
    platform::RecordingPort port;
    fillOutlines(port, outlineOf({20, 10}), *platform::Color::whiteColor());
    clipToOutlines(port, {{{0, 0}, {4, 0}, {0, 4}}, {{1, 1}, {2, 1}, {1, 2}}});
    const std::string text = port.text();
    EXPECT_NE(text.find("20 10"), std::string::npos) << text;
    EXPECT_NE(text.find("drawPath 1"), std::string::npos) << text;
    EXPECT_NE(text.find("clipEvenOdd"), std::string::npos) << text;
    EXPECT_GT(text.find("clipEvenOdd"), text.find("drawPath 1"));
}

}  // namespace
}  // namespace mezalith::app
