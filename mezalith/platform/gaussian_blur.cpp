// SPDX-License-Identifier: MIT
#include <mezalith/platform/gaussian_blur.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace mezalith::platform {
namespace {

/// Below this no byte changes by a blur.
constexpr double leastSigma = 1.0 / 6;

/// target[i] += weight * source[i]
void addWeighted(std::span<float> target, const float* source, float weight) {
    for (std::size_t i = 0; i < target.size(); ++i) {
        target[i] += weight * source[i];
    }
}

/// A row with zeros on either side.
class PaddedRow {
  public:
    PaddedRow(std::size_t width, std::size_t padding)
        : padding_(padding), values_(width + 2 * padding) {}

    void fill(std::span<const std::uint8_t> row) {
        std::ranges::copy(row, values_.begin() + static_cast<std::ptrdiff_t>(padding_));
    }

    void blurInto(std::span<float> target, std::span<const float> weights) const {
        const float* center = values_.data() + padding_;
        std::ranges::fill(target, 0.0F);
        addWeighted(target, center, weights[0]);
        for (std::size_t k = 1; k < weights.size(); ++k) {
            addWeighted(target, center - k, weights[k]);
            addWeighted(target, center + k, weights[k]);
        }
    }

  private:
    std::size_t padding_;
    std::vector<float> values_;
};

/// The sum of the rows around row `y`, with zeros above and below.
void blurColumns(const std::vector<float>& rows, std::size_t y, std::size_t height,
                 std::span<const float> weights, std::span<float> target) {
    const std::size_t width = target.size();
    std::ranges::fill(target, 0.0F);
    addWeighted(target, &rows[y * width], weights[0]);
    for (std::size_t k = 1; k < weights.size(); ++k) {
        if (y >= k) {
            addWeighted(target, &rows[(y - k) * width], weights[k]);
        }
        if (y + k < height) {
            addWeighted(target, &rows[(y + k) * width], weights[k]);
        }
    }
}

std::uint8_t byteOf(float value) {
    return static_cast<std::uint8_t>(std::min(value + 0.5F, 255.0F));
}

}  // namespace

int gaussianReach(double sigma) {
    return sigma >= leastSigma ? static_cast<int>(std::ceil(3 * sigma)) : 0;
}

std::vector<float> gaussianWeights(double sigma) {
    const int reach = gaussianReach(sigma);
    if (reach == 0) {
        return {1};
    }
    const auto below = [&](double x) { return std::erf(x / (sigma * std::numbers::sqrt2)); };
    const double total = below(reach + 0.5);
    std::vector<float> weights;
    for (int n = 0; n <= reach; ++n) {
        weights.push_back(static_cast<float>((below(n + 0.5) - below(n - 0.5)) / (2 * total)));
    }
    return weights;
}

void gaussianBlur(std::span<std::uint8_t> image, int width, int height, std::size_t stride,
                  double sigma) {
    if (gaussianReach(sigma) == 0 || width <= 0 || height <= 0) {
        return;
    }
    const auto columns = static_cast<std::size_t>(width);
    const auto lines = static_cast<std::size_t>(height);
    const std::vector<float> weights = gaussianWeights(sigma);
    PaddedRow row(columns, weights.size() - 1);
    std::vector<float> rows(columns * lines);
    for (std::size_t y = 0; y < lines; ++y) {
        row.fill(image.subspan(y * stride, columns));
        row.blurInto(std::span(rows).subspan(y * columns, columns), weights);
    }
    std::vector<float> sum(columns);
    for (std::size_t y = 0; y < lines; ++y) {
        blurColumns(rows, y, lines, weights, sum);
        std::ranges::transform(sum, image.begin() + static_cast<std::ptrdiff_t>(y * stride),
                               byteOf);
    }
}

}  // namespace mezalith::platform
