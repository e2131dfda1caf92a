// SPDX-License-Identifier: MIT
#include <mezalith/projection/great_circle.hpp>
#include <mezalith/projection/map_projection.hpp>
#include <mezalith/projection/transverse_mercator.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <typeinfo>

namespace mezalith {
namespace {

constexpr double halfArcSecond = 0.0001388888888888889;  // degrees
constexpr double kZoneReach = 70;                        // degrees

/// Metres over one arc-second of the parallel, half to each side of the point.
double lengthOfArcSecond(MzPoint p) {
    return MzEarthDistance(p.x - halfArcSecond, p.y, p.x + halfArcSecond, p.y);
}

template <typename OnePoint>
void mapPoints(std::span<const MzPoint> source, std::span<MzPoint> destination,
               const OnePoint& onePoint) {
    const std::size_t count = std::min(source.size(), destination.size());
    std::transform(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(count),
                   destination.begin(), onePoint);
}

void copyPoints(std::span<const MzPoint> source, std::span<MzPoint> destination) {
    const std::size_t count = std::min(source.size(), destination.size());
    if (count > 0) std::memmove(destination.data(), source.data(), count * sizeof(MzPoint));
}

}  // namespace

// --- MzMapProjection ------------------------------------------------------

std::shared_ptr<MzMapProjection> MzMapProjection::mapProjectionWithPlateCarree() {
    return std::make_shared<MzPlateCarreeProjection>();
}

std::shared_ptr<MzMapProjection> MzMapProjection::mapProjectionWithUTMZone(std::uint64_t zone) {
    return MzUTMZoneProjection::initWithZone(zone);
}

MzPoint MzMapProjection::projectedCoordinateForLongitudeLatitude(MzPoint point) const {
    return point;
}

MzPoint MzMapProjection::longitudeLatitudeForProjectedCoordinate(MzPoint point) const {
    return point;
}

double MzMapProjection::metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const {
    const MzPoint p1 = projectedCoordinateForLongitudeLatitude({point.x - halfArcSecond, point.y});
    const MzPoint p2 = projectedCoordinateForLongitudeLatitude({point.x + halfArcSecond, point.y});
    const double dx = p2.x - p1.x, dy = p2.y - p1.y;
    return lengthOfArcSecond(point) / std::sqrt(dx * dx + dy * dy);
}

void MzMapProjection::projectCoordinates(std::span<const MzPoint> source,
                                         std::span<MzPoint> destination) const {
    if (typeid(*this) == typeid(MzMapProjection)) return copyPoints(source, destination);
    mapPoints(source, destination,
              [this](MzPoint p) { return projectedCoordinateForLongitudeLatitude(p); });
}

void MzMapProjection::unprojectCoordinates(std::span<const MzPoint> source,
                                           std::span<MzPoint> destination) const {
    if (typeid(*this) == typeid(MzMapProjection)) return copyPoints(source, destination);
    mapPoints(source, destination,
              [this](MzPoint p) { return longitudeLatitudeForProjectedCoordinate(p); });
}

MzProjectionRegion MzMapProjection::region() const {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return MzProjectionRegion::endless(-kInfinity, kInfinity);
}

bool MzMapProjection::isEqualToMapProjection(const MzMapProjection* other) const {
    return other != nullptr && other->srid_ == srid_;
}

std::shared_ptr<MzMapProjection> MzMapProjection::copy() const {
    auto copy = newInstance();
    copy->setSrid(srid_);
    copy->setName(name_);
    copy->setEquitorialCylindrical(equitorialCylindrical_);
    copy->setUTM(UTM_);
    copy->setBounds(bounds_);
    copy->setWrapsHorizontally(wrapsHorizontally_);
    copy->setWrapsVertically(wrapsVertically_);
    copy->setMaximumResolution(maximumResolution_);
    copy->setMinimumResolution(minimumResolution_);
    return copy;
}

std::shared_ptr<MzMapProjection> MzMapProjection::newInstance() const {
    return std::make_shared<MzMapProjection>();
}

// --- MzPlateCarreeProjection ----------------------------------------------

MzPlateCarreeProjection::MzPlateCarreeProjection() {
    setSrid(32662);
    setName("Plate Carree");
    setEquitorialCylindrical(true);
    setBounds({{-180.0, -90.0}, {360.0, 180.0}});
    setWrapsHorizontally(true);
    setMaximumResolution(1e-05);
    setMinimumResolution(1.0);
}

double MzPlateCarreeProjection::metersPerProjectedUnitForLongitudeLatitude(MzPoint point) const {
    return lengthOfArcSecond(point) * 3600;
}

void MzPlateCarreeProjection::projectCoordinates(std::span<const MzPoint> source,
                                                 std::span<MzPoint> destination) const {
    copyPoints(source, destination);
}

void MzPlateCarreeProjection::unprojectCoordinates(std::span<const MzPoint> source,
                                                   std::span<MzPoint> destination) const {
    copyPoints(source, destination);
}

std::shared_ptr<MzPlateCarreeProjection> MzPlateCarreeProjection::copy() const {
    return std::static_pointer_cast<MzPlateCarreeProjection>(MzMapProjection::copy());
}

std::shared_ptr<MzMapProjection> MzPlateCarreeProjection::newInstance() const {
    return std::make_shared<MzPlateCarreeProjection>();
}

// --- MzUTMZoneProjection --------------------------------------------------

std::shared_ptr<MzUTMZoneProjection> MzUTMZoneProjection::initWithZone(std::uint64_t zone) {
    auto projection = std::make_shared<MzUTMZoneProjection>();
    projection->utmZone_ = zone;
    projection->setSrid(static_cast<std::int64_t>(32600 + zone));
    projection->setName("UTM Zone " + std::to_string(zone));
    projection->setBounds({{165000.0, 1975036.0}, {669000.0, 5966335.0}});
    projection->setMaximumResolution(2.0);
    projection->setMinimumResolution(32.0);
    return projection;
}

MzPoint MzUTMZoneProjection::projectedCoordinateForLongitudeLatitude(MzPoint point) const {
    MzPoint projected{};
    LatitudeLongitudeToUTMZone(static_cast<std::uint32_t>(utmZone_), &projected.x, &projected.y,
                               point.y, point.x);
    return projected;
}

MzPoint MzUTMZoneProjection::longitudeLatitudeForProjectedCoordinate(MzPoint point) const {
    MzPoint geographic{};
    UTMToLatitudeLongitude(static_cast<std::uint32_t>(utmZone_), &geographic.y, &geographic.x,
                           point.x, point.y);
    return geographic;
}

double MzUTMZoneProjection::metersPerProjectedUnitForLongitudeLatitude(MzPoint /*point*/) const {
    return 1.0;
}

void MzUTMZoneProjection::projectCoordinates(std::span<const MzPoint> source,
                                             std::span<MzPoint> destination) const {
    LatitudeLongitudeToUTMZone(static_cast<std::uint32_t>(utmZone_), source, destination);
}

void MzUTMZoneProjection::unprojectCoordinates(std::span<const MzPoint> source,
                                               std::span<MzPoint> destination) const {
    UTMToLatitudeLongitude(static_cast<std::uint32_t>(utmZone_), source, destination);
}

MzProjectionRegion MzUTMZoneProjection::region() const {
    // The arithmetic of the projection itself, which goes on with the low bits of any zone.
    const auto meridian = static_cast<std::int32_t>(static_cast<std::uint32_t>(utmZone_) * 6 - 183);
    return MzProjectionRegion::band(meridian, kZoneReach, -90, 90);
}

std::shared_ptr<MzUTMZoneProjection> MzUTMZoneProjection::copy() const {
    return std::static_pointer_cast<MzUTMZoneProjection>(MzMapProjection::copy());
}

std::shared_ptr<MzMapProjection> MzUTMZoneProjection::newInstance() const {
    return std::make_shared<MzUTMZoneProjection>();
}

}  // namespace mezalith
