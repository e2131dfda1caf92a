// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/legendre_polynomial.hpp>
#include <mezalith/geomagnetism/magnetic_declination.hpp>
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>
#include <mezalith/platform/resource_bundle.hpp>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>

namespace mezalith {
namespace {

namespace fs = std::filesystem;

constexpr char kResource[] = "IGRF11.COF";
constexpr double kPi = 3.141592653589793;
constexpr double kSemiMajorAxis = 6378.137;  // km
constexpr double kEccentricity = 0.08181919092890538;
constexpr double kOneMinusSquaredEccentricity = 0.9933056199957393;
constexpr double kReferenceRadius = 6371.2;  // km

/// A moment in a file's life. Equal stamps mean equal contents, unless the file has changed twice
/// within the clock's resolution.
struct Stamp {
    std::string path;
    fs::file_time_type time;
    std::uintmax_t size = 0;

    bool operator==(const Stamp&) const = default;
};

std::optional<Stamp> stampOf(const std::string& path) {
    std::error_code error;
    Stamp stamp{path, fs::last_write_time(path, error), 0};
    if (!error) stamp.size = fs::file_size(path, error);
    return error ? std::nullopt : std::optional(stamp);
}

/// The file as it was read last.
class SharedCoefficients {
  public:
    using Pointer = std::shared_ptr<const MzMagneticPotentialCoefficients>;

    Pointer read(const std::string& path) {
        const std::lock_guard lock(mutex_);
        const auto stamp = stampOf(path);
        if (coefficients_ != nullptr && stamp && stamp == stamp_) return coefficients_;
        coefficients_ = MzMagneticPotentialCoefficients::initWithCOFfile(path);
        // What was written a moment ago may be written again under the same time.
        const bool settled =
            stamp && stamp->time + std::chrono::seconds(2) < fs::file_time_type::clock::now();
        stamp_ = settled ? stamp : std::nullopt;
        return coefficients_;
    }

  private:
    std::mutex mutex_;
    Pointer coefficients_;
    std::optional<Stamp> stamp_;
};

std::shared_ptr<const MzMagneticModel> modelForDate(platform::Date date) {
    static SharedCoefficients shared;
    const auto path = platform::ResourceBundle::library().pathForResource(kResource);
    return path ? shared.read(*path)->magneticModelForDate(date) : nullptr;
}

/// A place on the sphere: radians and km.
struct SphericalPlace {
    double longitude;
    double colatitude;
    double radius;
};

SphericalPlace sphericalPlace(MzPoint point, double altitude) {
    const double phi = point.y * kPi / 180, lambda = point.x * kPi / 180;
    const double height = altitude / 1000;
    const double sine = kEccentricity * std::sin(phi);
    const double normal = kSemiMajorAxis / std::sqrt(1 - sine * sine);
    const double p = (normal + height) * std::cos(phi);
    const double x = p * std::cos(lambda);
    const double y = p * std::sin(lambda);
    const double z = (normal * kOneMinusSquaredEccentricity + height) * std::sin(phi);
    // Not hypot, which rounds otherwise: at the south pole the last bit decides.
    const double radius = std::sqrt(x * x + y * y + z * z);
    return {std::atan2(y, x), std::acos(z / radius), radius};
}

struct Horizontal {
    double north = 0;
    double east = 0;
};

/// The field's horizontal components on the sphere, nT. A model that is null has no coefficients.
Horizontal horizontalField(const MzMagneticModel* model, const SphericalPlace& place) {
    static const MzMagneticModel kNothing;
    if (model == nullptr) model = &kNothing;
    const auto legendre = MzLegendrePolynomial::initWithColatitude(place.colatitude);
    const double ratio = kReferenceRadius / place.radius;
    Horizontal field;
    for (std::uint64_t n = 0; n <= model->maxDegree(); ++n) {
        const double f = std::pow(ratio, static_cast<double>(n + 2));
        for (std::uint64_t m = 0; m <= n; ++m) {
            const auto degree = static_cast<std::int64_t>(n), order = static_cast<std::int64_t>(m);
            const auto realOrder = static_cast<double>(m);
            const double factor = legendre->sqnCoefficientForDegree(n, m);
            const double gs = model->gCoefficientOfDegree(degree, order) * factor;
            const double hs = model->hCoefficientOfDegree(degree, order) * factor;
            const double c = std::cos(realOrder * place.longitude);
            const double s = std::sin(realOrder * place.longitude);
            field.north =
                field.north + legendre->derivativeValueForDegree(n, m) * (gs * c + hs * s) * f;
            field.east = field.east - legendre->valueForDegree(n, m) * (hs * c - gs * s) *
                                          realOrder * f / std::sin(place.colatitude);
        }
    }
    return field;
}

}  // namespace

double MzMagneticDeclination::declinationForLatitudeLongitude(MzPoint point, platform::Date date,
                                                              double altitude) const {
    const bool finite = std::isfinite(point.x) && std::isfinite(point.y) &&
                        platform::isFinite(date) && std::isfinite(altitude);
    if (!finite) return std::numeric_limits<double>::quiet_NaN();
    const auto model = modelForDate(date);
    const Horizontal field = horizontalField(model.get(), sphericalPlace(point, altitude));
    const double length = std::sqrt(field.east * field.east + field.north * field.north);
    return 2 * std::atan2(field.east, length + field.north) * 180 / kPi;
}

double MzMagneticDeclination::declinationForLatitudeLongitude(MzPoint point,
                                                              platform::Date date) const {
    return declinationForLatitudeLongitude(point, date, 0.0);
}

}  // namespace mezalith
