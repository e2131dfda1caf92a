// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>

#include <cstdint>
#include <memory>

namespace mezalith {

/// The great circle between two points as a multi-point: 2^k + 1 points from start to end, equally
/// spaced by repeated bisection on the sphere of `MzEarthDistance`. Longitudes are not normalised:
/// a line over the 180th meridian runs on beyond it and falls back at its end. To draw great
/// circles, take `MzGeodesicLines`.
class MEZALITH_EXPORT MzGeodesicGeometry : public MzMultiPointGeometry {
  public:
    /// `start` and `end` are longitude and latitude in degrees, `resolution` is in metres, and k =
    /// floor(log2(distance / resolution - 1)), at least 0. A resolution that is zero, negative,
    /// infinite or NaN gives the two ends alone. Null when there is no memory.
    /// Settled: the spacing may come near three times the resolution, and k counts modulo 32.
    static std::shared_ptr<MzGeodesicGeometry> initWithStart(MzPoint start, MzPoint end,
                                                             double resolution);

  protected:
    std::shared_ptr<MzMultiPointGeometry> newInstance() const override;
};

/// Fills the points strictly between the indices `low` and `high` of the record by bisection, the
/// lower half first; the two points at the indices must be set (longitude, latitude, degrees). Does
/// nothing unless low < high < count and the record has an array.
MEZALITH_EXPORT void MzRecursiveGeodesic(std::uint64_t low, std::uint64_t high,
                                         MzMultiPoint* multiPoint);

}  // namespace mezalith
