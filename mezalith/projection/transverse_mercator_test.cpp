// SPDX-License-Identifier: MIT
#include <mezalith/projection/transverse_mercator.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr unsigned seed = 20240229;
constexpr double semiMajorAxis = 6378137;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Plane {
    double x, y;
};

struct Geographic {
    double latitude, longitude;
};

struct InZone {
    std::uint32_t zone;
    Plane plane;
};

InZone toUTM(double latitude, double longitude) {
    InZone result{};
    LatitudeLongitudeToUTM(&result.zone, &result.plane.x, &result.plane.y, latitude, longitude);
    return result;
}

Plane toZone(std::uint32_t zone, double latitude, double longitude) {
    Plane p{};
    LatitudeLongitudeToUTMZone(zone, &p.x, &p.y, latitude, longitude);
    return p;
}

Geographic fromZone(std::uint32_t zone, double easting, double northing) {
    Geographic g{};
    UTMToLatitudeLongitude(zone, &g.latitude, &g.longitude, easting, northing);
    return g;
}

Plane forward(double latitude, double longitude, double meridian, double scale) {
    Plane p{};
    LatitudeLongitudeToTransverseMercator(&p.x, &p.y, latitude, longitude, 0, meridian, scale);
    return p;
}

Geographic inverse(double x, double y, double meridian, double scale) {
    Geographic g{};
    TransverseMercatorToLatitudeLongitude(&g.latitude, &g.longitude, x, y, 0, meridian, scale);
    return g;
}

double metresApart(Geographic a, Geographic b) {
    constexpr double perDegree = semiMajorAxis * std::numbers::pi / 180;
    return std::hypot(
        (a.latitude - b.latitude) * perDegree,
        (a.longitude - b.longitude) * perDegree * std::cos(a.latitude * std::numbers::pi / 180));
}

/// The exact projection with scale 1 and meridian 0, to a few nanometres: Karney (2011), Transverse
/// Mercator with an accuracy of a few nanometers, Journal of Geodesy 85, equations 7 to 14 and 35.
Plane kruegerForward(double latitude, double longitude) {
    using Real = long double;
    constexpr Real a = semiMajorAxis, eSquared = 0.0066943799901413165L;
    constexpr Real degree = std::numbers::pi_v<Real> / 180;
    const Real e = std::sqrt(eSquared), f = 1 - std::sqrt(1 - eSquared), n = f / (2 - f);
    const Real n2 = n * n, n3 = n2 * n, n4 = n3 * n, n5 = n4 * n;
    const std::array<Real, 4> alpha{
        n / 2 - 2 * n2 / 3 + 5 * n3 / 16 + 41 * n4 / 180 - 127 * n5 / 288,
        13 * n2 / 48 - 3 * n3 / 5 + 557 * n4 / 1440 + 281 * n5 / 630,
        61 * n3 / 240 - 103 * n4 / 140 + 15061 * n5 / 26880, 49561 * n4 / 161280 - 179 * n5 / 168};
    const Real radius = a / (1 + n) * (1 + n2 / 4 + n4 / 64);
    const Real phi = latitude * degree, lambda = longitude * degree;
    const Real tau = std::sinh(std::atanh(std::sin(phi)) - e * std::atanh(e * std::sin(phi)));
    const Real xi = std::atan2(tau, std::cos(lambda));
    const Real eta = std::asinh(std::sin(lambda) / std::hypot(tau, std::cos(lambda)));
    Real x = eta, y = xi;
    for (std::size_t j = 0; j < alpha.size(); ++j) {
        const Real m = 2 * static_cast<Real>(j + 1);
        x += alpha[j] * std::cos(m * xi) * std::sinh(m * eta);
        y += alpha[j] * std::sin(m * xi) * std::cosh(m * eta);
    }
    return {static_cast<double>(radius * x), static_cast<double>(radius * y)};
}

// --- zones ----------------------------------------------------------------

