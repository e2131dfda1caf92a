// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/legendre_polynomial.hpp>

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(LegendrePolynomial, HasTheKnownValuesOfLowDegree) {
    for (const double theta : {0.0, 0.3, 1.0, std::numbers::pi / 2, 2.5, std::numbers::pi}) {
        const auto p = MzLegendrePolynomial::initWithColatitude(theta);
        const double c = std::cos(theta), s = std::sin(theta);
        EXPECT_EQ(p->theta(), theta);
        EXPECT_EQ(p->valueForDegree(0, 0), 1.0);
        EXPECT_EQ(p->valueForDegree(1, 0), c);
        EXPECT_EQ(p->valueForDegree(1, 1), s);
        EXPECT_NEAR(p->valueForDegree(2, 0), (3 * c * c - 1) / 2, 1e-15);
        EXPECT_NEAR(p->valueForDegree(2, 1), 3 * s * c, 1e-15);
        EXPECT_NEAR(p->valueForDegree(2, 2), 3 * s * s, 1e-15);
        EXPECT_NEAR(p->valueForDegree(3, 1), 1.5 * s * (5 * c * c - 1), 1e-14);
    }
}

TEST(LegendrePolynomial, HasNoCondonShortleySignWithinTheStandardLibrarysOwnValues) {
    const double theta = 0.9;
    const auto p = MzLegendrePolynomial::initWithColatitude(theta);
    for (unsigned n = 0; n <= 20; ++n) {
        for (unsigned m = 0; m <= n; ++m) {
            const double expected = std::assoc_legendre(n, m, std::cos(theta));
            EXPECT_NEAR(p->valueForDegree(n, m) / expected, 1, 1e-10) << n << ' ' << m;
        }
    }
}

TEST(LegendrePolynomial, AnswersZeroAboveTheDegreeAndNothingFarBeyond) {
    const auto p = MzLegendrePolynomial::initWithColatitude(1);
    EXPECT_EQ(p->valueForDegree(2, 3), 0.0);
    EXPECT_EQ(p->derivativeValueForDegree(2, 3), 0.0);
    EXPECT_EQ(p->derivativeValueForDegree(0, 1), 0.0);
    EXPECT_EQ(p->sqnCoefficientForDegree(2, 3), 0.0);
    EXPECT_EQ(p->sqnValueForDegree(2, 3), 0.0);
    EXPECT_TRUE(p->cache().empty());
    EXPECT_TRUE(std::isfinite(p->valueForDegree(MzLegendrePolynomial::kMaxDegree, 0)));
    EXPECT_TRUE(std::isnan(p->valueForDegree(MzLegendrePolynomial::kMaxDegree + 1, 0)));
    EXPECT_TRUE(std::isnan(p->valueForDegree(kHuge, kHuge)));
}

TEST(LegendrePolynomial, DerivesByTheColatitude) {
    const double theta = 1.1, step = 1e-6;
    const auto p = MzLegendrePolynomial::initWithColatitude(theta);
    const auto before = MzLegendrePolynomial::initWithColatitude(theta - step);
    const auto after = MzLegendrePolynomial::initWithColatitude(theta + step);
    EXPECT_EQ(p->derivativeValueForDegree(0, 0), 0.0);
    for (std::uint64_t n = 1; n <= 13; ++n) {
        for (std::uint64_t m = 0; m <= n; ++m) {
            const double difference = after->valueForDegree(n, m) - before->valueForDegree(n, m);
            const double scale = std::abs(p->valueForDegree(n, n)) + 1;
            EXPECT_NEAR(p->derivativeValueForDegree(n, m) / scale, difference / (2 * step) / scale,
                        1e-7)
                << n << ' ' << m;
        }
    }
}

