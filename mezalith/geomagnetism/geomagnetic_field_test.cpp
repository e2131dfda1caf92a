// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_field.hpp>

#include <chrono>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <numbers>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::startOfYear;

constexpr unsigned seed = 20261121;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr MzPoint kOslo{10.75, 59.91};

const std::string kSource = MEZALITH_SOURCE_DIR;

std::shared_ptr<const MzGeomagneticModel> model(const std::string& file) {
    std::string why;
    auto read = MzGeomagneticModel::modelWithContentsOfFile(kSource + file, &why);
    EXPECT_NE(read, nullptr) << why;
    return read;
}

const MzGeomagneticModel& igrf() { return *MzGeomagneticModel::internationalReferenceField(); }

/// 21 November 2026.
platform::Date today() { return startOfYear(2026) + std::chrono::days(324); }

// --- the published samples -----------------------------------------------------------------------

/// A line of a file of samples: what is asked and the twenty numbers that are answered.
struct Sample {
    std::string line;
    double year = 0;
    bool geocentric = false;
    double altitude = 0;  ///< metres; of a geocentric one, from the Earth's centre
    MzPoint place{};
    std::vector<double> degrees;  ///< declination and inclination
    std::vector<double> numbers;  ///< H X Y Z F, then changes of D and I (minutes), H X Y Z F
};

/// The numbers between commas.
std::vector<double> numbersOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<double> numbers;
    for (std::string part; std::getline(stream, part, ',');) numbers.push_back(std::stod(part));
    return numbers;
}

/// A decimal year, or year, month and day. The samples count the day itself as passed.
double yearOf(const std::string& text) {
    const std::vector<double> parts = numbersOf(text);
    if (parts.size() == 1) return parts[0];
    const auto year = std::chrono::year(static_cast<int>(parts[0]));
    const std::chrono::sys_days day(year / static_cast<int>(parts[1]) / static_cast<int>(parts[2]));
    return platform::decimalYear(day + std::chrono::days(1));
}

/// Decimal degrees, or degrees, minutes and seconds under one sign.
double angleOf(const std::string& text) {
    double angle = 0, unit = 1;
    for (const double part : numbersOf(text)) {
        angle += std::abs(part) * unit;
        unit /= 60;
    }
    // The samples took a degree for this many radians.
    constexpr double kDegree = 0.01745329;
    angle *= kDegree / (std::numbers::pi / 180);
    return text.starts_with('-') ? -angle : angle;
}

double metresOf(const std::string& text) {
    const double unit = text[0] == 'K' ? 1000 : text[0] == 'F' ? 0.3048 : 1;
    return std::stod(text.substr(1)) * unit;
}

/// "15d" and "-48m": the minutes carry the sign where the degrees are 0.
double degreesOf(const std::string& degrees, const std::string& minutes) {
    const double whole = std::stod(degrees), part = std::stod(minutes) / 60;
    return whole < 0 ? whole - part : whole + part;
}

Sample sampleOf(const std::string& line) {
    std::istringstream stream(line);
    std::string date, system, altitude, latitude, longitude, d, dMinutes, i, iMinutes;
    stream >> date >> system >> altitude >> latitude >> longitude >> d >> dMinutes >> i >> iMinutes;
    return {line,
            yearOf(date),
            system == "C",
            metresOf(altitude),
            {angleOf(longitude), angleOf(latitude)},
            {degreesOf(d, dMinutes), degreesOf(i, iMinutes)},
            {std::istream_iterator<double>(stream), {}}};
}

std::vector<Sample> samples(const std::string& generation) {
    std::ifstream file(kSource + "/data/geomag/samples/sample_out_IGRF" + generation + ".txt");
    std::vector<Sample> result;
    std::string line;
    std::getline(file, line);  // the names of the columns
    while (std::getline(file, line)) {
        if (line.find_first_not_of(" \r") != std::string::npos) result.push_back(sampleOf(line));
    }
    return result;
}