TEST(TransverseMercator, ChoosesTheZoneFromTheLongitude) {
    EXPECT_EQ(toUTM(10, -180).zone, 1u);
    EXPECT_EQ(toUTM(10, 180).zone, 61u);
    EXPECT_EQ(toUTM(10, 0).zone, 31u);
    EXPECT_EQ(toUTM(10, -0.001).zone, 30u);
    EXPECT_EQ(toUTM(60, 5).zone, 31u);  // no exception for Norway
    EXPECT_EQ(toUTM(78, 8).zone, 32u);  // none for Svalbard
}

TEST(TransverseMercator, PutsTheCentralMeridianOfAZoneAtItsMiddle) {
    EXPECT_EQ(toUTM(10, -177).plane.x, 500000.0);
    EXPECT_EQ(toZone(1, 10, -177).x, 500000.0);
    EXPECT_EQ(toZone(61, 10, 183).x, 500000.0);
    EXPECT_EQ(toZone(31, 10, 3).x, 500000.0);
    EXPECT_EQ(toZone(0, 10, -183).x, 500000.0);
}

TEST(TransverseMercator, WrapsZonesModulo32Bits) {
    EXPECT_EQ(toUTM(10, -186).zone, 0u);
    EXPECT_EQ(toUTM(10, -186.5).zone, 0xFFFFFFFFu);
    EXPECT_EQ(toUTM(10, -189).plane.x, 500000.0);  // zone -1, central meridian -189
    EXPECT_EQ(toUTM(10, 6 * 4294967296.0).zone, 31u);
    EXPECT_EQ(toZone(0x80000000u, 10, -183).x, 500000.0);  // z * 6 leaves 32 bits
}

TEST(TransverseMercator, AnswersZone0ForLongitudesThatAreNoNumber) {
    for (const double longitude : {nan, infinity, -infinity}) {
        const InZone result = toUTM(10, longitude);
        EXPECT_EQ(result.zone, 0u) << longitude;
        EXPECT_FALSE(std::isfinite(result.plane.x)) << longitude;
        EXPECT_FALSE(std::isfinite(result.plane.y)) << longitude;
    }
    const double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(toUTM(10, huge).zone, 0u);  // a multiple of 2^32
}

// --- the central meridian and the equator ---------------------------------

TEST(TransverseMercator, ProjectsTheCentralMeridianToItsArc) {
    for (const double latitude : {-89.0, -45.0, -1e-9, 12.5, 60.0}) {
        const Plane p = toZone(33, latitude, 15);
        EXPECT_EQ(p.x, 500000.0);
        EXPECT_EQ(p.y, 0.9996 * MeridionalArcPROJ4(latitude * std::numbers::pi / 180));
    }
    EXPECT_EQ(toZone(33, 0, 15).y, 0.0);
}

TEST(TransverseMercator, GivesSouthernLatitudesNegativeNorthings) {
    const Plane south = toZone(19, -33.45, -70.65), north = toZone(19, 33.45, -70.65);
    EXPECT_LT(south.y, -3.7e6);
    EXPECT_EQ(south.y, -north.y);
    EXPECT_EQ(south.x, north.x);
    EXPECT_LT(metresApart(fromZone(19, south.x, south.y), {-33.45, -70.65}), 1e-6);
}

TEST(TransverseMercator, IgnoresTheOriginLatitude) {
    Plane p{};
    LatitudeLongitudeToTransverseMercator(&p.x, &p.y, 40, 7, nan, 9, 0.9996);
    EXPECT_EQ(p.x, forward(40, 7, 9, 0.9996).x);
    EXPECT_EQ(p.y, forward(40, 7, 9, 0.9996).y);
    Geographic g{};
    TransverseMercatorToLatitudeLongitude(&g.latitude, &g.longitude, 1e5, 5e6, nan, 9, 0.9996);
    EXPECT_EQ(g.latitude, inverse(1e5, 5e6, 9, 0.9996).latitude);
    EXPECT_EQ(g.longitude, inverse(1e5, 5e6, 9, 0.9996).longitude);
}

// --- poles ----------------------------------------------------------------

