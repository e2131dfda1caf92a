// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <vector>

namespace mezalith {

/// What of the globe a projection takes to its plane without folding, tearing or losing it. What
/// lies outside is not to be projected, and along the edge maps are cut. Degrees throughout.
struct MzProjectionRegion {
    enum class Shape {
        Endless,  ///< every longitude, turn after turn, between two latitudes
        Band,     ///< longitudes to either side of a meridian, between two latitudes
        Cap,      ///< everything within an angle of one place, on the sphere
    };

    /// Where a band is interrupted: along a meridian, from the parallel where the gap begins to one
    /// edge, the projection takes what lies on its two sides apart.
    struct Gap {
        double meridian;
        double tip;    ///< the latitude where it begins
        bool isNorth;  ///< it runs to the north edge, or to the south one
    };

    Shape shape = Shape::Endless;
    MzPoint centre{0, 0};  ///< of a cap; x is the middle meridian of a band
    double reach = 180;    ///< to either side of the meridian, or the angle of a cap; 180 at most
    double south = -90;    ///< of all but caps
    double north = 90;
    std::vector<Gap> gaps{};  ///< of a band, all within its reach

    /// Longitudes without end; latitudes from `south` to `north`.
    static MzProjectionRegion endless(double south, double north) {
        return {Shape::Endless, {0, 0}, 180, south, north, {}};
    }
    /// `reach` degrees to either side of `meridian`.
    static MzProjectionRegion band(double meridian, double reach, double south, double north) {
        return {Shape::Band, {meridian, 0}, reach, south, north, {}};
    }
    /// Up to `reach` degrees from `centre`.
    static MzProjectionRegion cap(MzPoint centre, double reach) {
        return {Shape::Cap, centre, reach, -90, 90, {}};
    }

    /// Whether the point lies in it, edge and gaps included, whole turns of its longitude apart. NO
    /// for points that are not finite.
    MEZALITH_EXPORT bool holds(MzPoint point) const;
};

/// The angle between two places on the sphere, degrees; longitudes and latitudes in degrees.
MEZALITH_EXPORT double MzAngleBetween(MzPoint a, MzPoint b);

}  // namespace mezalith
