// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/export.hpp>
#include <mezalith/platform/view.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <memory>

namespace mezalith {

/// The host's map view, as the symbolizers see it. The library calls these operations and
/// leaves them to the host. Drawing does not go through the context: it goes to the current
/// graphics port, which the host has set up for view points.
class MEZALITH_EXPORT MzDrawContext : public MzClippingContext {
  public:
    virtual std::shared_ptr<MzMapProjection> mapProjection() const = 0;
    /// The region of the current view; null counts as a zero rectangle.
    virtual std::shared_ptr<MzClippingRegion> clippingRegion() const = 0;
    /// The N of the scale 1:N.
    virtual double scaleDenominator() const = 0;
    /// By which symbolizers multiply widths, dashes and symbol sizes.
    virtual double scaleFactor() const = 0;
    /// Makes `view` the last of the views that stand in this one, in its view points. A host whose
    /// view holds no others leaves it out, and shows no callouts.
    virtual void addSubview(const std::shared_ptr<platform::View>& /*view*/) {}
};

}  // namespace mezalith
