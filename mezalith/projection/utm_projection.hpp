// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <cstdint>
#include <memory>
#include <span>

namespace mezalith {

/// The UTM zone, 1 to 60, that a place (degrees) belongs to, longitudes being taken whole turns
/// apart: 32 in the south-west of Norway (32V), and 31, 33, 35 or 37 on Svalbard (31X to 37X). 0
/// where there is none: south of 80 degrees south, from 84 degrees north on, and for points that
/// are not finite. Source: NGA.STND.0037, Universal grids and the transverse Mercator projection,
/// section 3.
MEZALITH_EXPORT std::uint32_t MzUTMZoneOf(MzPoint point);

/// One hemisphere of a UTM zone on WGS 84, in metres, within 10 nanometres of the
/// projection's definition up to 35 degrees from the meridian and 2 centimetres up to 70 degrees
/// from its meridian: the counterpart of `MzUTMZoneProjection`. SRID 32600 + zone in the north,
/// 32700 + zone in the south, where 10,000,000 is added to northings. Longitudes are taken whole
/// turns apart.
class MEZALITH_EXPORT MzUTMProjection final : public MzMapProjection {
  public:
    enum class Hemisphere { North, South };

    /// Null unless the zone is one of 1 to 60.
    static std::shared_ptr<MzUTMProjection> initWithZone(std::uint32_t zone, Hemisphere hemisphere);
    /// That of a place, degrees; the equator counts to the north. Null where there is no zone.
    static std::shared_ptr<MzUTMProjection> initWithLongitudeLatitude(MzPoint point);

    /// For `initWithZone`.
    MzUTMProjection(std::uint32_t zone, Hemisphere hemisphere);

    std::uint32_t utmZone() const { return zone_; }
    Hemisphere hemisphere() const { return hemisphere_; }

    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint point) const override;
    MzPoint longitudeLatitudeForProjectedCoordinate(MzPoint point) const override;
    /// 1.0 everywhere: the units are metres.
    double metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const override;
    void projectCoordinates(std::span<const MzPoint> source,
                            std::span<MzPoint> destination) const override;
    void unprojectCoordinates(std::span<const MzPoint> source,
                              std::span<MzPoint> destination) const override;
    /// 70 degrees to either side of the meridian, from pole to pole.
    MzProjectionRegion region() const override;
    /// The zone, 6 degrees wide, from the equator to 84 degrees north or 80 degrees south.
    MzRect areaOfUse() const override;
    std::shared_ptr<MzUTMProjection> copy() const;

  protected:
    /// Of the same zone and hemisphere.
    std::shared_ptr<MzMapProjection> newInstance() const override;

  private:
    double meridian() const { return zone_ * 6.0 - 183; }
    MzPoint offset() const;

    std::uint32_t zone_;
    Hemisphere hemisphere_;
};

}  // namespace mezalith