TEST(TransverseMercator, AnswersThePoleAtAndBeyondItsMeridionalDistance) {
    const double pole = MeridionalArcPROJ4(std::numbers::pi / 2);
    for (const double distance : {pole, pole + 1, 1.01e7, 2e7, 1e12}) {
        for (const double x : {0.0, -3e5}) {
            EXPECT_EQ(inverse(x, distance, 15, 1).latitude, 90.0) << distance;
            EXPECT_EQ(inverse(x, -distance, 15, 1).latitude, -90.0) << distance;
            EXPECT_EQ(inverse(x, distance, 15, 1).longitude, 0.0) << distance;
            EXPECT_EQ(inverse(x, -distance, 15, 1).longitude, 0.0) << distance;
        }
    }
    EXPECT_EQ(fromZone(33, 500000, 0.9996 * pole).latitude, 90.0);
    EXPECT_EQ(fromZone(33, 500000, 0.9996 * pole).longitude, 0.0);
    EXPECT_EQ(inverse(0, pole - 1, 15, 1).longitude, 15.0);
}

TEST(TransverseMercator, StaysFiniteAtThePoles) {
    for (const double latitude : {90.0, -90.0}) {
        const Plane p = forward(latitude, 18, 15, 1);
        EXPECT_LT(std::abs(p.x), 1e-10);
        EXPECT_NEAR(std::abs(p.y), 10001965.729, 1e-3);
    }
}

TEST(TransverseMercator, PassesOnWhatIsNoNumber) {
    EXPECT_TRUE(std::isnan(forward(nan, 10, 9, 1).x));
    EXPECT_TRUE(std::isnan(forward(nan, 10, 9, 1).y));
    EXPECT_TRUE(std::isnan(inverse(1e5, nan, 9, 1).latitude));
    EXPECT_TRUE(std::isnan(inverse(nan, 1e5, 9, 1).longitude));
    EXPECT_TRUE(std::isnan(inverse(1e5, infinity, 9, 1).latitude));
    EXPECT_TRUE(std::isnan(inverse(1e5, infinity, 9, 1).longitude));
}

// --- known answers --------------------------------------------------------

struct KnownAnswer {
    std::uint32_t zone;
    double longitude, latitude, easting, northing;
};

// echo "59.91 10.75" | cs2cs -f %.6f EPSG:4326 EPSG:32633 (PROJ 9.1.1), and so on.
constexpr std::array<KnownAnswer, 13> knownAnswers{{
    {33, 10.75, 59.91, 262409.732136, 6649017.748990},
    {31, 0, 0, 166021.443081, 0.000000},
    {31, 3, 51.5, 500000.000000, 5705429.166770},
    {31, -3, 45, 27108.208731, 5000491.005461},
    {1, -179.5, -16.5, 233124.869649, -1825898.266966},
    {60, 179.9, 71.2, 604272.360824, 7902201.671985},
    {19, -70.65, -33.45, 346642.694999, -3702393.167519},
    {18, -74.0060, 40.7128, 583959.372324, 4507350.998243},
    {54, 139.6917, 35.6895, 381622.230039, 3950298.907881},
    {35, 27, 84, 500000.000000, 9328093.830561},
    {33, 21, -80, 616114.651337, -8887579.007720},
    {33, 9, 12.25, -153641.603371, 1361479.758255},
    {33, 15, -45, 500000.000000, -4982950.400227},
}};

TEST(TransverseMercator, AgreesWithAnIndependentImplementation) {
    for (const KnownAnswer& known : knownAnswers) {
        const Plane p = toZone(known.zone, known.latitude, known.longitude);
        EXPECT_NEAR(p.x, known.easting, 1e-3) << known.longitude << ' ' << known.latitude;
        EXPECT_NEAR(p.y, known.northing, 1e-3) << known.longitude << ' ' << known.latitude;
        const Geographic g = fromZone(known.zone, known.easting, known.northing);
        EXPECT_LT(metresApart({known.latitude, known.longitude}, g), 1e-3) << known.longitude;
    }
}

struct Pinned {
    double first, second, meridian, scale, firstResult, secondResult;
};

