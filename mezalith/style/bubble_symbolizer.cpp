// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/platform/hit_port.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>

#include <utility>

namespace mezalith {

namespace {

/// What the body adds to the content: 10 points of padding at every side.
constexpr MzSize kPadding{20, 20};
/// What the view adds to the content: the padding, a point for the outline at every side, and the
/// stem's 25 points below. Added at once, because a sum of the parts may round otherwise.
constexpr MzSize kMargins{22, 47};
constexpr MzPoint kBodyOrigin{1, 26};
constexpr MzPoint kContentOrigin{11, 36};
constexpr MzPoint kStemOrigin{25, 0};

}  // namespace

MzBubbleSymbolizer::MzBubbleSymbolizer() = default;

MzBubbleSymbolizer::~MzBubbleSymbolizer() = default;

std::shared_ptr<MzBubbleSymbolizer> MzBubbleSymbolizer::initWithNib(
    std::string_view name, std::shared_ptr<platform::Object> representedObject) {
    auto symbolizer = std::make_shared<MzBubbleSymbolizer>();
    symbolizer->bubbleRect_ = MzZeroRect;
    symbolizer->representedObject_ = std::move(representedObject);
    symbolizer->loadContent(name);
    return symbolizer;
}

void MzBubbleSymbolizer::loadContent(std::string_view name) {
    view_ = platform::InterfaceFile::load(name, *this);
    const MzSize content = view_ != nullptr ? view_->frame().size : MzSize{0, 0};
    bubbleView_ = std::make_shared<MzBubbleView>(
        MzRect{{0, 0}, {content.width + kMargins.width, content.height + kMargins.height}});
    bubbleView_->setBubbleRect(
        {kBodyOrigin, {content.width + kPadding.width, content.height + kPadding.height}});
    bubbleView_->setStemOrigin(kStemOrigin);
    if (view_ == nullptr) return;
    bubbleView_->addSubview(view_);
    view_->setFrameOrigin(kContentOrigin);
}

void MzBubbleSymbolizer::setOffset(MzPoint offset) {
    changeValues({"offset", MzDrawPropertyKey}, [&] { offset_ = offset; });
}

void MzBubbleSymbolizer::setBubbleRect(MzRect rect) {
    setProperty("bubbleRect", bubbleRect_, rect);
}

void MzBubbleSymbolizer::setRepresentedObject(std::shared_ptr<platform::Object> object) {
    setProperty("representedObject", representedObject_, std::move(object));
}

void MzBubbleSymbolizer::setView(std::shared_ptr<platform::View> view) {
    setProperty("view", view_, std::move(view));
}

void MzBubbleSymbolizer::setBubbleView(std::shared_ptr<MzBubbleView> view) {
    setProperty("bubbleView", bubbleView_, std::move(view));
}

void MzBubbleSymbolizer::drawSpatialObject(MzSpatialObjectDrawAdditions* object,
                                           MzDrawContext* context, bool) {
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    if (geometry == nullptr) return removeView();
    if (auto* single = dynamic_cast<MzPointGeometry*>(geometry.get())) {
        const MzPoint* point = single->clippedPointWithRegion(context->clippingRegion().get());
        if (point == nullptr) return removeView();
        show(*context, *point);
    } else if (dynamic_cast<MzMultiPointGeometry*>(geometry.get()) != nullptr) {
        show(*context, {0, 0});
    }
}

bool MzBubbleSymbolizer::paintsAtPoint(MzSpatialObjectDrawAdditions*, MzPoint point,
                                       double tolerance, MzDrawContext*, bool) {
    if (bubbleView_ == nullptr || bubbleView_->superview() == nullptr) return false;
    platform::HitPort port(point, tolerance);
    const platform::GraphicsContext current(&port);
    bubbleView_->display();
    return port.isHit();
}

void MzBubbleSymbolizer::show(MzDrawContext& context, MzPoint point) {
    if (bubbleView_ == nullptr) return;
    if (bubbleView_->superview() == nullptr) context.addSubview(bubbleView_);
    const MzPoint stem = bubbleView_->stemOrigin();
    bubbleView_->setFrameOrigin({point.x + offset_.x - stem.x, point.y + offset_.y - stem.y});
}

void MzBubbleSymbolizer::didRemoveFromContext(MzDrawContext*, MzSpatialObjectDrawAdditions*) {
    removeView();
}

void MzBubbleSymbolizer::removeView() {
    if (bubbleView_ != nullptr) bubbleView_->removeFromSuperview();
}

std::shared_ptr<MzSymbolizer> MzBubbleSymbolizer::newInstance() const {
    return std::make_shared<MzBubbleSymbolizer>();
}

}  // namespace mezalith
