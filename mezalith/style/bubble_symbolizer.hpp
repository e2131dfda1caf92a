// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/interface_file.hpp>
#include <mezalith/style/bubble_view.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <cstdint>
#include <memory>
#include <string_view>

namespace mezalith {

/// Shows a callout at a feature: a content view in a speech bubble whose stem points at the
/// feature's point. Nothing is drawn into the port: the bubble is a child view of the draw context,
/// put in place with every drawing and taken away when the feature is out of sight or gone.
///
/// One bubble symbolizer serves one feature: shared, its one view jumps to whichever was drawn
/// last. A copy is made as by `init`: it carries nothing over. It cannot be archived.
class MEZALITH_EXPORT MzBubbleSymbolizer : public MzSymbolizer, public platform::InterfaceOwner {
  public:
    /// Without views: shows nothing.
    MzBubbleSymbolizer();
    ~MzBubbleSymbolizer() override;

    /// Loads the interface file of that name with the symbolizer as its owner, and frames the view
    /// that it yields, with 10 view points of padding. Without one the bubble is empty.
    static std::shared_ptr<MzBubbleSymbolizer> initWithNib(
        std::string_view name, std::shared_ptr<platform::Object> representedObject);

    /// From the feature's point to the stem's tip, view points; (0, 0) at first. Setting it
    /// announces "drawProperty", too.
    MzPoint offset() const { return offset_; }
    void setOffset(MzPoint offset);

    /// Kept, and not used in drawing; 150 by 100 at (-25, 25) at first.
    /// Settled: the zero rectangle after `initWithNib`.
    MzRect bubbleRect() const { return bubbleRect_; }
    void setBubbleRect(MzRect rect);

    /// What the content presents, or null. Owned: a feature that owns its style had better be
    /// represented by something else.
    std::shared_ptr<platform::Object> representedObject() const override {
        return representedObject_;
    }
    void setRepresentedObject(std::shared_ptr<platform::Object> object);

    /// The content view, or null. Another one that is set is not put into the bubble.
    const std::shared_ptr<platform::View>& view() const { return view_; }
    void setView(std::shared_ptr<platform::View> view);

    /// The bubble around the content, or null.
    const std::shared_ptr<MzBubbleView>& bubbleView() const { return bubbleView_; }
    void setBubbleView(std::shared_ptr<MzBubbleView> view);

    std::uint32_t symbolizerType() const override { return 118166; }

    /// Puts the bubble's stem at a visible point, displaced by `offset`, as a child of the context
    /// unless the bubble has a parent already; takes it away from a feature that is out of sight.
    /// Does nothing for other geometries than points and multi-points. `selected` is ignored.
    /// Settled: at a multi-point the stem stands at `offset` from the view's origin.
    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override;
    /// Whether the bubble, where it is shown now, is painted there; nothing is moved or shown.
    bool paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point, double tolerance,
                       MzDrawContext* context, bool selected) override;
    void didRemoveFromContext(MzDrawContext* context,
                              MzSpatialObjectDrawAdditions* object) override;

    /// Takes the bubble out of its parent view. It is kept, and shown again by the next drawing.
    void removeView();

  protected:
    std::shared_ptr<MzSymbolizer> newInstance() const override;

  private:
    void loadContent(std::string_view name);
    void show(MzDrawContext& context, MzPoint point);

    MzPoint offset_{0, 0};
    MzRect bubbleRect_{{-25, 25}, {150, 100}};
    std::shared_ptr<platform::Object> representedObject_;
    std::shared_ptr<platform::View> view_;
    std::shared_ptr<MzBubbleView> bubbleView_;
};

}  // namespace mezalith