// Far from the meridian every term of the series shows. Evaluated separately from the
// formulas; the tolerance leaves room for other mathematics libraries.
TEST(TransverseMercator, KeepsEveryTermOfTheForwardSeries) {
    for (const Pinned& pin : std::array<Pinned, 5>{{
             {60, 75, 15, 0.9996, 2959517.604047088, 8200695.664701041},
             {-35.5, -140, 3, 1.0, 14642542.177408623, -40442834.75468383},
             {5, 183, 123, 0.9996, 8279204.473016524, 1083953.300925883},
             {89, 100, 10, 0.9996, 111644.68925400334, 9997965.747356629},
             {0.25, -45, 15, 0.5, -4177784.2428753464, 27272.075294030445},
         }}) {
        const Plane p = forward(pin.first, pin.second, pin.meridian, pin.scale);
        EXPECT_NEAR(p.x / pin.firstResult, 1, 1e-13);
        EXPECT_NEAR(p.y / pin.secondResult, 1, 1e-13);
    }
}

TEST(TransverseMercator, KeepsEveryTermOfTheInverseSeries) {
    for (const Pinned& pin : std::array<Pinned, 5>{{
             {3e6, 6.5e6, 15, 0.9996, 50.26246060537198, 57.08503737923177},
             {-4e6, -4e6, 3, 1.0, -29.35071709415114, -36.46947096266454},
             {6e6, 5e5, -177, 0.9996, 3.077920067109671, -129.69084885808246},
             {1e6, 9.8e6, 9, 0.9996, 27738.09374688759, -651395.1765952467},
             {-1.5e6, 4e6, 9, 0.5, 69.74924988556704, 38.3254387007747},
         }}) {
        const Geographic g = inverse(pin.first, pin.second, pin.meridian, pin.scale);
        EXPECT_NEAR(g.latitude / pin.firstResult, 1, 1e-12);
        EXPECT_NEAR(g.longitude / pin.secondResult, 1, 1e-12);
    }
}

// --- the formulas, operation by operation ---------------------------------

double arcByFormula(double phi) {
    const double s = std::sin(phi), c = std::cos(phi), s2 = s * s;
    const double powers =
        0.005018678421484986 +
        s2 * (2.1002980978867826e-05 + s2 * (1.0936603392140145e-07 + s2 * 6.178058818421671e-10));
    return semiMajorAxis * (0.9983242984313436 * phi - s * c * powers);
}

constexpr double pi = 3.141592653589793;
constexpr double eSquared = 0.0066943799901413165;
constexpr double ePrimeSquared = 0.006739496742276434;

Plane forwardByFormula(Geographic g, double meridian, double k) {
    const double phi = g.latitude * pi / 180, lambda = (g.longitude - meridian) * pi / 180;
    const double s = std::sin(phi), c = std::cos(phi), T = std::tan(phi) * std::tan(phi);
    const double N = semiMajorAxis / std::sqrt(1 - eSquared * (s * s));
    const double C = ePrimeSquared * (c * c), A2 = lambda * lambda * (c * c);
    const double T2 = T * T, T3 = T2 * T;
    const double x6 = A2 / 42 * (61 - 479 * T + 179 * T2 - T3);
    const double x4 = A2 / 20 * (5 - 18 * T + T2 + 14 * C - 58 * T * C + x6);
    const double y6 = A2 / 56 * (1385 - 3111 * T + 543 * T2 - T3);
    const double y4 = A2 / 30 * (61 - 58 * T + T2 + 270 * C - 330 * T * C + y6);
    return {k * N * c * lambda * (1 + A2 / 6 * (1 - T + C + x4)),
            k * arcByFormula(phi) + k * N * s * c * 0.5 * (lambda * lambda) *
                                        (1 + A2 / 12 * (5 - T + 9 * C + 4 * (C * C) + y4))};
}

