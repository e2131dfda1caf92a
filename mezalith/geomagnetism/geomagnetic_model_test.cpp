// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_model.hpp>
#include <mezalith/platform/resource_bundle.hpp>

#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Validity = MzGeomagneticModel::Validity;

const std::string kData = std::string(MEZALITH_SOURCE_DIR) + "/data/geomag/";

struct Pair {
    MzGaussCoefficients value, rate;
};

Pair at(const MzGeomagneticModel& model, double year, int degree, int order) {
    const std::size_t count = MzGeomagneticModel::countToDegree(model.degree());
    std::vector<MzGaussCoefficients> values(count), rates(count);
    model.coefficientsInYear(year, values, rates);
    const std::size_t index = MzGeomagneticModel::indexOf(degree, order);
    return {values[index], rates[index]};
}

/// Degree 1 in 2000, degree 2 in 2010, then by rates of degree 1.
MzGeomagneticModel growing() {
    return MzGeomagneticModel(
        {.name = "growing",
         .epochs = {{2000, 1, {{}, {10, 0}, {20, 30}}},
                    {2010, 2, {{}, {20, 0}, {20, 20}, {100, 0}, {0, 0}, {5, 7}}}},
         .rates = {{}, {2, 0}, {3, 4}},
         .firstYear = 1999.5,
         .lastYear = 2015});
}

TEST(GeomagneticModel, CountsCoefficientsByDegreeAndOrder) {
    EXPECT_EQ(MzGeomagneticModel::indexOf(0, 0), 0U);
    EXPECT_EQ(MzGeomagneticModel::indexOf(1, 0), 1U);
    EXPECT_EQ(MzGeomagneticModel::indexOf(1, 1), 2U);
    EXPECT_EQ(MzGeomagneticModel::indexOf(2, 2), 5U);
    EXPECT_EQ(MzGeomagneticModel::countToDegree(0), 1U);
    EXPECT_EQ(MzGeomagneticModel::countToDegree(13), 105U);
}

TEST(GeomagneticModel, IsLinearBetweenEpochsToTheHigherDegree) {
    const MzGeomagneticModel model = growing();
    EXPECT_EQ(model.degree(), 2);
    EXPECT_EQ(at(model, 2000, 1, 0).value.g, 10);
    EXPECT_EQ(at(model, 2004, 1, 0).value.g, 14);
    EXPECT_EQ(at(model, 2004, 1, 0).rate.g, 1);
    EXPECT_EQ(at(model, 2004, 1, 1).value.h, 26);
    EXPECT_EQ(at(model, 2004, 1, 1).rate.h, -1);
    EXPECT_EQ(at(model, 2005, 2, 0).value.g, 50);
    EXPECT_EQ(at(model, 2010, 2, 0).value.g, 100);
}

TEST(GeomagneticModel, GoesOnByItsRatesToTheirDegree) {
    const MzGeomagneticModel model = growing();
    EXPECT_EQ(at(model, 2010, 1, 0).rate.g, 2);
    EXPECT_EQ(at(model, 2012, 1, 0).value.g, 24);
    EXPECT_EQ(at(model, 2012, 1, 1).value.h, 28);
    EXPECT_EQ(at(model, 2012, 2, 2).value.h, 7);
    EXPECT_EQ(at(model, 2012, 2, 2).rate.h, 0);
    EXPECT_EQ(at(model, 2100, 1, 0).value.g, 200);
}

TEST(GeomagneticModel, BeginsAsItGoesOn) {
    EXPECT_EQ(at(growing(), 1999, 1, 0).value.g, 9);
    const MzGeomagneticModel one(
        {.name = "one", .epochs = {{2000, 1, {{}, {10, 0}, {20, 30}}}}, .rates = {{}, {2, 0}}});
    EXPECT_EQ(at(one, 1999.5, 1, 0).value.g, 9);
    EXPECT_EQ(at(one, 1999.5, 1, 1).value.g, 20);
}

