// SPDX-License-Identifier: MIT
#include <mezalith/style/spatial_object.hpp>
#include <mezalith/style/style.hpp>

namespace mezalith {

void MzSpatialObjectDrawAdditions::didAddToContext(MzDrawContext*) {}

void MzSpatialObjectDrawAdditions::didRemoveFromContext(MzDrawContext* context) {
    if (const auto style = this->style()) style->didRemoveFromContext(context, this);
}

void MzSpatialObjectDrawAdditions::drawInContext(MzDrawContext* context, bool selected) {
    if (dynamic_cast<MzSpatialObject*>(this) == nullptr) return;
    if (const auto style = this->style()) style->drawSpatialObject(this, context, selected);
}

bool MzSpatialObjectDrawAdditions::isAtPoint(MzPoint point, MzDrawContext* context, bool selected) {
    const auto style = this->style();
    return style != nullptr && style->isSpatialObject(this, point, context, selected);
}

std::uint32_t MzSpatialObjectDrawAdditions::spatialObjectEventOptions() const {
    const auto style = this->style();
    return style != nullptr ? style->spatialObjectEventOptions() : 0;
}

void MzSpatialObjectDrawAdditions::mouseEntered(const platform::Event& event, MzPoint point,
                                                MzDrawContext* context) {
    if (const auto style = this->style()) style->mouseEntered(event, point, this, context);
}

void MzSpatialObjectDrawAdditions::mouseExited(const platform::Event& event, MzPoint point,
                                               MzDrawContext* context) {
    if (const auto style = this->style()) style->mouseExited(event, point, this, context);
}

void MzSpatialObjectDrawAdditions::mouseMoved(const platform::Event& event, MzPoint point,
                                              MzDrawContext* context) {
    if (const auto style = this->style()) style->mouseMoved(event, point, this, context);
}

}  // namespace mezalith
