// SPDX-License-Identifier: MIT
#include "mezalith/geometry/geos/geos_geometry.hpp"
#include <mezalith/geometry/geos/simple_features.hpp>

#include <cmath>
#include <utility>

namespace mezalith {
namespace {

using detail::geosContext;
using detail::GeosGeometry;

/// What the library answers in place of a truth value when it has none.
constexpr char kNoTruth = 2;

void tell(std::string* error) {
    std::string report = detail::takeGeosError();
    if (error != nullptr) *error = std::move(report);
}

/// Both as the library has them; none without the other.
struct Pair {
    Pair(const MzGeometry* a, const MzGeometry* b, std::string* error)
        : first(detail::toGeos(a, error)),
          second(first != nullptr ? detail::toGeos(b, error) : nullptr) {}
    explicit operator bool() const { return second != nullptr; }

    GeosGeometry first;
    GeosGeometry second;
};

template <typename Ask>
std::optional<bool> truthOf(const Pair& pair, std::string* error, const Ask& ask) {
    if (!pair) return std::nullopt;
    const char truth = ask(geosContext(), pair.first.get(), pair.second.get());
    if (truth != kNoTruth) return truth != 0;
    tell(error);
    return std::nullopt;
}

/// The pieces of `result`, which is null where there is no answer.
std::optional<MzGeometries> piecesOf(GEOSGeometry* result, std::string* error) {
    const GeosGeometry owned(result);
    if (owned != nullptr) return detail::fromGeos(owned.get());
    tell(error);
    return std::nullopt;
}

template <typename Make>
std::optional<MzGeometries> madeOf(const Pair& pair, std::string* error, const Make& make) {
    if (!pair) return std::nullopt;
    return piecesOf(make(geosContext(), pair.first.get(), pair.second.get()), error);
}

bool hasPoints(const GeosGeometry& geometry) {
    return GEOSisEmpty_r(geosContext(), geometry.get()) == 0;
}

}  // namespace

std::optional<bool> MzIntersects(const MzGeometry* a, const MzGeometry* b, std::string* error) {
    return truthOf({a, b, error}, error, GEOSIntersects_r);
}

std::optional<bool> MzContains(const MzGeometry* a, const MzGeometry* b, std::string* error) {
    return truthOf({a, b, error}, error, GEOSContains_r);
}

std::optional<double> MzDistance(const MzGeometry* a, const MzGeometry* b, std::string* error) {
    const Pair pair(a, b, error);
    if (!pair) return std::nullopt;
    if (!hasPoints(pair.first) || !hasPoints(pair.second)) {
        if (error != nullptr) *error = "a geometry without points";
        return std::nullopt;
    }
    double distance = 0;
    if (GEOSDistance_r(geosContext(), pair.first.get(), pair.second.get(), &distance) == 1) {
        return distance;
    }
    tell(error);
    return std::nullopt;
}

std::optional<MzGeometries> MzBuffer(const MzGeometry* geometry, double distance, int segments,
                                     std::string* error) {
    const GeosGeometry made = detail::toGeos(geometry, error);
    if (made == nullptr) return std::nullopt;
    if (!std::isfinite(distance)) {
        if (error != nullptr) *error = "the distance is not finite";
        return std::nullopt;
    }
    return piecesOf(GEOSBuffer_r(geosContext(), made.get(), distance, segments), error);
}

std::optional<MzGeometries> MzUnion(const MzGeometry* a, const MzGeometry* b, std::string* error) {
    return madeOf({a, b, error}, error, GEOSUnion_r);
}

std::optional<MzGeometries> MzIntersection(const MzGeometry* a, const MzGeometry* b,
                                           std::string* error) {
    return madeOf({a, b, error}, error, GEOSIntersection_r);
}

std::optional<MzGeometries> MzDifference(const MzGeometry* a, const MzGeometry* b,
                                         std::string* error) {
    return madeOf({a, b, error}, error, GEOSDifference_r);
}

std::optional<MzGeometries> MzSimplified(const MzGeometry* geometry, double tolerance,
                                         std::string* error) {
    const GeosGeometry made = detail::toGeos(geometry, error);
    if (made == nullptr) return std::nullopt;
    return piecesOf(GEOSTopologyPreserveSimplify_r(geosContext(), made.get(), tolerance), error);
}

}  // namespace mezalith
