// SPDX-License-Identifier: MIT
#include "host/feature.hpp"

#include "host/letter_case.hpp"

#include <utility>
#include <variant>

namespace mezalith::host {

Feature::Feature(std::shared_ptr<const FeatureRecord> record, Part part)
    : record_(std::move(record)), part_(std::move(part)) {}

std::shared_ptr<Feature> Feature::withGeometry(std::shared_ptr<MzGeometry> geometry) const {
    auto feature = std::make_shared<Feature>(record_, Part{part_.form, std::move(geometry)});
    feature->setStyle(style_);
    return feature;
}

const std::string* Feature::nameAttribute() const {
    for (const auto& [key, value] : record_->attributes) {
        const auto* text = std::get_if<std::string>(&value);
        if (text != nullptr && isEqualIgnoringCase(key, "name")) return text;
    }
    return nullptr;
}

std::string Feature::featureName() const {
    const std::string* name = nameAttribute();
    return name != nullptr ? *name : featureDescription();
}

std::string Feature::featureDescription() const {
    return record_->layer + " " + std::to_string(record_->id);
}

platform::KeyedValue Feature::valueForKey(std::string_view key) const {
    if (key == "kind") return std::string_view(record_->layer);
    const std::string* name = key == "featureName" ? nameAttribute() : nullptr;
    return name != nullptr ? std::string_view(*name) : MzSpatialObject::valueForKey(key);
}

}  // namespace mezalith::host
