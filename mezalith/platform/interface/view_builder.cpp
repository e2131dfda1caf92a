// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/interface/button.hpp>
#include <mezalith/platform/interface/image_view.hpp>
#include <mezalith/platform/interface/label.hpp>
#include <mezalith/platform/interface/view_builder.hpp>

#include <algorithm>
#include <utility>

namespace mezalith::platform::detail {
namespace {

/// A view in one colour.
class Panel final : public View {
  public:
    Panel(MzSize size, ColorPointer background)
        : View({{0, 0}, size}), background_(std::move(background)) {}

    void drawRect(MzRect) override {
        const GraphicsContext* const context = GraphicsContext::current();
        if (context == nullptr || context->graphicsPort() == nullptr) return;
        if (background_ == nullptr) return;
        context->graphicsPort()->setFillColor(background_.get());
        BezierPath all;
        all.appendRect(bounds());
        all.fill(*context->graphicsPort());
    }

  private:
    ColorPointer background_;
};

/// A view of a stack, and the room in front of it.
struct Placed {
    std::shared_ptr<View> view;
    double gap;
};

/// Lengths along the stack and across it.
struct Extent {
    double along = 0;
    double across = 0;
};

Extent extentOf(MzSize size, bool isRow) {
    return isRow ? Extent{size.width, size.height} : Extent{size.height, size.width};
}

double displacement(Alignment alignment, double room) {
    switch (alignment) {
        case Alignment::Center:
            return room / 2;
        case Alignment::End:
            return room;
        default:
            return 0;
    }
}

/// Puts views into a stack and finds out how large that is.
class StackBuilder {
  public:
    explicit StackBuilder(const StackElement& stack) : stack_(stack) {}

    void addSpace(double length) { gap_ += length; }

    void addView(std::shared_ptr<View> view) {
        const Extent extent = extentOf(view->frame().size, stack_.isRow);
        const double gap = gap_ + (placed_.empty() ? 0 : stack_.spacing);
        inner_ = {inner_.along + gap + extent.along, std::max(inner_.across, extent.across)};
        placed_.push_back({std::move(view), gap});
        gap_ = 0;
    }

    /// Null for a stack without views.
    std::shared_ptr<View> finish() {
        if (placed_.empty()) return nullptr;
        inner_.along += gap_;
        double& width = stack_.isRow ? inner_.along : inner_.across;
        width = std::max(width, stack_.minWidth);
        const Insets& insets = stack_.insets;
        const MzSize inner = stack_.isRow ? MzSize{inner_.along, inner_.across}
                                          : MzSize{inner_.across, inner_.along};
        const auto panel =
            std::make_shared<Panel>(MzSize{insets.left + inner.width + insets.right,
                                           insets.bottom + inner.height + insets.top},
                                    stack_.background);
        double along = 0;
        for (const auto& [view, gap] : placed_) {
            along += gap;
            view->setFrameOrigin(originOf(view->frame().size, along, inner));
            along += extentOf(view->frame().size, stack_.isRow).along;
            panel->addSubview(view);
        }
        return panel;
    }

  private:
    /// Rows run to the right and begin at the top, columns run down and begin at the left.
    MzPoint originOf(MzSize size, double along, MzSize inner) const {
        const double room = inner_.across - extentOf(size, stack_.isRow).across;
        const double across = displacement(stack_.alignment, room);
        const double fromLeft = stack_.isRow ? along : across;
        const double fromTop = stack_.isRow ? across : along;
        return {stack_.insets.left + fromLeft,
                stack_.insets.bottom + inner.height - fromTop - size.height};
    }

    const StackElement& stack_;
    std::vector<Placed> placed_;
    Extent inner_;
    double gap_ = 0;
};

/// Makes the view of each kind of element.
struct Builder {
    const std::shared_ptr<Object>& represented;
    const InterfaceDocument::ActionHandler& handler;

    std::shared_ptr<View> operator()(const StackElement& stack) const {
        StackBuilder builder(stack);
        for (const Element& member : stack.members) {
            if (const auto* space = std::get_if<SpaceElement>(&member.content)) {
                builder.addSpace(space->length);
            } else if (std::shared_ptr<View> view = std::visit(*this, member.content)) {
                builder.addView(std::move(view));
            }
        }
        return builder.finish();
    }

    std::shared_ptr<View> operator()(const LabelElement& label) const {
        const std::string text = label.text.textForObject(represented.get());
        if (text.empty()) return nullptr;
        return std::make_shared<Label>(text, label.style, label.color);
    }

    std::shared_ptr<View> operator()(const ButtonElement& button) const {
        const auto click = [handle = handler, action = button.action,
                            object = std::weak_ptr<Object>(represented)] {
            if (handle) handle(action, object.lock());
        };
        return std::make_shared<Button>(button.title.textForObject(represented.get()), button.style,
                                        click);
    }

    std::shared_ptr<View> operator()(const ImageElement& image) const {
        return std::make_shared<ImageView>(image.image, image.width, image.height);
    }

    std::shared_ptr<View> operator()(const SpaceElement&) const { return nullptr; }
};

}  // namespace

std::shared_ptr<View> viewForElement(const Element& element,
                                     const std::shared_ptr<Object>& represented,
                                     const InterfaceDocument::ActionHandler& handler) {
    return std::visit(Builder{represented, handler}, element.content);
}

}  // namespace mezalith::platform::detail
