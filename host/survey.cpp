// SPDX-License-Identifier: MIT
#include "host/survey.hpp"

#include <algorithm>
#include <cmath>

namespace mezalith::host {
namespace {

void countParts(Survey& survey, const MzGeometryRecord& geometry) {
    const MzMultiPolygon polygons = multiPolygonOf(geometry);
    switch (geometry.type) {
        case MzGeometryTypePolygon:
            survey.rings += geometry.count;
            [[fallthrough]];
        case MzGeometryTypePoint:
        case MzGeometryTypeLineString:
            ++survey.parts;
            return;
        case MzGeometryTypeMultiPolygon:
            for (const MzPolygon& polygon : polygonsOf(&polygons)) survey.rings += polygon.count;
            [[fallthrough]];
        case MzGeometryTypeMultiPoint:
        case MzGeometryTypeMultiLineString:
            survey.parts += geometry.count;
            return;
        default:
            for (const MzGeometryRecord& member : membersOf(&geometry)) countParts(survey, member);
            return;
    }
}

bool isPlace(MzPoint point) { return !std::isnan(point.x) || !std::isnan(point.y); }

}  // namespace

Survey surveyOf(const MzGeometryRecord& geometry) {
    Survey survey;
    countParts(survey, geometry);
    MzVisitRuns(geometry, [&](std::span<const MzPoint> run) {
        survey.vertices += static_cast<std::size_t>(std::ranges::count_if(run, isPlace));
        survey.bounds.add(run);
    });
    return survey;
}

}  // namespace mezalith::host
