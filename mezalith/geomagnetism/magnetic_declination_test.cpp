// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_field.hpp>
#include <mezalith/geomagnetism/magnetic_declination.hpp>
#include <mezalith/platform/resource_bundle.hpp>
#include <tests/support/temporary_folder.hpp>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

namespace fs = std::filesystem;

using platform::startOfYear;
using Seconds = std::chrono::duration<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr MzPoint kOslo{10.75, 59.91};

double declination(MzPoint point, platform::Date date, double altitude = 0) {
    return MzMagneticDeclination().declinationForLatitudeLongitude(point, date, altitude);
}

double rightDeclination(MzPoint point, platform::Date date) {
    const auto path = platform::ResourceBundle::library().pathForResource("IGRF11.COF");
    static const auto model = MzGeomagneticModel::modelWithContentsOfFile(*path);
    return MzGeomagneticField(*model, date).elementsAt(point).declination;
}

TEST(MagneticDeclination, IsRightWhereTheModelsDegreeIsLow) {
    for (const MzPoint point : {kOslo, MzPoint{0, 0}, {-122.4, 37.8}, {151.2, -33.9}}) {
        for (const int year : {1905, 1931, 1985, 1997, 2000}) {
            EXPECT_NEAR(declination(point, startOfYear(year)),
                        rightDeclination(point, startOfYear(year)), 0.15)
                << point.x << ' ' << year;
        }
        // What is above the eighth degree is missing.
        EXPECT_NEAR(declination(point, startOfYear(2012)),
                    rightDeclination(point, startOfYear(2012)), 0.5)
            << point.x;
    }
}

TEST(MagneticDeclination, JumpsByFiftyDegreesBetweenTheEpochs2000And2010) {
    // One second after 2000 the model has degree 13, whose Schmidt factors have wrapped. Documents
    // hold these answers; MzGeomagneticField has the right ones.
    EXPECT_NEAR(declination({0, 0}, startOfYear(2000)), -7.306, 0.01);
    EXPECT_NEAR(declination({0, 0}, startOfYear(2000) + Seconds(1)), 43.765, 0.01);
    EXPECT_NEAR(declination({0, 0}, startOfYear(2010)), -6.26, 0.01);
}

TEST(MagneticDeclination, IsAtAltitudeZeroUnlessOneIsGiven) {
    const MzMagneticDeclination declination;
    const auto date = startOfYear(2012);
    const double there = declination.declinationForLatitudeLongitude(kOslo, date);
    EXPECT_EQ(there, declination.declinationForLatitudeLongitude(kOslo, date, 0.0));
    EXPECT_NE(there, declination.declinationForLatitudeLongitude(kOslo, date, 10000));
    EXPECT_NEAR(there, declination.declinationForLatitudeLongitude(kOslo, date, 10000), 0.1);
}

TEST(MagneticDeclination, IsZeroBeforeTheFirstModel) {
    EXPECT_EQ(declination(kOslo, startOfYear(1899)), 0.0);
    EXPECT_EQ(declination(kOslo, startOfYear(1900)), 0.0);
    EXPECT_NE(declination(kOslo, startOfYear(1900) + Seconds(1)), 0.0);
}

TEST(MagneticDeclination, IsNoNumberAtTheNorthPoleAndOneAtTheSouthPole) {
    for (const int year : {1899, 1950, 2012}) {
        EXPECT_TRUE(std::isnan(declination({0, 90}, startOfYear(year)))) << year;
        EXPECT_TRUE(std::isnan(declination({120, 90}, startOfYear(year)))) << year;
        EXPECT_TRUE(std::isfinite(declination({0, -90}, startOfYear(year)))) << year;
        EXPECT_TRUE(std::isfinite(declination({0, 89.999}, startOfYear(year)))) << year;
    }
}

TEST(MagneticDeclination, IsNoNumberForWhatIsNotFinite) {
    const auto date = startOfYear(2012);
    for (const double wrong : {kNaN, kInfinity, -kInfinity}) {
        EXPECT_TRUE(std::isnan(declination({wrong, 59.91}, date)));
        EXPECT_TRUE(std::isnan(declination({10.75, wrong}, date)));
        EXPECT_TRUE(std::isnan(declination(kOslo, date, wrong)));
        EXPECT_TRUE(std::isnan(declination(kOslo, platform::Date(Seconds(wrong)))));
    }
}

TEST(MagneticDeclination, IsPeriodicInLongitude) {
    const auto date = startOfYear(1965);
    EXPECT_NEAR(declination({190, 40}, date), declination({-170, 40}, date), 1e-9);
}

/// A folder whose IGRF11.COF stands in for the library's own.
class OtherResource : public ::testing::Test {
  protected:
    OtherResource() { setenv(platform::ResourceBundle::kVariable, folder_.path().c_str(), 1); }
    ~OtherResource() override { unsetenv(platform::ResourceBundle::kVariable); }

    fs::path file() const { return folder_.path("IGRF11.COF"); }

    /// A field that is horizontal on the equator at 0 degrees and points `east` and `north`.
    void write(const std::string& north, const std::string& east) const {
        std::ofstream stream(file(), std::ios::binary);
        for (const std::string year : {"1995", "2000"}) {
            stream << "X " << year << " 1 0 0 " << year << " 2005 -1 600 X 0\n"
                   << "1 0 -" << north << " 0 0 0 X 1\n1 1 0 -" << east << " 0 0 X 2\n";
        }
    }

    void setAge(std::chrono::seconds age) const {
        fs::last_write_time(file(), fs::file_time_type::clock::now() - age);
    }

    static double ask() { return declination({0, 0}, startOfYear(1998)); }

    testing::TemporaryFolder folder_;
};

TEST_F(OtherResource, IsReadAgainWhenItHasJustChanged) {
    write("30000", "30000");
    EXPECT_NEAR(ask(), 45, 1e-9);
    // The same size, within the same tick of the clock.
    write("30000", "10000");
    EXPECT_NEAR(ask(), std::atan2(1, 3) * 180 / 3.141592653589793, 1e-9);
    write("10000", "30000");
    EXPECT_NEAR(ask(), std::atan2(3, 1) * 180 / 3.141592653589793, 1e-9);
}

TEST_F(OtherResource, IsReadAgainWhenItsTimeOrSizeIsAnother) {
    write("30000", "30000");
    setAge(std::chrono::hours(2));
    EXPECT_NEAR(ask(), 45, 1e-9);
    EXPECT_NEAR(ask(), 45, 1e-9);
    write("30000", "00000");
    setAge(std::chrono::hours(1));
    EXPECT_NEAR(ask(), 0, 1e-9);
    write("30000", "30000.0");
    setAge(std::chrono::hours(1));
    EXPECT_NEAR(ask(), 45, 1e-9);
}

TEST_F(OtherResource, IsNotReadAgainWhileItsTimeAndSizeAreTheSame) {
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(1);
    write("30000", "30000");
    fs::last_write_time(file(), time);
    EXPECT_NEAR(ask(), 45, 1e-9);
    write("30000", "10000");
    fs::last_write_time(file(), time);
    EXPECT_NEAR(ask(), 45, 1e-9);
}

TEST_F(OtherResource, GivesZeroWhenItCannotBeRead) {
    std::ofstream(file()) << "\xff";
    EXPECT_EQ(ask(), 0.0);
    std::ofstream(file()) << "";
    EXPECT_EQ(ask(), 0.0);
}

}  // namespace
}  // namespace mezalith