/// The geodetic latitude and altitude of a place at `latitude` as seen from the Earth's centre.
std::pair<double, double> geodetic(double latitude, double radius) {
    const double beta = latitude * std::numbers::pi / 180, e2 = 0.0066943799901413165;
    const double p = radius * std::cos(beta), z = radius * std::sin(beta);
    double phi = beta, altitude = 0;
    for (int i = 0; i < 20; ++i) {
        const double normal = 6378137 / std::sqrt(1 - e2 * std::sin(phi) * std::sin(phi));
        altitude = p / std::cos(phi) - normal;
        phi = std::atan2(z, p * (1 - e2 * normal / (normal + altitude)));
    }
    return {phi * 180 / std::numbers::pi, altitude};
}

/// The elements of a sample. In geocentric directions they are turned by the angle between the
/// verticals.
MzMagneticElements turned(MzMagneticElements e, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    e = {.north = e.north * c - e.down * s, .east = e.east, .down = e.north * s + e.down * c};
    e.horizontal = std::hypot(e.north, e.east);
    e.total = std::hypot(e.horizontal, e.down);
    e.declination = std::atan2(e.east, e.north) * 180 / std::numbers::pi;
    e.inclination = std::atan2(e.down, e.horizontal) * 180 / std::numbers::pi;
    return e;
}

struct Answers {
    MzMagneticElements now, change;
};

Answers answersTo(const Sample& sample, const MzGeomagneticField& field) {
    if (!sample.geocentric) {
        return {field.elementsAt(sample.place, sample.altitude),
                field.annualChangeAt(sample.place, sample.altitude)};
    }
    const auto [latitude, altitude] = geodetic(sample.place.y, sample.altitude);
    const MzPoint place{sample.place.x, latitude};
    const double angle = (latitude - sample.place.y) * std::numbers::pi / 180;
    const MzMagneticElements now = field.elementsAt(place, altitude);
    const MzMagneticElements change = field.annualChangeAt(place, altitude);
    const MzMagneticElements first = turned(now, angle);
    const MzMagneticElements second = turned({.north = now.north + change.north,
                                              .east = now.east + change.east,
                                              .down = now.down + change.down},
                                             angle);
    return {first,
            {.north = second.north - first.north,
             .east = second.east - first.east,
             .down = second.down - first.down,
             .horizontal = second.horizontal - first.horizontal,
             .total = second.total - first.total,
             .declination = second.declination - first.declination,
             .inclination = second.inclination - first.inclination}};
}

/// Half of the last digit that is printed.
constexpr double kTenth = 0.0501;
constexpr double kMinute = 0.5001 / 60;

void expectSample(const Sample& sample, const Answers& answers) {
    const auto& [now, change] = answers;
    EXPECT_NEAR(now.declination, sample.degrees[0], kMinute) << sample.line;
    EXPECT_NEAR(now.inclination, sample.degrees[1], kMinute) << sample.line;
    const std::vector<double> expected{now.horizontal,
                                       now.north,
                                       now.east,
                                       now.down,
                                       now.total,
                                       change.declination * 60,
                                       change.inclination * 60,
                                       change.horizontal,
                                       change.north,
                                       change.east,
                                       change.down,
                                       change.total};
    ASSERT_EQ(sample.numbers.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(expected[i], sample.numbers[i], kTenth)
            << "number " << i << " of " << sample.line;
    }
}

TEST(GeomagneticField, AgreesWithEveryPublishedSampleToTheLastDigit) {
    const std::pair<std::string, std::string> generations[] = {
        {"11", "/mezalith/geomagnetism/resources/IGRF11.COF"},
        {"12", "/data/geomag/IGRF12.COF"},
        {"13", "/data/geomag/IGRF13.COF"}};
    std::size_t count = 0;
    for (const auto& [generation, file] : generations) {
        const auto read = model(file);
        for (const Sample& sample : samples(generation)) {
            expectSample(sample, answersTo(sample, MzGeomagneticField(*read, sample.year)));
            ++count;
        }
    }
    EXPECT_EQ(count, 16 + 16 + 20U);
}

// --- a reference that shares nothing with the unit
// ------------------------------------------------

