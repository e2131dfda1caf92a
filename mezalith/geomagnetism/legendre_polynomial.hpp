// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

namespace mezalith {

/// Associated Legendre functions P(n, m) of the cosine of one colatitude, degree n and order m, not
/// normalised and without the Condon-Shortley sign, with their derivatives by the colatitude and
/// the factors that make them Schmidt semi-normalised. Values are kept once they are computed.
///
///     P(0, 0) = 1                 P(n, n)     = (2n - 1) sin t P(n - 1, n - 1)
///                                 P(n, n - 1) = (2n - 1) cos t P(n - 1, n - 1)
///     P(n, m) = ((2n - 1) cos t P(n - 1, m) - (n + m - 1) P(n - 2, m)) / (n - m)
///
/// An order above the degree gives 0. Degrees above `kMaxDegree` give NaN: long before it the
/// functions of high order have left the range of a double.
/// Source: Heiskanen and Moritz (1967), Physical Geodesy, section 1-11.
class MEZALITH_EXPORT MzLegendrePolynomial {
  public:
    static constexpr std::uint64_t kMaxDegree = 1000;

    /// Values by degree, then by order.
    using Cache = std::map<std::uint64_t, std::map<std::uint64_t, double>>;

    /// `theta` is the colatitude, radians.
    static std::shared_ptr<MzLegendrePolynomial> initWithColatitude(double theta);

    /// Colatitude, radians.
    double theta() const { return theta_; }
    const Cache& cache() const { return cache_; }

    double valueForDegree(std::uint64_t degree, std::uint64_t order);

    /// The derivative by the colatitude; n is the degree, m the order.
    /// Settled: divides by its sine, and so is no number at a pole.
    double derivativeValueForDegree(std::uint64_t n, std::uint64_t m);

    /// For degree n and order m, the factor sqrt(2 (n - m)! / (n + m)!), without the 2 for order 0.
    /// Settled: the quotient of the factorials is a product in 64 bits that wraps, so that from
    /// degree 11 on the factors of high order are wrong by any amount. `MzGeomagneticField` has
    /// them right.
    double sqnCoefficientForDegree(std::uint64_t n, std::uint64_t m) const;

    /// The value times that factor.
    double sqnValueForDegree(std::uint64_t degree, std::uint64_t order);

    /// The value that is kept, if there is one.
    std::optional<double> cachedValueForDegree(std::uint64_t degree, std::uint64_t order) const;
    void setCachedValue(double value, std::uint64_t degree, std::uint64_t order);

  private:
    double computedValue(std::uint64_t n, std::uint64_t m);

    double theta_ = 0;
    Cache cache_;
};

}  // namespace mezalith
