// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_record.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace mezalith {
namespace {

constexpr std::array<std::string_view, 8> kTypeNames{
    "",           "Point",           "LineString",   "Polygon",
    "MultiPoint", "MultiLineString", "MultiPolygon", "GeometryCollection"};

char inLowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, inLowerCase, inLowerCase);
}

void widen(std::optional<MzCorners>& corners, MzPoint p) {
    if (std::isnan(p.x) || std::isnan(p.y)) return;
    if (!corners) corners = MzCorners{p, p};
    corners->low = {std::min(corners->low.x, p.x), std::min(corners->low.y, p.y)};
    corners->high = {std::max(corners->high.x, p.x), std::max(corners->high.y, p.y)};
}

}  // namespace

std::string_view MzGeometryTypeName(std::uint32_t type) {
    return type < kTypeNames.size() ? kTypeNames[type] : std::string_view{};
}

std::uint32_t MzGeometryTypeNamed(std::string_view name) {
    for (std::uint32_t type = 1; type < kTypeNames.size(); ++type) {
        if (isSameName(kTypeNames[type], name)) return type;
    }
    return 0;
}

std::optional<MzCorners> MzCornersOfGeometry(const MzGeometryRecord& geometry) {
    std::optional<MzCorners> corners;
    MzVisitRuns(geometry, [&](std::span<const MzPoint> run) {
        for (const MzPoint p : run) widen(corners, p);
    });
    return corners;
}

}  // namespace mezalith
