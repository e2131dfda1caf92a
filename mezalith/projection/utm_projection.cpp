// SPDX-License-Identifier: MIT
#include <mezalith/projection/gauss_kruger.hpp>
#include <mezalith/projection/utm_projection.hpp>

#include <cmath>
#include <string>

namespace mezalith {
namespace {

constexpr double kScale = 0.9996;
constexpr double kFalseEasting = 500'000;
constexpr double kFalseNorthing = 10'000'000;  // in the south
constexpr double kReach = 70;                  // degrees

/// Where the zones end, degrees.
constexpr double kSouth = -80;
constexpr double kNorth = 84;

/// The zone on Svalbard, from 72 degrees north on; 0 outside of 0 to 42 degrees east.
std::uint32_t svalbardZoneOf(double longitude) {
    if (longitude < 0 || longitude >= 42) return 0;
    if (longitude < 9) return 31;
    if (longitude < 21) return 33;
    return longitude < 33 ? 35 : 37;
}

}  // namespace

std::uint32_t MzUTMZoneOf(MzPoint point) {
    if (!std::isfinite(point.x) || !(point.y >= kSouth && point.y < kNorth)) return 0;
    double longitude = std::remainder(point.x, 360);
    if (longitude == 180) longitude = -180;
    if (point.y >= 72) {
        if (const std::uint32_t zone = svalbardZoneOf(longitude)) return zone;
    } else if (point.y >= 56 && point.y < 64 && longitude >= 3 && longitude < 12) {
        return 32;
    }
    return static_cast<std::uint32_t>((longitude + 180) / 6) + 1;
}

std::shared_ptr<MzUTMProjection> MzUTMProjection::initWithZone(std::uint32_t zone,
                                                               Hemisphere hemisphere) {
    if (zone < 1 || zone > 60) return nullptr;
    return std::make_shared<MzUTMProjection>(zone, hemisphere);
}

std::shared_ptr<MzUTMProjection> MzUTMProjection::initWithLongitudeLatitude(MzPoint point) {
    return initWithZone(MzUTMZoneOf(point), point.y < 0 ? Hemisphere::South : Hemisphere::North);
}

MzUTMProjection::MzUTMProjection(std::uint32_t zone, Hemisphere hemisphere)
    : zone_(zone), hemisphere_(hemisphere) {
    const bool isNorth = hemisphere == Hemisphere::North;
    setSrid((isNorth ? 32600 : 32700) + static_cast<std::int64_t>(zone));
    setName("UTM Zone " + std::to_string(zone) + (isNorth ? "N" : "S"));
    setUTM(true);
    // The extent of the zone: widest on the equator, cut off at 84 degrees north, 80 south.
    setBounds(isNorth ? MzRect{{166'021, 0}, {667'958, 9'329'006}}
                      : MzRect{{166'021, 1'116'915}, {667'958, 8'883'085}});
    setMaximumResolution(0.01);
    setMinimumResolution(10'000);
}

MzPoint MzUTMProjection::offset() const {
    return {kFalseEasting, hemisphere_ == Hemisphere::South ? kFalseNorthing : 0};
}

MzPoint MzUTMProjection::projectedCoordinateForLongitudeLatitude(MzPoint point) const {
    projectCoordinates({&point, 1}, {&point, 1});
    return point;
}

MzPoint MzUTMProjection::longitudeLatitudeForProjectedCoordinate(MzPoint point) const {
    unprojectCoordinates({&point, 1}, {&point, 1});
    return point;
}

double MzUTMProjection::metersPerProjectedUnitForLongitudeLatitude(MzPoint /*point*/) const {
    return 1.0;
}

void MzUTMProjection::projectCoordinates(std::span<const MzPoint> source,
                                         std::span<MzPoint> destination) const {
    MzGaussKruger(source, destination, meridian(), kScale, offset());
}

void MzUTMProjection::unprojectCoordinates(std::span<const MzPoint> source,
                                           std::span<MzPoint> destination) const {
    MzInverseGaussKruger(source, destination, meridian(), kScale, offset());
}

MzProjectionRegion MzUTMProjection::region() const {
    return MzProjectionRegion::band(meridian(), kReach, -90, 90);
}

MzRect MzUTMProjection::areaOfUse() const {
    const bool isNorth = hemisphere_ == Hemisphere::North;
    return {{meridian() - 3, isNorth ? 0 : kSouth}, {6, isNorth ? kNorth : -kSouth}};
}

std::shared_ptr<MzUTMProjection> MzUTMProjection::copy() const {
    return std::static_pointer_cast<MzUTMProjection>(MzMapProjection::copy());
}

std::shared_ptr<MzMapProjection> MzUTMProjection::newInstance() const {
    return std::make_shared<MzUTMProjection>(zone_, hemisphere_);
}

}  // namespace mezalith