/// The field by the sum over associated Legendre functions of the standard library, in wider
/// arithmetic, with derivatives by differences of the functions of neighbouring orders.
MzMagneticElements reference(const MzGeomagneticModel& source, double year, MzPoint place,
                             double altitude) {
    using Real = long double;
    const Real phi = place.y * std::numbers::pi_v<Real> / 180;
    const Real lambda = place.x * std::numbers::pi_v<Real> / 180;
    const Real f = 1 / 298.257223563L, e2 = f * (2 - f);
    const Real normal = 6378137 / std::sqrt(1 - e2 * std::sin(phi) * std::sin(phi));
    const Real p = (normal + altitude) * std::cos(phi);
    const Real z = (normal * (1 - e2) + altitude) * std::sin(phi);
    const Real r = std::hypot(p, z), theta = std::atan2(p, z);
    const auto schmidt = [&](unsigned n, unsigned m) {
        Real factor = m == 0 ? 1 : 2;
        for (unsigned k = n - m + 1; k <= n + m; ++k) factor /= k;
        return std::sqrt(factor) * std::assoc_legendre(n, m, std::cos(theta));
    };
    std::vector<MzGaussCoefficients> values(MzGeomagneticModel::countToDegree(source.degree()));
    std::vector<MzGaussCoefficients> rates(values.size());
    source.coefficientsInYear(year, values, rates);
    Real north = 0, east = 0, down = 0;
    for (int degree = 1; degree <= source.degree(); ++degree) {
        for (int order = 0; order <= degree; ++order) {
            const auto n = static_cast<unsigned>(degree), m = static_cast<unsigned>(order);
            const auto [g, h] = values[MzGeomagneticModel::indexOf(degree, order)];
            const Real power = std::pow(6371200 / r, n + 2);
            const Real c = std::cos(m * lambda), s = std::sin(m * lambda);
            const Real below = n > m ? schmidt(n - 1, m) : 0;
            const Real slope = (n * std::cos(theta) * schmidt(n, m) -
                                std::sqrt(static_cast<Real>(n * n - m * m)) * below) /
                               std::sin(theta);
            north += power * (g * c + h * s) * slope;
            east += power * m * (g * s - h * c) * schmidt(n, m) / std::sin(theta);
            down -= (n + 1) * power * (g * c + h * s) * schmidt(n, m);
        }
    }
    const Real tilt = (std::numbers::pi_v<Real> / 2 - theta) - phi;
    return {.north = static_cast<double>(north * std::cos(tilt) - down * std::sin(tilt)),
            .east = static_cast<double>(east),
            .down = static_cast<double>(north * std::sin(tilt) + down * std::cos(tilt))};
}

TEST(GeomagneticField, IsWithinTheDocumentedErrorEverywhere) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> longitude{-360, 360}, latitude{-89.9, 89.9};
    std::uniform_real_distribution<double> altitude{-1000, 600'000}, year{1900, 2035};
    for (int i = 0; i < 300; ++i) {
        const MzPoint place{longitude(random), latitude(random)};
        const double metres = altitude(random), when = year(random);
        const auto exact = reference(igrf(), when, place, metres);
        const auto field = MzGeomagneticField(igrf(), when).elementsAt(place, metres);
        const std::string trace = (testing::Message() << "seed " << seed << " at " << place.x << ' '
                                                      << place.y << ' ' << metres << " in " << when)
                                      .GetString();
        ASSERT_NEAR(field.north, exact.north, 1e-6) << trace;
        ASSERT_NEAR(field.east, exact.east, 1e-6) << trace;
        ASSERT_NEAR(field.down, exact.down, 1e-6) << trace;
    }
}

TEST(GeomagneticField, IsADipoleOfDegreeOne) {
    const MzGeomagneticModel dipole(
        {.name = "dipole", .epochs = {{2000, 1, {{}, {-30000, 0}, {}}}}, .rates = {{}}});
    const MzGeomagneticField field(dipole, 2000);
    const double equator = std::pow(6371200.0 / 6378137, 3) * 30000;
    EXPECT_NEAR(field.elementsAt({50, 0}).north, equator, 1e-9);
    EXPECT_NEAR(field.elementsAt({50, 0}).down, 0, 1e-9);
    const double pole = 2 * std::pow(6371200 / 6356752.314245179, 3) * 30000;
    EXPECT_NEAR(field.elementsAt({50, 90}).down, pole, 1e-6);
    EXPECT_NEAR(field.elementsAt({50, -90}).down, -pole, 1e-6);
    EXPECT_NEAR(field.elementsAt({50, 90}).horizontal, 0, 1e-9);
    EXPECT_NEAR(field.elementsAt({50, 90}).inclination, 90, 1e-9);
}

