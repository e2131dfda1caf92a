// SPDX-License-Identifier: MIT
#include "host/view_cutter.hpp"

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>
#include <utility>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;
using Rings = std::vector<Points>;

/// Points along each side of a rectangle from which the degrees that it shows are taken, and the
/// share of them by which they are grown for what lies between.
constexpr int kOutlineSteps = 32;
constexpr double kOutlineMargin = 0.02;

/// Half a turn, and a hair less, so that the two sides of a cut stay apart; the pole. Degrees.
constexpr double kHalfTurn = 180;
constexpr double kHair = 1e-9;
constexpr double kPole = 90;

BoundingBox grown(const BoundingBox& box, double share) {
    const double dx = box.width() * share, dy = box.height() * share;
    return {box.minX - dx, box.minY - dy, box.maxX + dx, box.maxY + dy};
}

Points pointsOfGeometry(const MzGeometry& geometry) {
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(&geometry)) {
        return {point->asNSPoint()};
    }
    if (const auto* points = dynamic_cast<const MzMultiPointGeometry*>(&geometry)) {
        const auto run = pointsOf(points->multiPointGeometry());
        return {run.begin(), run.end()};
    }
    return {};
}

Rings ringsOfPolygon(const MzPolygon& polygon) {
    Rings rings;
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        const auto run = pointsOf(&ring);
        rings.emplace_back(run.begin(), run.end());
    }
    return rings;
}

std::vector<Rings> membersOfGeometry(const MzGeometry& geometry) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(&geometry)) {
        return {ringsOfPolygon(*polygon->polygonGeometry())};
    }
    std::vector<Rings> members;
    if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(&geometry)) {
        for (const MzPolygon& member : polygonsOf(polygons->multiPolygonGeometry())) {
            members.push_back(ringsOfPolygon(member));
        }
    }
    return members;
}

std::shared_ptr<MzGeometry> multiPoint(Points points) {
    return MzMultiPointGeometry::initWithMultiPoint(
        {static_cast<std::uint32_t>(points.size()), points.data()});
}

/// Of the points of `whole`, some: a point stays a point, alone.
std::shared_ptr<MzGeometry> pointsLike(const MzGeometry& whole, Points points) {
    if (whole.geometryType() == MzGeometryTypePoint) {
        return MzPointGeometry::initWithPoint(points.front());
    }
    return multiPoint(std::move(points));
}

std::shared_ptr<MzGeometry> polygon(Rings rings) {
    std::vector<MzLinearRing> records;
    for (Points& ring : rings) {
        records.push_back({static_cast<std::uint32_t>(ring.size()), ring.data()});
    }
    return MzPolygonGeometry::initWithPolygon(
        {static_cast<std::uint32_t>(records.size()), records.data()});
}

void move(Points& points, double shift) {
    for (MzPoint& point : points) point.x += shift;
}

/// The degrees of a rectangle in the plane of a cylindrical projection, whose sides are meridians
/// and parallels.
BoundingBox degreesOf(const MzMapProjection& projection, const BoundingBox& rectangle) {
    const MzPoint low =
        projection.longitudeLatitudeForProjectedCoordinate({rectangle.minX, rectangle.minY});
    const MzPoint high =
        projection.longitudeLatitudeForProjectedCoordinate({rectangle.maxX, rectangle.maxY});
    return {low.x, low.y, high.x, high.y};
}

/// The longitudes and latitudes of a region.
BoundingBox boxOf(const MzProjectionRegion& region) {
    using Shape = MzProjectionRegion::Shape;
    double reach = region.reach, south = region.south, north = region.north;
    if (region.shape == Shape::Cap) {
        south = std::max(region.centre.y - reach, -kPole);
        north = std::min(region.centre.y + reach, kPole);
        // From where the pole is within, it has every longitude.
        const double across = std::sin(reach * std::numbers::pi / kHalfTurn) /
                              std::cos(region.centre.y * std::numbers::pi / kHalfTurn);
        const bool hasPole = south == -kPole || north == kPole || !(across < 1);
        reach = hasPole ? kHalfTurn : std::asin(across) * kHalfTurn / std::numbers::pi;
    }
    return {region.centre.x - reach, south, region.centre.x + reach, north};
}

/// Whether the box, which the band holds, lies on both sides of one of its gaps.
bool meetsGap(const MzProjectionRegion& band, const BoundingBox& box) {
    return std::ranges::any_of(band.gaps, [&box](const MzProjectionRegion::Gap& gap) {
        return box.minX <= gap.meridian && gap.meridian <= box.maxX &&
               (gap.isNorth ? box.maxY >= gap.tip : box.minY <= gap.tip);
    });
}

