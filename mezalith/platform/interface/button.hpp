// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/view.hpp>

#include <functional>
#include <string_view>

namespace mezalith::platform {

/// A title in a frame that can be clicked.
class MEZALITH_EXPORT Button : public View {
  public:
    /// A little larger than its title. `click` may be empty.
    Button(std::string_view title, const TextStyle& style, std::function<void()> click);

    /// Does what a click does. The button may end meanwhile.
    void performClick() const;

    void drawRect(MzRect rect) override;
    /// Clicks with the primary button of a device.
    void mouseDown(const Event& event) override;

  private:
    std::function<void()> click_;
};

}  // namespace mezalith::platform
