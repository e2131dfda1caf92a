// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/view.hpp>

namespace mezalith {

/// A speech bubble: a white body with a dark outline and a stem that points somewhere. What it says
/// is its children's to draw.
class MEZALITH_EXPORT MzBubbleView : public platform::View {
  public:
    static constexpr float kCornerRadius = 15;

    using View::View;

    /// The stem's tip, in the view's own coordinates; (0, 0) at first.
    MzPoint stemOrigin() const { return stemOrigin_; }
    void setStemOrigin(MzPoint origin) { stemOrigin_ = origin; }

    /// The body, in the view's own coordinates; empty at first, which draws nothing.
    MzRect bubbleRect() const { return bubbleRect_; }
    void setBubbleRect(MzRect rect) { bubbleRect_ = rect; }

    /// Draws all of the bubble, whatever `rect` is.
    void drawRect(MzRect rect) override;

  private:
    MzPoint stemOrigin_{0, 0};
    MzRect bubbleRect_ = MzZeroRect;
};

}  // namespace mezalith