/// What of an endless region surrounds the middle of what is seen: once around the globe, or three
/// times where the view would show the cut.
MzProjectionRegion bandAround(MzProjectionRegion region, const BoundingBox& seen) {
    if (region.shape != MzProjectionRegion::Shape::Endless) return region;
    const double reach = seen.width() <= 2 * kHalfTurn ? kHalfTurn : 3 * kHalfTurn;
    return MzProjectionRegion::band(seen.centre().x, reach - kHair, std::max(region.south, -kPole),
                                    std::min(region.north, kPole));
}

/// A copy to the east.
std::shared_ptr<MzGeometry> moved(const MzGeometry& geometry, double shift) {
    std::vector<Rings> members = membersOfGeometry(geometry);
    if (members.empty()) {
        Points points = pointsOfGeometry(geometry);
        move(points, shift);
        return pointsLike(geometry, std::move(points));
    }
    Rings all;
    for (Rings& rings : members) {
        for (Points& ring : rings) {
            move(ring, shift);
            all.push_back(std::move(ring));
        }
    }
    return polygon(std::move(all));
}

}  // namespace

BoundingBox boundsOf(MzGeometry& geometry) {
    BoundingBox box;
    for (const auto& leaf : geometry.leafNodes()) box.add(BoundingBox::of(leaf->bounds()));
    return box;
}

BoundingBox seenThrough(const MzMapProjection& projection, const BoundingBox& rectangle) {
    const MzProjectionRegion region = projection.region();
    if (projection.isEquitorialCylindrical()) return degreesOf(projection, rectangle);
    const BoundingBox whole = boxOf(region);
    const double tolerance = kOutlineMargin * std::max(rectangle.width(), rectangle.height());
    const Points plane = gridOf(rectangle, kOutlineSteps);
    Points places = plane;
    projection.unprojectCoordinates(places, places);
    Points again = places;
    projection.projectCoordinates(again, again);
    BoundingBox seen;
    for (std::size_t i = 0; i < plane.size(); ++i) {
        // Far out, what an inverse answers need not be where the projection puts there.
        const double off = std::hypot(again[i].x - plane[i].x, again[i].y - plane[i].y);
        if (!region.holds(places[i]) || !(off <= tolerance)) return whole;
        const double x = std::remainder(places[i].x - region.centre.x, 2 * kHalfTurn);
        seen.add(MzPoint{region.centre.x + x, places[i].y});
    }
    // Around a pole the grid may miss the last degrees, and meets every longitude.
    for (const double pole : {-kPole, kPole}) {
        const MzPoint p =
            projection.projectedCoordinateForLongitudeLatitude({region.centre.x, pole});
        if (region.holds({region.centre.x, pole}) &&
            grown(rectangle, kOutlineMargin).meets({p.x, p.y, p.x, p.y})) {
            return {whole.minX, std::min(seen.minY, pole), whole.maxX, std::max(seen.maxY, pole)};
        }
    }
    return grown(seen, kOutlineMargin);
}

ViewCutter::ViewCutter(std::shared_ptr<MzMapProjection> projection, const BoundingBox& rectangle,
                       double tolerance)
    : projection_(std::move(projection)),
      region_(projection_->region()),
      seen_(seenThrough(*projection_, rectangle)),
      shown_(bandAround(region_, seen_)),
      globe_(projection_, shown_, rectangle, tolerance) {}

ViewCutter::Geometries ViewCutter::cut(const Part& part) const {
    Geometries pieces;
    const BoundingBox box = boundsOf(*part.geometry);
    // The feature where it is comes last: a callout, of which there is one, stays there.
    const std::array<double, 3> shifts{-360.0, 360.0, 0.0};
    const bool isSeen = std::ranges::any_of(
        shifts, [&](double shift) { return seen_.meets(box.movedBy(shift, 0)); });
    if (!isSeen) return pieces;
    for (const Part& piece : cutGlobe(part)) {
        const BoundingBox pieceBox = boundsOf(*piece.geometry);
        for (const double shift : shifts) {
            const bool isRepeated = region_.shape == MzProjectionRegion::Shape::Endless;
            // What surrounds a pole is there in every turn.
            if (shift != 0 && (!isRepeated || pieceBox.width() > 2 * kHalfTurn)) continue;
            if (isRepeated && !seen_.meets(pieceBox.movedBy(shift, 0))) continue;
            pieces.push_back(shift == 0 ? piece.geometry : moved(*piece.geometry, shift));
        }
    }
    return pieces;
}

