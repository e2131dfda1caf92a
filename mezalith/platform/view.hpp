// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/object.hpp>

#include <memory>
#include <vector>

namespace mezalith::platform {

/// A rectangle of the screen that draws itself and holds other views.
///
/// A view's frame stands in the coordinates of its parent. Its own coordinates begin at the frame's
/// lower-left corner, y up, in the same units, and what it and its children draw is clipped to its
/// bounds. Children are drawn in their order, over their parent, the last one on top.
///
/// A parent owns its children; a child knows its parent without owning it, and has none once that
/// is gone. A view has one parent at most, and is never among its own ancestors.
class MEZALITH_EXPORT View : public Object {
  public:
    using Views = std::vector<std::shared_ptr<View>>;

    /// How many views may stand in a line from the outermost to the innermost.
    static constexpr int kDeepest = 256;

    /// At the zero rectangle.
    View() = default;
    explicit View(MzRect frame) : frame_(frame) {}
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    /// Leaves the children without a parent.
    ~View() override;

    /// In the parent's coordinates. Any numbers are kept; what is empty or not finite is not drawn.
    MzRect frame() const { return frame_; }
    void setFrame(MzRect frame) { frame_ = frame; }
    void setFrameOrigin(MzPoint origin) { frame_.origin = origin; }
    void setFrameSize(MzSize size) { frame_.size = size; }
    /// The frame in the view's own coordinates: from (0, 0).
    MzRect bounds() const { return {{0, 0}, frame_.size}; }

    /// Null for the outermost view.
    View* superview() const { return superview_; }
    const Views& subviews() const { return subviews_; }

    /// Makes `view` the last of the children, on top of the others, after taking it from the parent
    /// that it has. NO, changing nothing, for null, for this view and its ancestors, and where
    /// views would stand deeper than `kDeepest`.
    bool addSubview(std::shared_ptr<View> view);
    /// Does nothing without a parent.
    void removeFromSuperview();

    /// Whether this is `view` or stands somewhere below it.
    bool isDescendantOf(const View* view) const;

    /// The innermost view at `point` (the parent's coordinates; a frame holds its lower and left
    /// sides), of several the one on top; null when the point is outside.
    View* hitTest(MzPoint point);

    /// Draws the view and all below it into the current graphics port, whose user space is that of
    /// the parent. A shadow that is set there casts nothing; the port's state is left as it was.
    /// Views may be added and removed meanwhile: one that was removed before its turn is not drawn.
    void display();

    /// Draws the view alone into the current graphics port, in the view's own coordinates and
    /// clipped to its bounds; nothing in the base. `rect` is the part to be drawn, in the same
    /// coordinates.
    virtual void drawRect(MzRect rect);

    /// A button of a pointing device went down on this view and on none of its children; does
    /// nothing in the base. The host finds the view by `hitTest`.
    virtual void mouseDown(const Event& event);

  private:
    void displayTree();
    int depth() const;
    int height() const;

    MzRect frame_ = MzZeroRect;
    View* superview_ = nullptr;
    Views subviews_;
};

}  // namespace mezalith::platform