Geographic inverseByFormula(Plane p, double meridian, double k) {
    const double phi = InverseMeridionalArcPROJ4(p.y / k);
    const double s = std::sin(phi), c = std::cos(phi), t = std::tan(phi), T = t * t;
    const double N = semiMajorAxis / std::sqrt(1 - eSquared * (s * s));
    const double eta = ePrimeSquared * (c * c), D = p.x / (N * k), D2 = D * D;
    const double T2 = T * T, T3 = T2 * T;
    const double y6 = D2 / 56 * (1385 + 3633 * T + 4095 * T2 + 1575 * T3);
    const double y4 = D2 / 30 * (61 + 90 * T - 252 * T * eta + 45 * T2 + 46 * eta - y6);
    const double y2 = D2 / 12 * (5 + 3 * T + eta - 4 * (eta * eta) - 9 * T * eta - y4);
    const double x6 = D2 / 42 * (61 + 662 * T + 1320 * T2 + 720 * T3);
    const double x4 = D2 / 20 * (5 + 28 * T + 24 * T2 + 8 * T * eta + 6 * eta - x6);
    return {(phi - 0.5 * (1 + eta) * t * D2 * (1 - y2)) * 180 / pi,
            meridian + D / c * 57.29577951308232 * (1 - D2 / 6 * (1 + 2 * T + eta - x4))};
}

TEST(TransverseMercator, FollowsItsFormulasToTheLastBit) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> anyLatitude{-89, 89}, within{-40, 40};
    for (int i = 0; i < 20'000; ++i) {
        const Geographic g{anyLatitude(random), 9 + within(random)};
        SCOPED_TRACE(testing::Message()
                     << "seed " << seed << ", " << g.latitude << ' ' << g.longitude);
        const Plane p = forward(g.latitude, g.longitude, 9, 0.9996);
        ASSERT_EQ(MeridionalArcPROJ4(g.latitude), arcByFormula(g.latitude));
        ASSERT_EQ(p.x, forwardByFormula(g, 9, 0.9996).x);
        ASSERT_EQ(p.y, forwardByFormula(g, 9, 0.9996).y);
        const Geographic back = inverse(p.x, p.y, 9, 0.9996);
        ASSERT_EQ(back.latitude, inverseByFormula(p, 9, 0.9996).latitude);
        ASSERT_EQ(back.longitude, inverseByFormula(p, 9, 0.9996).longitude);
    }
}

// --- many points ----------------------------------------------------------

TEST(TransverseMercator, ConvertsManyPointsAsOneByOne) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> anyLongitude{-180, 180}, anyLatitude{-90, 90};
    for (const std::size_t count : {0u, 1u, 31u, 32u, 33u, 200u}) {
        std::vector<MzPoint> points(count), projected(count), back(count);
        for (MzPoint& p : points) p = {anyLongitude(random), anyLatitude(random)};
        LatitudeLongitudeToUTMZone(33, points, projected);
        UTMToLatitudeLongitude(33, projected, back);
        for (std::size_t i = 0; i < count; ++i) {
            const Plane p = toZone(33, points[i].y, points[i].x);
            ASSERT_EQ(projected[i].x, p.x) << "seed " << seed << ", " << count << ", " << i;
            ASSERT_EQ(projected[i].y, p.y) << "seed " << seed << ", " << count << ", " << i;
            const Geographic g = fromZone(33, p.x, p.y);
            ASSERT_EQ(back[i].x, g.longitude) << "seed " << seed << ", " << count << ", " << i;
            ASSERT_EQ(back[i].y, g.latitude) << "seed " << seed << ", " << count << ", " << i;
        }
    }
}

// --- documented accuracy --------------------------------------------------

struct Promise {
    double degrees, metres;
};

class TransverseMercatorAccuracy : public testing::TestWithParam<Promise> {};

INSTANTIATE_TEST_SUITE_P(Widths, TransverseMercatorAccuracy,
                         testing::Values(Promise{3, 2e-5}, Promise{6, 1e-3}, Promise{10, 0.05},
                                         Promise{20, 30}));

