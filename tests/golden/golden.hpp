// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/image.hpp>

#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

/// Drawings against goldens: texts of the recording port, and a few small pictures.
///
/// A golden that is missing or different fails. What was drawn is then in build/golden, with
/// a picture of the differences. With MEZALITH_RENEW_GOLDENS set, the golden is replaced; the test
/// fails all the same, so that somebody looks at it.
namespace mezalith::golden {

/// How far a picture may be from its golden: rasterizers round the edges of shapes differently.
struct Tolerance {
    int channel = 40;    ///< the largest difference of any channel, of 255
    double mean = 0.25;  ///< the mean difference of all channels of all pixels
};

/// How two pictures of one size differ, channel by channel.
struct Difference {
    int largest = 0;
    double mean = 0;
};

/// Where goldens are, and where what differs is written.
struct Folders {
    std::filesystem::path expected;
    std::filesystem::path actual;
    bool renews = false;

    /// The project's, as the environment says.
    static Folders project();
};

/// The text with every number rounded to six decimals, which the last bits of a sine do not reach.
std::string roundedNumbers(const std::string& text);

/// Whether the texts have the same words, with numbers within two millionths.
bool isSameText(const std::string& a, const std::string& b);

Difference difference(const platform::Bitmap& a, const platform::Bitmap& b);

/// Compares with <name>.txt.
::testing::AssertionResult matchesText(const std::string& name, const std::string& actual,
                                       const Folders& folders = Folders::project());

/// Compares with <name>.png.
::testing::AssertionResult matchesPicture(const std::string& name, const platform::Bitmap& actual,
                                          const Tolerance& tolerance = {},
                                          const Folders& folders = Folders::project());

/// What is drawn on white, `size` view points large.
platform::Bitmap pictureOf(MzSize size, double pixelRatio,
                           const std::function<void(platform::GraphicsPort&)>& draw);

}  // namespace mezalith::golden
