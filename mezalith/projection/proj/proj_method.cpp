// SPDX-License-Identifier: MIT
#include "mezalith/projection/proj/proj_method.hpp"

#include "mezalith/projection/proj/proj_handles.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

namespace mezalith::detail {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;

/// A hair within 180 degrees: the two sides of the cut stay apart when they are projected.
constexpr double kHalfTurn = 180 - 1e-9;
constexpr double kPole = 90;

/// What methods of a kind, told by a piece of their names, show.
struct Kind {
    std::string_view piece;
    enum class Shape { Zone, Cylinder, Cone, Cap, Local } shape;
    /// Degrees: to either side of a zone's meridian, the latitude to which a cylinder reaches, that
    /// to which a cone does on the far side of the equator, the angle of a cap.
    double reach;
};

/// The first that fits counts. Transverse Mercator turns back beyond 80 degrees; Mercator ends
/// where the world is a square; half a hemisphere beyond the equator, stereographic maps are four
/// times as large as in the middle.
constexpr Kind kKinds[] = {
    {"Oblique", Kind::Shape::Local, 40},
    {"Hotine", Kind::Shape::Local, 40},
    {"Krovak", Kind::Shape::Local, 40},
    {"Cassini", Kind::Shape::Zone, 45},
    {"Transverse Mercator", Kind::Shape::Zone, 70},
    {"tmerc", Kind::Shape::Zone, 70},
    {"utm", Kind::Shape::Zone, 70},
    {"Mercator", Kind::Shape::Cylinder, 85.0511},
    {"Stereographic", Kind::Shape::Cap, 120},
    {"stere", Kind::Shape::Cap, 120},
    {"Orthographic", Kind::Shape::Cap, 89.9},
    {"ortho", Kind::Shape::Cap, 89.9},
    {"Gnomonic", Kind::Shape::Cap, 70},
    {"gnom", Kind::Shape::Cap, 70},
    {"Geostationary", Kind::Shape::Cap, 80},
    {"geos", Kind::Shape::Cap, 80},
    {"Vertical Perspective", Kind::Shape::Cap, 60},
    {"nsper", Kind::Shape::Cap, 60},
    {"Azimuthal", Kind::Shape::Cap, 179},
    {"laea", Kind::Shape::Cap, 179},
    {"aeqd", Kind::Shape::Cap, 179},
    {"Lambert Conic Conformal", Kind::Shape::Cone, 60},
};

const Kind* kindOf(const std::string& name) {
    const auto* kind = std::ranges::find_if(
        kKinds, [&](const Kind& k) { return name.find(k.piece) != std::string::npos; });
    return kind == std::end(kKinds) ? nullptr : kind;
}

/// A polar method without a latitude of origin has its pole on the side of its parallel.
MzPoint middleOf(const ProjMethod& method) {
    if (method.name.find("Polar") == std::string::npos || method.origin.y != 0) {
        return method.origin;
    }
    return {method.origin.x, std::copysign(kPole, method.standardParallel)};
}

MzProjectionRegion coneOf(const ProjMethod& method, double reach) {
    const bool isNorth = method.origin.y + method.standardParallel >= 0;
    return MzProjectionRegion::band(method.origin.x, kHalfTurn, isNorth ? -reach : -kPole,
                                    isNorth ? kPole : reach);
}

/// Around the middle of where the system is used, far enough to hold it.
MzProjectionRegion aroundArea(const ProjMethod& method, MzRect area, double reach) {
    if (area.size.width == 0) return MzProjectionRegion::cap(method.origin, reach);
    const MzPoint middle{area.origin.x + area.size.width / 2, area.origin.y + area.size.height / 2};
    const double corner =
        std::max(MzAngleBetween(middle, area.origin),
                 MzAngleBetween(middle, {area.origin.x, 2 * middle.y - area.origin.y}));
    return MzProjectionRegion::cap(middle, std::max(corner, reach));
}

bool holdsWord(std::string_view text, std::string_view word) {
    return text.find(word) != std::string_view::npos;
}

}  // namespace

ProjMethod methodOf(PJ_CONTEXT* context, const PJ* system) {
    ProjMethod method;
    if (const ProjObject meridian{proj_get_prime_meridian(context, system)}) {
        double longitude = 0, factor = 1;
        proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, &factor, nullptr);
        method.origin.x = longitude * factor * kDegrees;
    }
    const ProjObject operation{proj_crs_get_coordoperation(context, system)};
    if (operation == nullptr) return method;
    const char* name = nullptr;
    proj_coordoperation_get_method_info(context, operation.get(), &name, nullptr, nullptr);
    if (name != nullptr) method.name = name;
    const int count = proj_coordoperation_get_param_count(context, operation.get());
    for (int i = 0; i < count; ++i) {
        const char* text = nullptr;
        double value = 0, factor = 1;
        proj_coordoperation_get_param(context, operation.get(), i, &text, nullptr, nullptr, &value,
                                      nullptr, &factor, nullptr, nullptr, nullptr, nullptr);
        const std::string_view parameter = text == nullptr ? "" : text;
        const double degrees = value * factor * kDegrees;
        if (holdsWord(parameter, "Longitude of") || parameter == "lon_0") {
            method.origin.x += degrees;
        } else if (holdsWord(parameter, "standard parallel") || parameter == "lat_ts") {
            method.standardParallel += degrees;
        } else if (holdsWord(parameter, "Latitude of") || parameter == "lat_0") {
            method.origin.y = degrees;
        }
    }
    return method;
}

MzProjectionRegion regionOf(const ProjMethod& method, MzRect area) {
    const Kind* kind = kindOf(method.name);
    if (kind == nullptr) {
        return MzProjectionRegion::band(method.origin.x, kHalfTurn, -kPole, kPole);
    }
    switch (kind->shape) {
        case Kind::Shape::Zone:
            return MzProjectionRegion::band(method.origin.x, kind->reach, -kPole, kPole);
        case Kind::Shape::Cylinder:
            return MzProjectionRegion::band(method.origin.x, kHalfTurn, -kind->reach, kind->reach);
        case Kind::Shape::Cone:
            return coneOf(method, kind->reach);
        case Kind::Shape::Cap:
            return MzProjectionRegion::cap(middleOf(method), kind->reach);
        case Kind::Shape::Local:
            break;
    }
    return aroundArea(method, area, kind->reach);
}

}  // namespace mezalith::detail
