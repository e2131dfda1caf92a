// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geomagnetism/geomagnetic_model.hpp>

#include <string>
#include <string_view>

namespace mezalith::detail {

struct ModelReading {
    MzGeomagneticModel::Contents contents;
    std::string failure;  ///< what is wrong and on which line; empty when the contents are a model
};

/// Reads a model in any of the layouts that MzGeomagneticModel knows.
MEZALITH_EXPORT ModelReading readModel(std::string_view text);

}  // namespace mezalith::detail