TEST_P(TransverseMercatorAccuracy, HoldsForBothDirectionsAndTheRoundTrip) {
    const auto [width, metres] = GetParam();
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> anyLatitude{-89.999, 89.999}, within{-width, width};
    for (int i = 0; i < 20'000; ++i) {
        const double longitude = i % 4 == 0 ? width : within(random);
        const Geographic g{i % 16 == 0 ? 0 : anyLatitude(random), longitude};
        SCOPED_TRACE(testing::Message()
                     << "seed " << seed << ", " << g.latitude << ' ' << g.longitude);
        const Plane exact = kruegerForward(g.latitude, g.longitude);
        const Plane p = forward(g.latitude, g.longitude, 0, 1);
        ASSERT_LE(std::hypot(p.x - exact.x, p.y - exact.y), metres);
        ASSERT_LE(metresApart(g, inverse(exact.x, exact.y, 0, 1)), metres);
        ASSERT_LE(metresApart(g, inverse(p.x, p.y, 0, 1)), metres);
    }
}

TEST(TransverseMercator, ReturnsFromItsZoneWithinAMillimetre) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> anyLatitude{-89, 89}, anyLongitude{-180, 180};
    for (int i = 0; i < 100'000; ++i) {
        const Geographic g{anyLatitude(random), anyLongitude(random)};
        const auto [zone, plane] = toUTM(g.latitude, g.longitude);
        ASSERT_LE(metresApart(g, fromZone(zone, plane.x, plane.y)), 1e-3)
            << "seed " << seed << ", " << g.latitude << ' ' << g.longitude;
    }
}

// --- meridional arcs ------------------------------------------------------

TEST(MeridionalArc, IsExactlyZeroAtTheEquator) {
    EXPECT_EQ(MeridionalArcPROJ4(0.0), 0.0);
    EXPECT_EQ(MeridionalArcTM8358(0.0), 0.0);
    EXPECT_FALSE(std::signbit(MeridionalArcTM8358(-0.0)));
    EXPECT_EQ(InverseMeridionalArcPROJ4(0.0), 0.0);
}

TEST(MeridionalArc, StaysWithinTheDocumentedErrorAndIsUndoneByItsInverse) {
    constexpr int steps = 20'000;
    for (int i = -steps; i <= steps; ++i) {
        const double phi = i * (std::numbers::pi / 2) / steps;
        const double exact = kruegerForward(phi * 180 / std::numbers::pi, 0).y;
        ASSERT_LE(std::abs(MeridionalArcPROJ4(phi) - exact), 5e-6) << phi;
        ASSERT_LE(std::abs(MeridionalArcTM8358(phi) - exact), 1e-7) << phi;
        ASSERT_LE(std::abs(InverseMeridionalArcPROJ4(MeridionalArcPROJ4(phi)) - phi), 1e-15) << phi;
    }
}

double arcInverseByNewton(double arc) {
    constexpr double es = 0.0066943799901413165;
    double phi = arc / semiMajorAxis;
    for (int i = 0; i < 10; ++i) {
        const double s = std::sin(phi), t = 1 - es * (s * s);
        const double delta =
            (MeridionalArcPROJ4(phi) - arc) * t * std::sqrt(t) * (1 / (1 - es)) / semiMajorAxis;
        phi = phi - delta;
        if (std::abs(delta) < 1e-11) return phi;
    }
    return phi;
}

TEST(MeridionalArc, InverseTakesTheVeryStepsOfNewton) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> anywhere{-1e7, 1e7};
    for (int i = 0; i < 10'000; ++i) {
        const double arc = anywhere(random);
        ASSERT_EQ(InverseMeridionalArcPROJ4(arc), arcInverseByNewton(arc)) << arc;
        // So far out the steps never become small enough.
        ASSERT_EQ(InverseMeridionalArcPROJ4(arc * 1e6), arcInverseByNewton(arc * 1e6)) << arc;
    }
}

TEST(MeridionalArc, InverseEndsForEveryNumber) {
    EXPECT_TRUE(std::isnan(InverseMeridionalArcPROJ4(nan)));
    EXPECT_TRUE(std::isnan(InverseMeridionalArcPROJ4(-infinity)));
    EXPECT_GT(InverseMeridionalArcPROJ4(1e300), 1e293);
}

}  // namespace
}  // namespace mezalith