TEST(LegendrePolynomial, HasNoDerivativeAtThePole) {
    const auto p = MzLegendrePolynomial::initWithColatitude(0);
    EXPECT_TRUE(std::isnan(p->derivativeValueForDegree(1, 0)));
    EXPECT_TRUE(std::isnan(p->derivativeValueForDegree(1, 1)));
    EXPECT_EQ(p->derivativeValueForDegree(0, 0), 0.0);
}

TEST(LegendrePolynomial, HasTheSchmidtFactorsOfLowDegree) {
    const MzLegendrePolynomial p;
    EXPECT_EQ(p.sqnCoefficientForDegree(0, 0), 1.0);
    EXPECT_EQ(p.sqnCoefficientForDegree(1, 0), 1.0);
    EXPECT_EQ(p.sqnCoefficientForDegree(1, 1), 1.0);
    EXPECT_EQ(p.sqnCoefficientForDegree(2, 1), std::sqrt(2.0 / 6));
    EXPECT_EQ(p.sqnCoefficientForDegree(2, 2), std::sqrt(2.0 / 24));
    EXPECT_EQ(p.sqnCoefficientForDegree(13, 0), 1.0);
    // 20! is the last factorial that 64 bits hold.
    EXPECT_EQ(p.sqnCoefficientForDegree(10, 10), std::sqrt(2.0 / 2432902008176640000.0));
}

TEST(LegendrePolynomial, LetsTheSchmidtProductWrapFromDegree11On) {
    const MzLegendrePolynomial p;
    const std::uint64_t twenty = 2432902008176640000U;
    EXPECT_EQ(p.sqnCoefficientForDegree(11, 11),
              std::sqrt(2.0 / static_cast<double>(twenty * 21 * 22)));
    const double right = std::sqrt(2.0 / (2432902008176640000.0 * 21 * 22));
    EXPECT_GT(p.sqnCoefficientForDegree(11, 11) / right, 5);
    EXPECT_EQ(p.sqnCoefficientForDegree(40, 40), std::numeric_limits<double>::infinity());
    EXPECT_EQ(p.sqnCoefficientForDegree(kHuge, kHuge), std::numeric_limits<double>::infinity());
    EXPECT_EQ(p.sqnCoefficientForDegree(kHuge / 2, kHuge / 2),
              std::numeric_limits<double>::infinity());
}

TEST(LegendrePolynomial, NormalisesAValueByItsFactor) {
    const auto p = MzLegendrePolynomial::initWithColatitude(0.7);
    EXPECT_EQ(p->sqnValueForDegree(2, 1), std::sqrt(2.0 / 6) * p->valueForDegree(2, 1));
    EXPECT_EQ(p->sqnValueForDegree(3, 0), p->valueForDegree(3, 0));
}

TEST(LegendrePolynomial, KeepsEveryValueItComputes) {
    const auto p = MzLegendrePolynomial::initWithColatitude(0.7);
    EXPECT_TRUE(p->cache().empty());
    EXPECT_EQ(p->cachedValueForDegree(0, 0), std::nullopt);
    const double value = p->valueForDegree(3, 1);
    EXPECT_EQ(p->cachedValueForDegree(3, 1), value);
    const MzLegendrePolynomial::Cache expected{{0, {{0, 1.0}}},
                                               {1, {{1, p->valueForDegree(1, 1)}}},
                                               {2, {{1, p->valueForDegree(2, 1)}}},
                                               {3, {{1, value}}}};
    EXPECT_EQ(p->cache(), expected);
}

TEST(LegendrePolynomial, BelievesWhatIsKept) {
    const auto p = MzLegendrePolynomial::initWithColatitude(0.7);
    p->setCachedValue(100, 1, 1);
    EXPECT_EQ(p->valueForDegree(1, 1), 100);
    EXPECT_EQ(p->valueForDegree(2, 2), 3 * std::sin(0.7) * 100);
    p->setCachedValue(7, 5, 9);
    EXPECT_EQ(p->cachedValueForDegree(5, 9), 7);
}

}  // namespace
}  // namespace mezalith
