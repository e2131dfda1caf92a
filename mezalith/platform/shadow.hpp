// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/color.hpp>

#include <memory>
#include <string_view>

namespace mezalith::platform {

/// How far (view points) a shadow reaches from what casts it: its offset, three standard deviations
/// of the blur and what pixels round. Infinity for what is not finite.
MEZALITH_EXPORT double shadowReach(MzSize offset, double blur);

/// A shadow to be cast by later drawing. A new one is cast straight below, unblurred, in the
/// default colour.
struct MEZALITH_EXPORT Shadow final : Archivable {
    MzSize offset{0, 0};    ///< view points, +x to the right, +y up
    double blurRadius = 0;  ///< view points
    /// Black at a third of its alpha unless set; null casts no shadow.
    std::shared_ptr<const Color> color = defaultColor();

    static std::shared_ptr<const Color> defaultColor();

    /// Makes this the shadow of the current graphics context's port; nothing without a port.
    void set() const;

    std::string_view archiveClassName() const override { return "Shadow"; }
    /// Writes "offsetWidth", "offsetHeight" and "blurRadius" as doubles and "color" as an object.
    void encodeWithCoder(KeyedArchiver& coder) const override;
    /// Reads what `encodeWithCoder` wrote; absent numbers are 0 and an absent colour is null.
    static std::shared_ptr<const Shadow> initWithCoder(const KeyedUnarchiver& coder);
};

}  // namespace mezalith::platform
