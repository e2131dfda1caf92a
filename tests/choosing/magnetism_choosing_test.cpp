// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_field.hpp>
#include <mezalith/geomagnetism/magnetic_declination.hpp>
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>
#include <mezalith/platform/resource_bundle.hpp>
#include <tests/support/temporary_folder.hpp>

#include <cmath>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::startOfYear;

constexpr MzPoint kOslo{10.75, 59.91};

std::string resource(const char* name) {
    return platform::ResourceBundle::library().pathForResource(name).value();
}

// --- magnetic declination

double settledDeclination(MzPoint place, int year) {
    return MzMagneticDeclination().declinationForLatitudeLongitude(place, startOfYear(year));
}

MzGeomagneticField fieldOf(int year) {
    return {*MzGeomagneticModel::internationalReferenceField(), startOfYear(year)};
}

TEST(ChoosingMagneticDeclination, TheSettledOneIsTensOfDegreesOffBetween2000And2010) {
    EXPECT_NEAR(settledDeclination({0, 0}, 2005), 40.3, 0.05);
    EXPECT_NEAR(fieldOf(2005).elementsAt({0, 0}).declination, -6.7, 0.05);
}

TEST(ChoosingMagneticDeclination, TheSettledOneEndsAtDegree8From2010On) {
    const auto settled = MzMagneticPotentialCoefficients::initWithCOFfile(resource("IGRF11.COF"));
    EXPECT_EQ(settled->magneticModelForDate(startOfYear(2012))->maxDegree(), 8u);
    EXPECT_EQ(fieldOf(2012).degree(), 13);
}

TEST(ChoosingMagneticDeclination, TheSettledNorthIsThatOfTheSphere) {
    const auto model = MzGeomagneticModel::modelWithContentsOfFile(resource("IGRF11.COF"));
    ASSERT_NE(model, nullptr) << "any model file";
    const MzGeomagneticField field(*model, startOfYear(1931));
    EXPECT_NEAR(settledDeclination(kOslo, 1931), -7.274, 0.001);
    EXPECT_NEAR(field.elementsAt(kOslo).declination, -7.209, 0.001);
}

TEST(ChoosingMagneticDeclination, TheSettledOneIsNaNAtTheNorthPole) {
    EXPECT_TRUE(std::isnan(settledDeclination({0, 90}, 2012)));
    EXPECT_NEAR(fieldOf(2012).elementsAt({0, 90}).declination, -10.6, 0.05);
}

TEST(ChoosingMagneticDeclination, TheSettledOneIs0UpTo1900) {
    EXPECT_EQ(settledDeclination(kOslo, 1900), 0);
    EXPECT_EQ(settledDeclination(kOslo, 1895), 0);
    EXPECT_NEAR(fieldOf(1900).elementsAt(kOslo).declination, -11.5, 0.05);
    using enum MzGeomagneticModel::Validity;
    const auto model = MzGeomagneticModel::internationalReferenceField();
    EXPECT_EQ(model->validityInYear(1895), NotYet);
    EXPECT_EQ(model->validityInYear(1900), Valid);
    EXPECT_EQ(model->validityInYear(2031), Expired);
}

TEST(ChoosingMagneticDeclination, TheCounterpartHasEveryElementItsChangeAndGrids) {
    const MzGeomagneticField field = fieldOf(2025);
    const MzMagneticElements oslo = field.elementsAt(kOslo);
    EXPECT_NEAR(oslo.inclination, 72.92, 0.01);
    EXPECT_NEAR(oslo.total, 51'528, 1);
    EXPECT_NEAR(field.annualChangeAt(kOslo).declination, 0.192, 0.001);
    const std::vector<double> longitudes{0, kOslo.x};
    const std::vector<double> latitudes{kOslo.y};
    std::vector<MzMagneticElements> grid(2);
    field.elementsOnGrid(longitudes, latitudes, 0, grid);
    EXPECT_EQ(grid[1].declination, oslo.declination);
}

// --- reading coefficients

TEST(ChoosingReadingCoefficients, TheSettledOneTakesAWrongNumberForZero) {
    testing::TemporaryFolder folder;
    std::ifstream file(resource("IGRF11.COF"));
    std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::size_t number = text.find("-31543");
    ASSERT_NE(number, std::string::npos);
    const std::string path = folder.put("wrong.cof", text.replace(number, 6, " wrong"));
    const auto settled = MzMagneticPotentialCoefficients::initWithCOFfile(path);
    ASSERT_EQ(settled->models().size(), 23u);
    EXPECT_EQ(settled->models().begin()->second->gCoefficientOfDegree(1, 0), 0);
    std::string why;
    EXPECT_EQ(MzGeomagneticModel::modelWithContentsOfFile(path, &why), nullptr);
    EXPECT_EQ(why, "line 2: \"wrong.00\" is not a number");
}

TEST(ChoosingReadingCoefficients, TheSettledOneReadsCOFFilesOnly) {
    testing::TemporaryFolder folder;
    const std::string table =
        folder.put("table.txt",
                   "g/h n m 2020.0 2025.0 2025-30\ng 1 0 -29403.41 -29350.0 12.6\n"
                   "g 1 1 -1451.37 -1410.3 10.0\nh 1 1 4653.35 4545.5 -21.5\n");
    for (const std::string& path : {resource("IGRF14.shc"), table}) {
        EXPECT_TRUE(MzMagneticPotentialCoefficients::initWithCOFfile(path)->models().empty());
        std::string why;
        EXPECT_NE(MzGeomagneticModel::modelWithContentsOfFile(path, &why), nullptr) << why;
    }
}

}  // namespace
}  // namespace mezalith
