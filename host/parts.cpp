// SPDX-License-Identifier: MIT
#include "host/parts.hpp"

#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/polylines.hpp>

#include <cmath>
#include <utility>

namespace mezalith::host {
namespace {

void add(std::vector<Part>& parts, Form form, std::shared_ptr<MzGeometry> geometry) {
    if (!geometry->leafNodes().empty()) parts.push_back({form, std::move(geometry)});
}

/// A point without coordinates is none.
void addPoint(std::vector<Part>& parts, MzPoint point) {
    if (std::isnan(point.x) && std::isnan(point.y)) return;
    add(parts, Form::Points, MzPointGeometry::initWithPoint(point));
}

void addParts(std::vector<Part>& parts, const MzGeometryRecord& geometry) {
    switch (geometry.type) {
        case MzGeometryTypePoint:
            for (const MzPoint point : pointsOf(&geometry)) addPoint(parts, point);
            return;
        case MzGeometryTypeLineString:
            return add(parts, Form::Line, MzPolylineOfLineString(lineStringOf(geometry)));
        case MzGeometryTypePolygon:
            return add(parts, Form::Area, MzPolygonGeometry::initWithPolygon(polygonOf(geometry)));
        case MzGeometryTypeMultiPoint:
            return add(parts, Form::Points,
                       MzMultiPointGeometry::initWithMultiPoint(multiPointOf(geometry)));
        case MzGeometryTypeMultiLineString:
            for (auto& line : MzPolylinesOfMultiLineString(multiLineStringOf(geometry))) {
                add(parts, Form::Line, std::move(line));
            }
            return;
        case MzGeometryTypeMultiPolygon:
            return add(parts, Form::Area,
                       MzMultiPolygonGeometry::initWithMultiPolygon(multiPolygonOf(geometry)));
        default:
            for (const MzGeometryRecord& member : membersOf(&geometry)) addParts(parts, member);
            return;
    }
}

}  // namespace

std::vector<Part> partsOf(const MzGeometryRecord& geometry) {
    std::vector<Part> parts;
    addParts(parts, geometry);
    return parts;
}

}  // namespace mezalith::host
