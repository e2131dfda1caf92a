// SPDX-License-Identifier: MIT
#include <mezalith/geometry/plane_vector.hpp>
#include <mezalith/projection/geodesic_line.hpp>
#include <mezalith/projection/great_circle.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace mezalith {
namespace {

using detail::isFinite;

constexpr double pi = std::numbers::pi;
constexpr double fullTurn = 360;
/// Below this, sines and degrees of a great circle are rounding.
constexpr double negligible = 1e-12;
/// How near to 180 degrees two longitudes are with a pole between them, degrees. A circle that
/// misses the pole by a millionth of the points' distance comes as near.
constexpr double overPole = 1e-3;

double radians(double degrees) { return degrees * (pi / 180); }
double degrees(double radians) { return radians * (180 / pi); }

struct Vector {
    double x, y, z;
};

Vector sum(double a, Vector u, double b, Vector v) {
    return {a * u.x + b * v.x, a * u.y + b * v.y, a * u.z + b * v.z};
}
Vector cross(Vector u, Vector v) {
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}
double dot(Vector u, Vector v) { return u.x * v.x + u.y * v.y + u.z * v.z; }
double length(Vector u) { return std::sqrt(dot(u, u)); }

Vector direction(MzPoint point) {
    // Whole turns go first, as they would cost digits.
    const double lambda = radians(std::remainder(point.x, fullTurn)), phi = radians(point.y);
    return {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
}

/// The unit vector along the meridian to the north, from `point`.
Vector northOf(MzPoint point) {
    const double lambda = radians(std::remainder(point.x, fullTurn)), phi = radians(point.y);
    return {-std::sin(phi) * std::cos(lambda), -std::sin(phi) * std::sin(lambda), std::cos(phi)};
}

/// The great circle through two points.
class Arc {
  public:
    Arc(MzPoint start, MzPoint end) : start_(direction(start)) {
        const Vector to = direction(end);
        Vector normal = cross(start_, to);
        angle_ = std::atan2(length(normal), dot(start_, to));
        if (length(normal) < negligible && angle_ > 1) normal = cross(start_, northOf(start));
        const double scale = length(normal);
        if (scale > 0) forward_ = sum(1 / scale, cross(normal, start_), 0, start_);
    }

    /// Between the points, radians.
    double angle() const { return angle_; }

    /// The point `angle` radians on from the start, its longitude within a half turn of `near`
    /// (degrees) and `near` itself where only rounding tells them apart, as along a meridian.
    MzPoint at(double angle, double near) const {
        const Vector p = sum(std::cos(angle), start_, std::sin(angle), forward_);
        const double equatorial = std::hypot(p.x, p.y);
        const double longitude = unwrapped(degrees(std::atan2(p.y, p.x)), near);
        const bool isNear = std::abs(longitude - near) * equatorial < negligible;
        return {isNear || equatorial < negligible ? near : longitude,
                degrees(std::atan2(p.z, equatorial))};
    }

    /// Where the circle meets the meridian `longitude`, degrees.
    MzPoint onMeridian(double longitude) const {
        const double lambda = radians(std::remainder(longitude, fullTurn));
        const Vector across{-std::sin(lambda), std::cos(lambda), 0};
        const double angle = std::atan2(-dot(start_, across), dot(forward_, across));
        return {longitude, at(angle < 0 ? angle + pi : angle, longitude).y};
    }

    static double unwrapped(double longitude, double near) {
        return longitude + fullTurn * std::round((near - longitude) / fullTurn);
    }

  private:
    Vector start_;
    Vector forward_{};  ///< unit, the way at the start; zero between equal points
    double angle_ = 0;
};

/// How many steps of at most `resolution` metres; none when they are too many.
std::optional<std::size_t> stepsFor(double distance, double resolution) {
    if (!(resolution > 0)) return 1;
    const double steps = std::ceil(distance / resolution);
    if (!(steps < static_cast<double>(MzGeodesicMaxPoints))) return std::nullopt;
    return std::max<std::size_t>(static_cast<std::size_t>(steps), 1);
}

/// The longitudes between which a projection shows the world once.
struct World {
    double west;
    double width;  ///< 0 for one without end

    /// Which of its repetitions holds the middle of the line from `p` to `q`.
    double turnOf(MzPoint p, MzPoint q) const {
        return width > 0 ? std::floor(((p.x + q.x) / 2 - west) / width) : 0;
    }
    /// The edge that lies strictly between the longitudes, of which they are no more than one
    /// apart.
    std::optional<double> edgeBetween(double a, double b) const {
        if (!(width > 0)) return std::nullopt;
        const double low = std::min(a, b), high = std::max(a, b);
        const double edge = west + width * std::ceil((low - west) / width);
        return low < edge && edge < high ? std::optional(edge) : std::nullopt;
    }
};

World worldOf(const MzMapProjection* projection) {
    if (projection == nullptr || !projection->wrapsHorizontally() ||
        !projection->isEquitorialCylindrical()) {
        return {0, 0};
    }
    const MzRect bounds = projection->bounds();
    const MzPoint end{bounds.origin.x + bounds.size.width, bounds.origin.y};
    const double west = projection->longitudeLatitudeForProjectedCoordinate(bounds.origin).x;
    return {west, projection->longitudeLatitudeForProjectedCoordinate(end).x - west};
}

/// Collects the parts of a line in the order in which they are drawn.
class LineParter {
  public:
    LineParter(const Arc& arc, World world) : arc_(arc), world_(world) {}

    void addSegment(MzPoint p, MzPoint q) {
        if (fullTurn / 2 - std::abs(q.x - p.x) < overPole) {
            const double pole = std::copysign(90.0, p.y + q.y);
            addWithinPoles(p, {p.x, pole});
            isOpen_ = false;
            addWithinPoles({q.x, pole}, q);
        } else {
            addWithinPoles(p, q);
        }
    }

    std::vector<std::shared_ptr<MzMultiPointGeometry>> finish() const {
        std::vector<std::shared_ptr<MzMultiPointGeometry>> lines;
        lines.reserve(parts_.size());
        for (std::vector<MzPoint> part : parts_) {
            lines.push_back(MzMultiPointGeometry::initWithMultiPoint(
                {static_cast<std::uint32_t>(part.size()), part.data()}));
        }
        return lines;
    }

  private:
    void addWithinPoles(MzPoint p, MzPoint q) {
        if (const auto edge = world_.edgeBetween(p.x, q.x)) {
            const MzPoint crossing = arc_.onMeridian(*edge);
            add(p, crossing);
            add(crossing, q);
        } else {
            add(p, q);
        }
    }

    void add(MzPoint p, MzPoint q) {
        const double turn = world_.turnOf(p, q);
        const double shift = -turn * world_.width;
        if (!isOpen_ || turn != turn_) parts_.push_back({{p.x + shift, p.y}});
        parts_.back().push_back({q.x + shift, q.y});
        isOpen_ = true;
        turn_ = turn;
    }

    const Arc& arc_;
    World world_;
    std::vector<std::vector<MzPoint>> parts_;
    bool isOpen_ = false;
    double turn_ = 0;  ///< of the open part
};

}  // namespace

double MzGeodesicDistance(MzPoint a, MzPoint b) { return Arc(a, b).angle() * MzEarthRadius; }

std::vector<MzPoint> MzGeodesicPoints(MzPoint start, MzPoint end, double resolution) {
    if (!isFinite(start) || !isFinite(end)) return {};
    const Arc arc(start, end);
    const auto steps = stepsFor(arc.angle() * MzEarthRadius, resolution);
    if (!steps) return {};
    std::vector<MzPoint> points;
    points.reserve(*steps + 1);
    points.push_back(start);
    for (std::size_t i = 1; i < *steps; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(*steps);
        points.push_back(arc.at(arc.angle() * share, points.back().x));
    }
    points.push_back({Arc::unwrapped(end.x, points.back().x), end.y});
    return points;
}

std::vector<std::shared_ptr<MzMultiPointGeometry>> MzGeodesicLines(
    MzPoint start, MzPoint end, double resolution, const MzMapProjection* projection) {
    const std::vector<MzPoint> points = MzGeodesicPoints(start, end, resolution);
    const Arc arc(start, end);
    LineParter parter(arc, worldOf(projection));
    for (std::size_t i = 1; i < points.size(); ++i) parter.addSegment(points[i - 1], points[i]);
    return parter.finish();
}

}  // namespace mezalith
