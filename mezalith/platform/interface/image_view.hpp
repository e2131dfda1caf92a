// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/image.hpp>
#include <mezalith/platform/view.hpp>

#include <memory>
#include <optional>

namespace mezalith::platform {

/// A picture on the screen.
class MEZALITH_EXPORT ImageView : public View {
  public:
    /// Larger sides are made smaller, in proportion.
    static constexpr double kLargestSide = 1000;

    /// As large as `image` is by itself, or, in proportion, as wide or as high as is given; with
    /// both the picture is stretched. Empty for a null image.
    explicit ImageView(std::shared_ptr<const Image> image, std::optional<double> width = {},
                       std::optional<double> height = {});

    void drawRect(MzRect rect) override;

  private:
    std::shared_ptr<const Image> image_;
};

}  // namespace mezalith::platform
