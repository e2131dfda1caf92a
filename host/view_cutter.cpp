// SPDX-License-Identifier: MIT
#include "host/view_cutter.hpp"

#include "host/longitude_cut.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;
using Rings = std::vector<Points>;

/// Degrees to either side of the meridian. The series of Transverse Mercator stays monotonic in
/// longitude to 80 degrees on every latitude.
constexpr double kZoneReach = 70;

/// Points along each side of a rectangle from which the degrees that it shows are taken, the share
/// of them by which they are grown for what lies between, and the latitude from which on a pole may
/// be within, where the outline no longer tells the extent.
constexpr int kOutlineSteps = 32;
constexpr double kOutlineMargin = 0.02;
constexpr double kPolar = 85;

BoundingBox boundsOfPoints(const Points& points) {
    BoundingBox box;
    box.add(points);
    return box;
}

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

}  // namespace

BoundingBox boundsOf(MzGeometry& geometry) {
    BoundingBox box;
    for (const auto& leaf : geometry.leafNodes()) box.add(BoundingBox::of(leaf->bounds()));
    return box;
}

BoundingBox reachOf(const MzMapProjection& projection) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const auto* zone = dynamic_cast<const MzUTMZoneProjection*>(&projection);
    if (zone == nullptr) return {-kInfinity, -kInfinity, kInfinity, kInfinity};
    const double meridian = static_cast<double>(zone->utmZone()) * 6 - 183;
    return {meridian - kZoneReach, -kInfinity, meridian + kZoneReach, kInfinity};
}

BoundingBox seenThrough(const MzMapProjection& projection, const BoundingBox& rectangle) {
    if (projection.isEquitorialCylindrical()) return rectangle;
    const BoundingBox reach = reachOf(projection);
    std::vector<MzPoint> outline = outlineOf(rectangle, kOutlineSteps);
    const std::vector<MzPoint> plane = outline;
    projection.unprojectCoordinates(outline, outline);
    const BoundingBox seen = grown(boundsOfPoints(outline), kOutlineMargin);
    if (!reach.holds(seen) || std::max(-seen.minY, seen.maxY) > kPolar) return reach;
    // Far out, what an inverse answers need not be where the projection puts there.
    projection.projectCoordinates(outline, outline);
    const double tolerance = kOutlineMargin * std::max(rectangle.width(), rectangle.height());
    for (std::size_t i = 0; i < plane.size(); ++i) {
        const double dx = outline[i].x - plane[i].x, dy = outline[i].y - plane[i].y;
        if (!(std::hypot(dx, dy) <= tolerance)) return reach;
    }
    return seen;
}

ViewCutter::ViewCutter(const MzMapProjection& projection, const BoundingBox& rectangle)
    : reach_(reachOf(projection)), seen_(seenThrough(projection, rectangle)) {}

ViewCutter::Geometries ViewCutter::cut(const Part& part) const {
    Geometries pieces;
    const BoundingBox box = boundsOf(*part.geometry);
    // The feature where it is comes last: a callout, of which there is one, stays there.
    for (const double shift : {-360.0, 360.0, 0.0}) {
        if (seen_.meets(box.movedBy(shift, 0))) cutCopy(pieces, part, shift);
    }
    return pieces;
}

void ViewCutter::cutCopy(Geometries& pieces, const Part& part, double shift) const {
    if (shift == 0 && reach_.holds(boundsOf(*part.geometry))) {
        pieces.push_back(part.geometry);
    } else if (part.form == Form::Area) {
        for (Rings& rings : membersOfGeometry(*part.geometry)) {
            for (Points& ring : rings) move(ring, shift);
            cutPolygon(pieces, rings);
        }
    } else {
        Points points = pointsOfGeometry(*part.geometry);
        move(points, shift);
        if (part.form == Form::Line) {
            cutLine(pieces, points);
        } else {
            cutPoints(pieces, points, *part.geometry);
        }
    }
}

void ViewCutter::cutPoints(Geometries& pieces, const Points& points,
                           const MzGeometry& whole) const {
    Points kept;
    for (const MzPoint& point : points) {
        if (point.x >= reach_.minX && point.x <= reach_.maxX) kept.push_back(point);
    }
    if (!kept.empty()) pieces.push_back(pointsLike(whole, std::move(kept)));
}

void ViewCutter::cutLine(Geometries& pieces, const Points& line) const {
    for (Points& piece : lineBetween(line, reach_.minX, reach_.maxX)) {
        pieces.push_back(multiPoint(std::move(piece)));
    }
}

void ViewCutter::cutPolygon(Geometries& pieces, const Rings& rings) const {
    Rings kept;
    for (const Points& ring : rings) {
        Points within = ringBetween(ring, reach_.minX, reach_.maxX);
        if (within.empty() && kept.empty()) return;
        if (!within.empty()) kept.push_back(std::move(within));
    }
    if (!kept.empty()) pieces.push_back(polygon(std::move(kept)));
}

}  // namespace mezalith::host
