// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <span>
#include <string>

namespace mezalith {

/// Any projection of the PROJ library: a reference system by its code or by a PROJ string, from
/// longitude and latitude on WGS 84, in this order whatever the system's own is. Needs the PROJ
/// library and its installed database, never the network.
///
/// SRID the code of an EPSG system, otherwise a negative number that follows from the text; name
/// that of the system, or the text; bounds those of the area of use, projected, or of everything
/// that the projection shows.
///
/// Not for several threads at once; objects of their own share nothing.
class MEZALITH_EXPORT MzProjProjection final : public MzMapProjection {
  public:
    /// A geographic or projected system as "AUTHORITY:CODE" in any case, such as "epsg:25833", or
    /// as a PROJ string, such as "+proj=moll +lon_0=150". Null for any other text, for systems of
    /// another kind and for those that are not known; `error` (may be null) then gets the reason,
    /// in one line.
    static std::shared_ptr<MzProjProjection> initWithText(const std::string& text,
                                                          std::string* error = nullptr);
    ~MzProjProjection() override;

    /// As it was given.
    const std::string& text() const { return text_; }

    /// NaN where the projection has no place for the point.
    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint point) const override;
    /// NaN where no place has these coordinates.
    MzPoint longitudeLatitudeForProjectedCoordinate(MzPoint point) const override;
    /// On the ellipsoid WGS 84, along the parallel, or along the meridian within half a degree of a
    /// pole, where parallels have no length to speak of.
    double metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const override;
    void projectCoordinates(std::span<const MzPoint> source,
                            std::span<MzPoint> destination) const override;
    void unprojectCoordinates(std::span<const MzPoint> source,
                              std::span<MzPoint> destination) const override;
    /// By the projection's method: cylinders and cones are cut opposite of their meridian,
    /// azimuthal ones end at an angle from their middle, transverse ones at one from their
    /// meridian.
    MzProjectionRegion region() const override;
    MzRect areaOfUse() const override { return area_; }
    std::shared_ptr<MzProjProjection> copy() const;

  protected:
    /// Of the same text.
    std::shared_ptr<MzMapProjection> newInstance() const override;

  private:
    class Library;

    MzProjProjection();
    MzRect projectedExtent() const;

    std::string text_;
    std::unique_ptr<Library> library_;
    MzRect area_ = MzZeroRect;
};

}  // namespace mezalith