GlobeRings ViewCutter::outline() const {
    GlobeRings rings;
    if (region_.shape == MzProjectionRegion::Shape::Endless) {
        const BoundingBox shown{seen_.minX, std::max(seen_.minY, shown_.south), seen_.maxX,
                                std::min(seen_.maxY, shown_.north)};
        if (shown == seen_ || shown.isEmpty()) return rings;
        rings.push_back({{shown.minX, shown.minY},
                         {shown.maxX, shown.minY},
                         {shown.maxX, shown.maxY},
                         {shown.minX, shown.maxY}});
    } else if (seen_ == boxOf(region_)) {
        const GlobeRing world{{-180, -90}, {180, -90}, {180, 90}, {-180, 90}, {-180, -90}};
        for (GlobeRings& parts : globe_.polygons({{world}})) {
            std::ranges::move(parts, std::back_inserter(rings));
        }
    }
    for (GlobeRing& ring : rings) projection_->projectCoordinates(ring, ring);
    return rings;
}

/// Whether the view is cut only where data is cut anyway.
bool ViewCutter::isCutAsData() const {
    const double east = shown_.centre.x + shown_.reach;
    return shown_.reach < kHalfTurn &&
           std::abs(std::remainder(east - kHalfTurn, 2 * kHalfTurn)) <= 2 * kHair;
}

/// Whether what lies in the box is within the region as it is, without being joined.
bool ViewCutter::fits(const BoundingBox& box, bool isArea) const {
    const bool isCut = std::max(std::abs(box.minX), std::abs(box.maxX)) >= kHalfTurn - kHair ||
                       std::max(std::abs(box.minY), std::abs(box.maxY)) >= kPole - kHair;
    const BoundingBox shown = boxOf(shown_);
    switch (region_.shape) {
        case MzProjectionRegion::Shape::Endless:
            return region_.south <= box.minY && box.maxY <= region_.north &&
                   !(isArea && isCut && !isCutAsData());
        case MzProjectionRegion::Shape::Band:
            return shown.holds(box) && !(isArea && isCut) && !meetsGap(region_, box);
        case MzProjectionRegion::Shape::Cap:
            return std::abs(shown_.centre.y) == kPole && shown.minY <= box.minY &&
                   box.maxY <= shown.maxY && !(isArea && isCut);
    }
    return false;
}

/// Whether the part can be projected as it is.
bool ViewCutter::needsNoCut(const Part& part) const {
    if (!fits(boundsOf(*part.geometry), part.form == Form::Area)) return false;
    if (projection_->isEquitorialCylindrical()) return true;
    const auto projected = part.geometry->geometryWithProjection(projection_);
    if (part.form == Form::Line) {
        return globe_.isFine(pointsOfGeometry(*part.geometry), pointsOfGeometry(*projected));
    }
    const std::vector<Rings> members = membersOfGeometry(*part.geometry);
    const std::vector<Rings> planes = membersOfGeometry(*projected);
    for (std::size_t i = 0; i < members.size(); ++i) {
        for (std::size_t j = 0; j < members[i].size(); ++j) {
            if (!globe_.isFine(members[i][j], planes[i][j])) return false;
        }
    }
    return true;
}

/// What of the part the projection shows, in longitudes and latitudes of its own.
std::vector<Part> ViewCutter::cutGlobe(const Part& part) const {
    if (part.form == Form::Points) return cutPoints(part);
    if (needsNoCut(part)) return {part};
    std::vector<Part> parts;
    if (part.form == Form::Line) {
        for (Points& piece : globe_.line(pointsOfGeometry(*part.geometry))) {
            parts.push_back({part.form, multiPoint(std::move(piece))});
        }
    } else {
        for (GlobeRings& rings : globe_.polygons(membersOfGeometry(*part.geometry))) {
            parts.push_back({part.form, polygon(std::move(rings))});
        }
    }
    return parts;
}

std::vector<Part> ViewCutter::cutPoints(const Part& part) const {
    const bool isRepeated = region_.shape == MzProjectionRegion::Shape::Endless;
    const Points points = pointsOfGeometry(*part.geometry);
    Points kept;
    bool isMoved = false;
    for (const MzPoint p : points) {
        if (!region_.holds(p)) continue;
        const double off = std::remainder(p.x - region_.centre.x, 2 * kHalfTurn);
        const bool isWithin = isRepeated || std::abs(p.x - region_.centre.x) <= kHalfTurn;
        kept.push_back(isWithin ? p : MzPoint{region_.centre.x + off, p.y});
        isMoved = isMoved || !isWithin;
    }
    if (kept.size() == points.size() && !isMoved) return {part};
    if (kept.empty()) return {};
    return {{part.form, pointsLike(*part.geometry, std::move(kept))}};
}

}  // namespace mezalith::host
