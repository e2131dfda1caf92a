// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/projection/projection_region.hpp>

#include <string>

#include <proj.h>

namespace mezalith::detail {

/// What a reference system says of the way in which it projects.
struct ProjMethod {
    std::string name;             ///< such as "Polar Stereographic (variant A)"; empty for degrees
    MzPoint origin{0, 0};         ///< longitude and latitude, degrees
    double standardParallel = 0;  ///< degrees
};

/// That of a projected or geographic reference system.
ProjMethod methodOf(PJ_CONTEXT* context, const PJ* system);

/// What of the globe such a projection shows without folding or losing it, by its kind.
/// `area`, which may be zero, is where the system is meant to be used.
MzProjectionRegion regionOf(const ProjMethod& method, MzRect area);

}  // namespace mezalith::detail
