// SPDX-License-Identifier: MIT
#include <mezalith/style/spatial_object.hpp>
#include <mezalith/style/style.hpp>

namespace mezalith {

namespace {

platform::KeyedValue asObject(std::shared_ptr<const platform::Object> object) {
    if (object == nullptr) return {};
    return object;
}

}  // namespace

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

platform::KeyedValue MzSpatialObject::valueForKey(std::string_view key) const {
    if (key == "kind") return kind();
    if (key == "propertiesByName") return &propertiesByName();
    if (key == "featureName") return featureName();
    if (key == "featureDescription") return featureDescription();
    if (key == "allowsInteraction") return allowsInteraction();
    if (key == "geometry") return asObject(geometry());
    if (key == "style") return asObject(style());
    // Not the feature's to own.
    if (key == "objectOwner") return asObject({std::shared_ptr<void>(), objectOwner()});
    return platform::valueForKey(propertiesByName(), key);
}

}  // namespace mezalith
