// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <span>

namespace mezalith {

/// The Mercator projection of web maps: the spherical formulas with the semi-major axis of WGS 84
/// as radius, applied to longitudes and latitudes on that ellipsoid. SRID 3857, metres of the
/// equator.
///
///     x = R lambda      y = R asinh(tan phi)
///
/// Longitudes go on beyond 180 degrees, so that a map may lie across the antimeridian. The poles
/// lie at infinity: its region ends at 85.05 degrees, where the world is a square, and the formulas
/// at the poles, with an infinite y; beyond, latitudes give NaN.
///
/// Accuracy: 1e-8 m up to 89 degrees, 1e-14 degrees back. Source: IOGP 373-7-2, Geomatics guidance
/// note 7-2, section 3.2.2 (Popular Visualisation Pseudo Mercator).
class MEZALITH_EXPORT MzWebMercatorProjection final : public MzMapProjection {
  public:
    MzWebMercatorProjection();

    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint point) const override;
    MzPoint longitudeLatitudeForProjectedCoordinate(MzPoint point) const override;
    void projectCoordinates(std::span<const MzPoint> source,
                            std::span<MzPoint> destination) const override;
    void unprojectCoordinates(std::span<const MzPoint> source,
                              std::span<MzPoint> destination) const override;
    /// Every longitude, and latitudes up to 85.05 degrees.
    MzProjectionRegion region() const override;
    std::shared_ptr<MzWebMercatorProjection> copy() const;

  protected:
    std::shared_ptr<MzMapProjection> newInstance() const override;
};

}  // namespace mezalith
