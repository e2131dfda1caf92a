// SPDX-License-Identifier: MIT
#pragma once

#include "host/feature.hpp"
#include "host/map_view.hpp"
#include <mezalith/platform/interface/interface_document.hpp>
#include <mezalith/platform/predicate.hpp>

#include <cstddef>
#include <memory>
#include <optional>

namespace mezalith::host {

/// Where a callout of the geometry points: a point, the first of several, the middle vertex of a
/// line, the centroid of the largest area. None for a geometry without points.
std::optional<MzPoint> calloutPlace(const Part& part);

/// Callouts at the features of a map that meet a condition.
class Callouts {
  public:
    /// More callouts would hide the map.
    static constexpr std::size_t kMost = 100;

    /// What a callout shows unless another card is given: the feature's name and its layer.
    static platform::InterfaceDocument::Pointer defaultCard();

    /// Neither is null.
    Callouts(std::shared_ptr<const platform::Predicate> condition,
             platform::InterfaceDocument::Pointer card);

    /// Puts a callout of the feature into the view when the feature meets the condition and its
    /// place is in sight. Throws a Failure for more callouts than `kMost`.
    void show(const Feature& feature, MapView& view);

    std::size_t count() const { return count_; }

  private:
    std::shared_ptr<const platform::Predicate> condition_;
    platform::InterfaceDocument::Pointer card_;
    std::size_t count_ = 0;
};

}  // namespace mezalith::host
