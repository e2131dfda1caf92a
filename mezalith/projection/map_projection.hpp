// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/projection/projection_region.hpp>

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace mezalith {

/// Turns longitude and latitude (degrees, x and y) into plane coordinates and back, and describes
/// itself to the host, which alone interprets `bounds`, resolutions and wrap flags. The base class
/// projects every point onto itself.
class MEZALITH_EXPORT MzMapProjection : public platform::Object {
  public:
    MzMapProjection() = default;
    static std::shared_ptr<MzMapProjection> mapProjectionWithPlateCarree();
    static std::shared_ptr<MzMapProjection> mapProjectionWithUTMZone(std::uint64_t zone);

    virtual MzPoint projectedCoordinateForLongitudeLatitude(MzPoint point) const;
    virtual MzPoint longitudeLatitudeForProjectedCoordinate(MzPoint point) const;
    /// Metres that one projected unit covers along the parallel at `point` (degrees), from the
    /// great-circle distance over one arc-second.
    virtual double metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const;

    /// Projects all points of `source` into `destination`, which may be the same memory; points
    /// that find no place there are left out. Same results as the per-point form, bit for bit. A
    /// subclass that overrides only the per-point form is right here too, at one virtual call per
    /// point.
    virtual void projectCoordinates(std::span<const MzPoint> source,
                                    std::span<MzPoint> destination) const;
    /// The inverse in bulk, under the same terms.
    virtual void unprojectCoordinates(std::span<const MzPoint> source,
                                      std::span<MzPoint> destination) const;

    /// What of the globe may be projected; everything, turn after turn, unless a subclass knows
    /// better.
    virtual MzProjectionRegion region() const;
    /// Where the projection is meant to be used: longitudes and latitudes, degrees, the east beyond
    /// 180 for an area across the antimeridian. The zero rectangle when nothing is known of it.
    virtual MzRect areaOfUse() const { return MzZeroRect; }

    std::int64_t srid() const { return srid_; }
    void setSrid(std::int64_t srid) { srid_ = srid; }
    const std::string& name() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }
    bool isEquitorialCylindrical() const { return equitorialCylindrical_; }
    void setEquitorialCylindrical(bool value) { equitorialCylindrical_ = value; }
    bool isUTM() const { return UTM_; }
    void setUTM(bool value) { UTM_ = value; }
    /// Projected extent, projected units.
    MzRect bounds() const { return bounds_; }
    void setBounds(MzRect bounds) { bounds_ = bounds; }
    bool wrapsHorizontally() const { return wrapsHorizontally_; }
    void setWrapsHorizontally(bool value) { wrapsHorizontally_ = value; }
    bool wrapsVertically() const { return wrapsVertically_; }
    void setWrapsVertically(bool value) { wrapsVertically_ = value; }
    /// Finest resolution, projected units per pixel.
    double maximumResolution() const { return maximumResolution_; }
    void setMaximumResolution(double value) { maximumResolution_ = value; }
    /// Coarsest resolution, projected units per pixel.
    double minimumResolution() const { return minimumResolution_; }
    void setMinimumResolution(double value) { minimumResolution_ = value; }

    /// YES exactly when both have the same SRID; NO for null.
    bool isEqualToMapProjection(const MzMapProjection* other) const;

    /// A new projection of the receiver's own class with the properties above, and no others.
    std::shared_ptr<MzMapProjection> copy() const;

  protected:
    /// A fresh object of the receiver's own class, for `copy`.
    virtual std::shared_ptr<MzMapProjection> newInstance() const;

  private:
    std::int64_t srid_ = 0;
    std::string name_ = "Undefined";
    bool equitorialCylindrical_ = false;
    bool UTM_ = false;
    MzRect bounds_ = MzZeroRect;
    bool wrapsHorizontally_ = false;
    bool wrapsVertically_ = false;
    double maximumResolution_ = 0;
    double minimumResolution_ = 0;
};

/// Degrees as they are: SRID 32662, the world from -180, -90 to 180, 90, wrapping in x.
class MEZALITH_EXPORT MzPlateCarreeProjection final : public MzMapProjection {
  public:
    MzPlateCarreeProjection();
    /// Metres per degree of longitude.
    double metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const override;
    void projectCoordinates(std::span<const MzPoint> source,
                            std::span<MzPoint> destination) const override;
    void unprojectCoordinates(std::span<const MzPoint> source,
                              std::span<MzPoint> destination) const override;
    std::shared_ptr<MzPlateCarreeProjection> copy() const;

  protected:
    std::shared_ptr<MzMapProjection> newInstance() const override;
};

/// One UTM zone on WGS 84, SRID 32600 + zone, metres; southern northings are negative.
/// Settled: `isUTM` answers NO, and a copy keeps zone 0 (central meridian -183) under the name and
/// SRID of its source; make a new one instead of copying. Longitudes are taken as they are, so that
/// -179 is out of reach of zone 60; `MzUTMProjection` takes them for what they mean.
class MEZALITH_EXPORT MzUTMZoneProjection final : public MzMapProjection {
  public:
    /// Zone 0 with the properties of the base class.
    MzUTMZoneProjection() = default;
    /// The zone is not checked; only its low 32 bits count when projecting.
    static std::shared_ptr<MzUTMZoneProjection> initWithZone(std::uint64_t zone);

    std::uint64_t utmZone() const { return utmZone_; }

    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint point) const override;
    MzPoint longitudeLatitudeForProjectedCoordinate(MzPoint point) const override;
    /// 1.0 everywhere: the units are metres.
    double metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const override;
    void projectCoordinates(std::span<const MzPoint> source,
                            std::span<MzPoint> destination) const override;
    void unprojectCoordinates(std::span<const MzPoint> source,
                              std::span<MzPoint> destination) const override;
    /// 70 degrees to either side of the meridian. Farther out the series folds back and would put a
    /// place where another one belongs: it stays monotonic in longitude to 80 degrees.
    MzProjectionRegion region() const override;
    std::shared_ptr<MzUTMZoneProjection> copy() const;

  protected:
    std::shared_ptr<MzMapProjection> newInstance() const override;

  private:
    std::uint64_t utmZone_ = 0;
};

}  // namespace mezalith
