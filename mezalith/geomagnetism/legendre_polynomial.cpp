// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/legendre_polynomial.hpp>

#include <cmath>
#include <limits>

namespace mezalith {
namespace {

double real(std::uint64_t number) { return static_cast<double>(number); }

}  // namespace

std::shared_ptr<MzLegendrePolynomial> MzLegendrePolynomial::initWithColatitude(double theta) {
    auto polynomial = std::make_shared<MzLegendrePolynomial>();
    polynomial->theta_ = theta;
    return polynomial;
}

double MzLegendrePolynomial::valueForDegree(std::uint64_t degree, std::uint64_t order) {
    if (order > degree) return 0.0;
    if (degree > kMaxDegree) return std::numeric_limits<double>::quiet_NaN();
    if (const auto cached = cachedValueForDegree(degree, order)) return *cached;
    const double value = computedValue(degree, order);
    setCachedValue(value, degree, order);
    return value;
}

double MzLegendrePolynomial::computedValue(std::uint64_t n, std::uint64_t m) {
    if (n == 0) return 1.0;
    if (m == n) return real(2 * n - 1) * std::sin(theta_) * valueForDegree(n - 1, n - 1);
    if (m == n - 1) return real(2 * n - 1) * std::cos(theta_) * valueForDegree(n - 1, n - 1);
    return (real(2 * n - 1) * std::cos(theta_) * valueForDegree(n - 1, m) -
            real(n + m - 1) * valueForDegree(n - 2, m)) /
           real(n - m);
}

double MzLegendrePolynomial::derivativeValueForDegree(std::uint64_t n, std::uint64_t m) {
    if (n == 0 || m > n) return 0.0;
    const double first = real(n) * std::cos(theta_) * valueForDegree(n, m);
    if (m == n) return first / std::sin(theta_);
    return (first - real(n + m) * valueForDegree(n - 1, m)) / std::sin(theta_);
}

double MzLegendrePolynomial::sqnCoefficientForDegree(std::uint64_t n, std::uint64_t m) const {
    if (m > n) return 0.0;
    if (m == 0) return 1.0;
    std::uint64_t product = 1;
    // What has become 0 stays 0.
    for (std::uint64_t factor = n - m + 1; factor != n + m + 1 && product != 0; ++factor) {
        product *= factor;
    }
    return std::sqrt(2.0 / real(product));
}

double MzLegendrePolynomial::sqnValueForDegree(std::uint64_t degree, std::uint64_t order) {
    return sqnCoefficientForDegree(degree, order) * valueForDegree(degree, order);
}

std::optional<double> MzLegendrePolynomial::cachedValueForDegree(std::uint64_t degree,
                                                                 std::uint64_t order) const {
    const auto orders = cache_.find(degree);
    if (orders == cache_.end()) return std::nullopt;
    const auto value = orders->second.find(order);
    return value == orders->second.end() ? std::nullopt : std::optional(value->second);
}

void MzLegendrePolynomial::setCachedValue(double value, std::uint64_t degree, std::uint64_t order) {
    cache_[degree][order] = value;
}

}  // namespace mezalith
