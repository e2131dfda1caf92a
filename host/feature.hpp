// SPDX-License-Identifier: MIT
#pragma once

#include "host/parts.hpp"
#include <mezalith/style/spatial_object.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace mezalith::host {

/// What a data source tells about one of its records, geometry apart. Shared by the features that
/// the record's geometry was taken apart into.
struct FeatureRecord {
    std::int64_t id = 0;  ///< the source's own number of the record
    std::string layer;
    platform::Dictionary attributes;
};

/// A feature of a map: one drawable part of a record's geometry and the style that draws it.
class Feature final : public MzSpatialObject {
  public:
    /// `record` and `part.geometry` are not null.
    Feature(std::shared_ptr<const FeatureRecord> record, Part part);

    /// Another part of the same record, drawn by the same style.
    std::shared_ptr<Feature> withGeometry(std::shared_ptr<MzGeometry> geometry) const;

    const std::shared_ptr<const FeatureRecord>& record() const { return record_; }
    Form form() const { return part_.form; }
    void setStyle(std::shared_ptr<MzStyle> style) { style_ = std::move(style); }

    std::shared_ptr<MzGeometry> geometry() const override { return part_.geometry; }
    /// Null until set: such a feature draws nothing.
    std::shared_ptr<MzStyle> style() const override { return style_; }
    /// Features have no owner.
    platform::Object* objectOwner() const override { return nullptr; }
    /// The text of the attribute "name", however its letters are cased, or "layer id" without one.
    std::string featureName() const override;
    /// "layer id".
    std::string featureDescription() const override;
    /// The layer.
    std::string kind() const override { return record_->layer; }
    const platform::Dictionary& propertiesByName() const override { return record_->attributes; }
    bool allowsInteraction() const override { return true; }
    /// Lends its texts, so that predicates do not allocate.
    platform::KeyedValue valueForKey(std::string_view key) const override;

  private:
    const std::string* nameAttribute() const;

    std::shared_ptr<const FeatureRecord> record_;
    Part part_;
    std::shared_ptr<MzStyle> style_;
};

}  // namespace mezalith::host