TEST(GeomagneticModel, GoesOnAsItEndsWithoutRates) {
    const MzGeomagneticModel model(
        {.name = "", .epochs = {{2000, 1, {{}, {10, 0}}}, {2010, 1, {{}, {20, 0}}}}, .rates = {}});
    EXPECT_EQ(at(model, 2010, 1, 0).value.g, 20);
    EXPECT_EQ(at(model, 2010, 1, 0).rate.g, 1);
    EXPECT_EQ(at(model, 2015, 1, 0).value.g, 25);
    const MzGeomagneticModel one({.name = "", .epochs = {{2000, 1, {{}, {10, 0}}}}, .rates = {}});
    EXPECT_EQ(at(one, 2015, 1, 0).value.g, 10);
}

TEST(GeomagneticModel, SaysWhetherItIsMadeForAYear) {
    const MzGeomagneticModel model = growing();
    EXPECT_EQ(model.validityInYear(1999.49), Validity::NotYet);
    EXPECT_EQ(model.validityInYear(1999.5), Validity::Valid);
    EXPECT_EQ(model.validityInYear(2015), Validity::Valid);
    EXPECT_EQ(model.validityInYear(2015.01), Validity::Expired);
    EXPECT_EQ(model.validityInYear(std::numeric_limits<double>::quiet_NaN()), Validity::NotYet);
    EXPECT_EQ(model.validityInYear(std::numeric_limits<double>::infinity()), Validity::Expired);
}

TEST(GeomagneticModel, OfTheReferenceFieldIsThe14thGeneration) {
    const auto model = MzGeomagneticModel::internationalReferenceField();
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->name(), "IGRF 14");
    EXPECT_EQ(model->degree(), 13);
    EXPECT_EQ(model->firstYear(), 1900);
    EXPECT_EQ(model->lastYear(), 2030);
    EXPECT_EQ(model->epochs().size(), 27U);
    EXPECT_EQ(at(*model, 2025, 1, 0).value.g, -29350.0);
    EXPECT_NEAR(at(*model, 2025, 1, 0).rate.g, 12.6, 1e-9);
    EXPECT_EQ(at(*model, 2027, 13, 13).rate.h, 0);
    EXPECT_EQ(MzGeomagneticModel::internationalReferenceField(), model);
}

TEST(GeomagneticModel, ReadsEveryPublishedFile) {
    for (const char* name :
         {"IGRF12.COF", "IGRF13.COF", "IGRF14.COF", "WMM2010.COF", "WMM2015.COF", "WMM2025.COF",
          "igrf11coeffs.txt", "igrf13coeffs.txt", "igrf14coeffs.txt"}) {
        std::string why = "untouched";
        const auto model = MzGeomagneticModel::modelWithContentsOfFile(kData + name, &why);
        ASSERT_NE(model, nullptr) << name << ": " << why;
        EXPECT_EQ(why, "");
        EXPECT_GE(model->degree(), 12);
    }
}

TEST(GeomagneticModel, HasTheValidityOfItsFileAndTheEpochOfItsCoefficients) {
    const auto model = MzGeomagneticModel::modelWithContentsOfFile(kData + "WMM2015.COF");
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->name(), "WMM-2015");
    EXPECT_EQ(model->firstYear(), 2014.75);
    EXPECT_EQ(model->lastYear(), 2020);
    EXPECT_EQ(model->epochs().front().year, 2015);
    EXPECT_EQ(at(*model, 2014.75, 1, 0).value.g, -29438.5 - 0.25 * 10.7);
}

TEST(GeomagneticModel, SaysWhyAFileIsNone) {
    std::string why;
    EXPECT_EQ(MzGeomagneticModel::modelWithContentsOfFile("/no/such/file", &why), nullptr);
    EXPECT_EQ(why, "No such file or directory");
    EXPECT_EQ(MzGeomagneticModel::modelWithContentsOfFile("/", &why), nullptr);
    EXPECT_EQ(why, "is a folder");
    EXPECT_EQ(MzGeomagneticModel::modelWithText("", &why), nullptr);
    EXPECT_EQ(why, "there is nothing in it");
    EXPECT_EQ(MzGeomagneticModel::modelWithText(""), nullptr);
}

}  // namespace
}  // namespace mezalith
