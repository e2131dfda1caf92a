// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/view.hpp>

#include <memory>
#include <string_view>

namespace mezalith::platform {

/// A text on the screen, drawn as outlines, so that it looks the same on every port. As large as
/// its lines.
class MEZALITH_EXPORT Label : public View {
  public:
    /// In `color`; without one the text has room but is not seen.
    Label(std::string_view text, const TextStyle& style, std::shared_ptr<const Color> color);

    void drawRect(MzRect rect) override;

  private:
    BezierPath outline_;
    std::shared_ptr<const Color> color_;
};

}  // namespace mezalith::platform
