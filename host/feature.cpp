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

std::string Feature::featureName() const {
    for (const auto& [key, value] : record_->attributes) {
        const auto* text = std::get_if<std::string>(&value);
        if (text != nullptr && isEqualIgnoringCase(key, "name")) return *text;
    }
    return featureDescription();
}

std::string Feature::featureDescription() const {
    return record_->layer + " " + std::to_string(record_->id);
}

}  // namespace mezalith::host
