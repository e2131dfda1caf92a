// SPDX-License-Identifier: MIT
#include <mezalith/platform/gaussian_blur.hpp>

#include <cmath>
#include <numbers>
#include <numeric>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

double variance(const std::vector<float>& weights) {
    double sum = 0;
    for (std::size_t n = 1; n < weights.size(); ++n) {
        sum += 2 * static_cast<double>(n * n) * static_cast<double>(weights[n]);
    }
    return sum;
}

double total(const std::vector<float>& weights) {
    return 2 * std::accumulate(weights.begin(), weights.end(), 0.0) -
           static_cast<double>(weights[0]);
}

TEST(GaussianReach, IsThreeDeviations) {
    EXPECT_EQ(gaussianReach(1), 3);
    EXPECT_EQ(gaussianReach(1.1), 4);
    EXPECT_EQ(gaussianReach(0.17), 1);
    EXPECT_EQ(gaussianReach(0.16), 0);
    EXPECT_EQ(gaussianReach(0), 0);
    EXPECT_EQ(gaussianReach(-1), 0);
    EXPECT_EQ(gaussianReach(std::nan("")), 0);
}

TEST(GaussianWeights, AddUpToOne) {
    for (const double sigma : {1e-200, 0.17, 0.25, 0.5, 1.0, 2.5, 8.0, 15.9, 64.0, 300.0, 1000.0}) {
        EXPECT_NEAR(total(gaussianWeights(sigma)), 1, 1e-5) << sigma;
    }
}

TEST(GaussianWeights, HaveTheVarianceOfTheirSigmaAndOfAPixel) {
    for (const double sigma : {0.5, 1.0, 2.5, 8.0, 15.9}) {
        // What three deviations leave out is 0.3 % of the sum and 3 % of the variance.
        EXPECT_NEAR(variance(gaussianWeights(sigma)) / (sigma * sigma + 1.0 / 12), 1, 0.04)
            << sigma;
    }
}

TEST(GaussianWeights, AreTheGaussianFunctionForLargeSigma) {
    const double sigma = 10;
    const auto weights = gaussianWeights(sigma);
    for (std::size_t n = 0; n <= 20; ++n) {
        const double x = static_cast<double>(n) / sigma;
        const double expected = std::exp(-x * x / 2) / (sigma * std::sqrt(2 * std::numbers::pi));
        EXPECT_NEAR(static_cast<double>(weights[n]) / expected, 1, 0.01) << n;
    }
}

TEST(GaussianBlur, OfAnEdgeIsTheErrorFunction) {
    constexpr int width = 120;
    constexpr int height = 90;
    for (const double sigma : {0.25, 0.5, 1.0, 6.0}) {
        std::vector<std::uint8_t> image(width * height);
        for (std::size_t i = 0; i < image.size(); ++i) {
            image[i] = i % width >= 60 ? 255 : 0;
        }
        gaussianBlur(image, width, height, width, sigma);
        for (std::size_t x = 30; x < 90; ++x) {
            const double distance = static_cast<double>(x) + 0.5 - 60;
            const double expected =
                255 * 0.5 * std::erfc(-distance / (sigma * std::numbers::sqrt2));
            EXPECT_NEAR(image[45 * width + x], expected, 1) << sigma << ' ' << x;
        }
    }
}

TEST(GaussianBlur, IsTheSameInAllDirections) {
    constexpr int side = 41;
    std::vector<std::uint8_t> image(side * side);
    for (std::size_t y = 18; y <= 22; ++y) {
        for (std::size_t x = 18; x <= 22; ++x) {
            image[y * side + x] = 255;
        }
    }
    gaussianBlur(image, side, side, side, 3);
    EXPECT_GT(image[20 * side + 20], 0);
    for (std::size_t y = 0; y < side; ++y) {
        for (std::size_t x = 0; x < side; ++x) {
            EXPECT_EQ(image[y * side + x], image[x * side + y]);
            EXPECT_EQ(image[y * side + x], image[y * side + (side - 1 - x)]);
        }
    }
}

TEST(GaussianBlur, TakesTheOutsideAsEmpty) {
    std::vector<std::uint8_t> image(64, 200);
    gaussianBlur(image, 64, 1, 64, 0.5);
    EXPECT_LT(image[0], image[32]);
    // A single row loses what goes above and below.
    EXPECT_NEAR(image[32], 200.0 * static_cast<double>(gaussianWeights(0.5)[0]), 1);
}

TEST(GaussianBlur, LeavesTheEndsOfRowsAlone) {
    constexpr std::size_t stride = 8;
    std::vector<std::uint8_t> image(stride * 5, 99);
    gaussianBlur(image, 5, 5, stride, 1);
    for (std::size_t y = 0; y < 5; ++y) {
        EXPECT_LT(image[y * stride], 99);
        for (std::size_t x = 5; x < stride; ++x) {
            EXPECT_EQ(image[y * stride + x], 99);
        }
    }
}

TEST(GaussianBlur, DoesNothingWithoutAReachOrAnImage) {
    std::vector<std::uint8_t> image{1, 200, 3};
    const auto before = image;
    for (const double sigma : {0.0, -2.0, 0.15, std::nan("")}) {
        gaussianBlur(image, 3, 1, 3, sigma);
        EXPECT_EQ(image, before);
    }
    gaussianBlur({}, 0, 0, 0, 2);
    gaussianBlur({}, 0, 5, 0, 2);
}

}  // namespace
}  // namespace mezalith::platform
