// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/view.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <ranges>
#include <utility>

namespace mezalith::platform {
namespace {

bool isDrawable(MzRect frame) {
    return !MzIsEmptyRect(frame) && std::isfinite(frame.origin.x) &&
           std::isfinite(frame.origin.y) && std::isfinite(frame.size.width) &&
           std::isfinite(frame.size.height);
}

GraphicsPort* currentPort() {
    const GraphicsContext* context = GraphicsContext::current();
    return context != nullptr ? context->graphicsPort() : nullptr;
}

void clipTo(GraphicsPort& port, MzSize size) {
    port.beginPath();
    port.addLines(std::array<MzPoint, 4>{
        {{0, 0}, {size.width, 0}, {size.width, size.height}, {0, size.height}}});
    port.closeSubpath();
    port.clipEvenOdd();
}

}  // namespace

View::~View() {
    for (const auto& view : subviews_) view->superview_ = nullptr;
}

int View::depth() const {
    int depth = 0;
    for (const View* view = this; view != nullptr; view = view->superview_) ++depth;
    return depth;
}

int View::height() const {
    int height = 0;
    for (const auto& view : subviews_) height = std::max(height, view->height());
    return height + 1;
}

bool View::isDescendantOf(const View* view) const {
    const View* ancestor = this;
    while (ancestor != nullptr && ancestor != view) ancestor = ancestor->superview_;
    return ancestor != nullptr;
}

bool View::addSubview(std::shared_ptr<View> view) {
    if (view == nullptr || isDescendantOf(view.get())) return false;
    if (depth() + view->height() > kDeepest) return false;
    view->removeFromSuperview();
    view->superview_ = this;
    subviews_.push_back(std::move(view));
    return true;
}

void View::removeFromSuperview() {
    if (superview_ == nullptr) return;
    Views& siblings = std::exchange(superview_, nullptr)->subviews_;
    const auto self = std::ranges::find(siblings, this, &std::shared_ptr<View>::get);
    // The last owner may be the list: this view then ends with the return.
    const std::shared_ptr<View> kept = std::move(*self);
    siblings.erase(self);
}

View* View::hitTest(MzPoint point) {
    if (!MzPointInRect(point, frame_)) return nullptr;
    const MzPoint inside{point.x - frame_.origin.x, point.y - frame_.origin.y};
    for (const auto& view : subviews_ | std::views::reverse) {
        if (View* hit = view->hitTest(inside)) return hit;
    }
    return this;
}

void View::display() {
    GraphicsPort* const port = currentPort();
    if (port == nullptr) return;
    port->saveState();
    port->setShadowWithColor({0, 0}, 0, nullptr);
    displayTree();
    port->restoreState();
}

void View::displayTree() {
    GraphicsPort* const port = currentPort();
    if (port == nullptr || !isDrawable(frame_)) return;
    port->saveState();
    port->translate(frame_.origin.x, frame_.origin.y);
    clipTo(*port, frame_.size);
    const Views views = subviews_;
    port->saveState();
    drawRect(bounds());
    port->restoreState();
    for (const auto& view : views) {
        if (view->superview_ == this) view->displayTree();
    }
    port->restoreState();
}

void View::drawRect(MzRect) {}

void View::mouseDown(const Event&) {}

}  // namespace mezalith::platform