// --- today
// ----------------------------------------------------------------------------------------

TEST(GeomagneticField, IsRightInOsloToday) {
    const MzGeomagneticField field(igrf(), today());
    EXPECT_NEAR(field.year(), 2026 + 324.0 / 365, 1e-9);
    EXPECT_EQ(field.degree(), 13);
    EXPECT_NEAR(field.elementsAt(kOslo).declination, 5.14, 0.01);
}

TEST(GeomagneticField, DependsOnTheLayoutOfItsModelByNothing) {
    const auto cof = model("/data/geomag/IGRF14.COF"),
               table = model("/data/geomag/igrf14coeffs.txt");
    for (const double year : {1900.0, 1932.4, 1998.5, 2000.0, 2007.3, 2022.7, 2026.9, 2033.0}) {
        const auto shc = MzGeomagneticField(igrf(), year).elementsAt({-145, 33}, 12'000);
        const auto other = MzGeomagneticField(*cof, year).elementsAt({-145, 33}, 12'000);
        const auto third = MzGeomagneticField(*table, year).elementsAt({-145, 33}, 12'000);
        EXPECT_NEAR(shc.north, other.north, 1e-6) << year;
        EXPECT_NEAR(shc.east, other.east, 1e-6) << year;
        EXPECT_NEAR(shc.down, other.down, 1e-6) << year;
        EXPECT_NEAR(shc.down, third.down, 1e-6) << year;
        EXPECT_NEAR(shc.declination, third.declination, 1e-9) << year;
    }
}

TEST(GeomagneticField, ChangesByItsAnnualChangeInAYear) {
    const MzPoint place{-54, 43};
    const MzGeomagneticField now(igrf(), 2026.0), later(igrf(), 2027.0);
    const auto change = now.annualChangeAt(place), before = now.elementsAt(place);
    const auto after = later.elementsAt(place);
    EXPECT_NEAR(change.north, after.north - before.north, 1e-6);
    EXPECT_NEAR(change.east, after.east - before.east, 1e-6);
    EXPECT_NEAR(change.down, after.down - before.down, 1e-6);
    EXPECT_NEAR(change.horizontal, after.horizontal - before.horizontal, 1e-6);
    EXPECT_NEAR(change.total, after.total - before.total, 1e-6);
    EXPECT_NEAR(change.declination, after.declination - before.declination, 1e-9);
    EXPECT_NEAR(change.inclination, after.inclination - before.inclination, 1e-9);
}

TEST(GeomagneticField, ChangesItsDeclinationTheShortWayRound) {
    // South of the magnetic pole's meridian the declination passes from 180 to -180.
    const MzGeomagneticModel turning({.name = "turning",
                                      .epochs = {{2000, 1, {{}, {30000, 0}, {0, -1000}}}},
                                      .rates = {{}, {}, {0, 2000}}});
    const auto change = MzGeomagneticField(turning, 2000).annualChangeAt({0, 0});
    EXPECT_NEAR(std::abs(change.declination), 2 * std::atan(1.0 / 30) * 180 / std::numbers::pi,
                1e-9);
}

// --- poles and what is not finite
// -----------------------------------------------------------------

TEST(GeomagneticField, HasPolesThatAreTheLimitsOfTheirMeridians) {
    const MzGeomagneticField field(igrf(), 2026.5);
    for (const double pole : {90.0, -90.0}) {
        for (const double longitude : {-120.0, 0.0, 77.0, 180.0}) {
            const double nearby = pole * (1 - 1e-10);
            const auto there = field.elementsAt({longitude, pole});
            const auto close = field.elementsAt({longitude, nearby});
            EXPECT_NEAR(there.north, close.north, 1e-3) << longitude << ' ' << pole;
            EXPECT_NEAR(there.east, close.east, 1e-3) << longitude << ' ' << pole;
            EXPECT_NEAR(there.down, close.down, 1e-3) << longitude << ' ' << pole;
            EXPECT_NEAR(there.declination, close.declination, 1e-4) << longitude << ' ' << pole;
        }
        const auto east = field.elementsAt({90, pole}), west = field.elementsAt({-90, pole});
        EXPECT_NEAR(east.horizontal, west.horizontal, 1e-6);
        EXPECT_NEAR(east.north, -west.north, 1e-6);
        EXPECT_NEAR(std::remainder(east.declination - west.declination - 180, 360), 0, 1e-6);
    }
}

void expectNaN(const MzMagneticElements& e) {
    for (const double value :
         {e.north, e.east, e.down, e.horizontal, e.total, e.declination, e.inclination}) {
        EXPECT_TRUE(std::isnan(value));
    }
}

TEST(GeomagneticField, IsNoNumberForWhatIsNotFinite) {
    const MzGeomagneticField field(igrf(), 2026);
    for (const double wrong : {kNaN, kInfinity, -kInfinity}) {
        expectNaN(field.elementsAt({wrong, 0}));
        expectNaN(field.elementsAt({0, wrong}));
        expectNaN(field.elementsAt({0, 0}, wrong));
        expectNaN(field.annualChangeAt({0, wrong}));
        expectNaN(MzGeomagneticField(igrf(), wrong).elementsAt({0, 0}));
        const platform::Date never{std::chrono::duration<double>(wrong)};
        expectNaN(MzGeomagneticField(igrf(), never).elementsAt({0, 0}));
    }
}

TEST(GeomagneticField, HasNoFieldWithoutCoefficients) {
    const MzGeomagneticModel nothing({});
    const auto field = MzGeomagneticField(nothing, 2000).elementsAt(kOslo);
    EXPECT_EQ(field.total, 0);
    EXPECT_EQ(field.horizontal, 0);
}

TEST(GeomagneticField, GoesUpToDegree63) {
    const std::size_t count = MzGeomagneticModel::countToDegree(100);
    const MzGeomagneticModel high(
        {.name = "high",
         .epochs = {{2000, 100, std::vector<MzGaussCoefficients>(count, {1, 1})}},
         .rates = {{}}});
    const MzGeomagneticField field(high, 2000);
    EXPECT_EQ(field.degree(), 63);
    const auto exact = reference(high, 2000, kOslo, 0);
    EXPECT_NEAR(field.elementsAt(kOslo).north, exact.north, 1e-6);
    EXPECT_NEAR(field.elementsAt(kOslo).down, exact.down, 1e-6);
}

// --- grids
// ----------------------------------------------------------------------------------------

bool same(const MzMagneticElements& a, const MzMagneticElements& b) {
    return a.north == b.north && a.east == b.east && a.down == b.down &&
           a.horizontal == b.horizontal && a.total == b.total && a.declination == b.declination &&
           a.inclination == b.inclination;
}

TEST(GeomagneticField, IsTheSameOnAGridAndOneByOne) {
    const MzGeomagneticField field(igrf(), 2026.89);
    const std::vector<double> longitudes{-180, -37.5, 0, 10.75, 360}, latitudes{-90, 0, 59.91, 90};
    std::vector<MzMagneticElements> grid(longitudes.size() * latitudes.size());
    field.elementsOnGrid(longitudes, latitudes, 1500, grid);
    std::size_t i = 0;
    for (const double latitude : latitudes) {
        for (const double longitude : longitudes) {
            EXPECT_TRUE(same(grid[i++], field.elementsAt({longitude, latitude}, 1500)))
                << longitude << ' ' << latitude;
        }
    }
}

TEST(GeomagneticField, LeavesAGridAloneThatHasNoRoom) {
    const MzGeomagneticField field(igrf(), 2026.89);
    const std::vector<double> three{1, 2, 3};
    std::vector<MzMagneticElements> grid(8);
    field.elementsOnGrid(three, three, 0, grid);
    EXPECT_EQ(grid.front().total, 0);
    field.elementsOnGrid(three, {}, 0, grid);
    field.elementsOnGrid({}, three, 0, grid);
    field.elementsOnGrid({}, {}, 0, {});
    EXPECT_EQ(grid.front().total, 0);
}

}  // namespace
}  // namespace mezalith
