// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/magnetic_model.hpp>

#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(MagneticModel, StartsEmpty) {
    const MzMagneticModel model;
    EXPECT_EQ(model.name(), "");
    EXPECT_EQ(model.startDate(), std::nullopt);
    EXPECT_EQ(model.endDate(), std::nullopt);
    EXPECT_EQ(model.maxDegree(), 0U);
    EXPECT_EQ(model.maxSVDegree(), 0U);
    EXPECT_EQ(model.minAltitude(), 0.0);
    EXPECT_EQ(model.maxAltitude(), 0.0);
    EXPECT_TRUE(model.cache().empty());
}

TEST(MagneticModel, KeepsItsProperties) {
    MzMagneticModel model;
    model.setName("IGRF2010");
    model.setStartDate(platform::startOfYear(2010));
    model.setEndDate(platform::startOfYear(2015));
    model.setMaxDegree(13);
    model.setMaxSVDegree(8);
    model.setMinAltitude(-1);
    model.setMaxAltitude(600);
    EXPECT_EQ(model.name(), "IGRF2010");
    EXPECT_EQ(model.startDate(), platform::startOfYear(2010));
    EXPECT_EQ(model.endDate(), platform::startOfYear(2015));
    EXPECT_EQ(model.maxDegree(), 13U);
    EXPECT_EQ(model.maxSVDegree(), 8U);
    EXPECT_EQ(model.minAltitude(), -1);
    EXPECT_EQ(model.maxAltitude(), 600);
}

TEST(MagneticModel, AnswersZeroForWhatIsNotSet) {
    const MzMagneticModel model;
    EXPECT_EQ(model.gCoefficientOfDegree(0, 0), 0.0);
    EXPECT_EQ(model.hCoefficientOfDegree(1, 1), 0.0);
    EXPECT_EQ(model.gSVCoefficientOfDegree(-1, 5), 0.0);
    EXPECT_EQ(model.hSVCoefficientOfDegree(kLeast, kLeast), 0.0);
}

TEST(MagneticModel, KeepsCoefficientsUnderTextKeys) {
    MzMagneticModel model;
    model.setGCoefficient(-29496.5, 1, 0);
    model.setHCoefficient(4945.1, 1, 1);
    model.setGSVCoefficient(11.4, 1, 0);
    model.setHSVCoefficient(-28.8, 13, 12);
    const MzMagneticModel::Cache expected{
        {"1_0_g", -29496.5}, {"1_1_h", 4945.1}, {"1_0_g_sv", 11.4}, {"13_12_h_sv", -28.8}};
    EXPECT_EQ(model.cache(), expected);
    EXPECT_EQ(model.gCoefficientOfDegree(1, 0), -29496.5);
    EXPECT_EQ(model.hCoefficientOfDegree(1, 1), 4945.1);
    EXPECT_EQ(model.gSVCoefficientOfDegree(1, 0), 11.4);
    EXPECT_EQ(model.hSVCoefficientOfDegree(13, 12), -28.8);
}

TEST(MagneticModel, TakesDegreesAndOrdersOfAnySize) {
    MzMagneticModel model;
    model.setHSVCoefficient(3, kLeast, kLeast);
    EXPECT_EQ(model.cache().begin()->first, "-9223372036854775808_-9223372036854775808_h_sv");
    EXPECT_EQ(model.hSVCoefficientOfDegree(kLeast, kLeast), 3);
}

TEST(MagneticModel, ReplacesACoefficient) {
    MzMagneticModel model;
    model.setGCoefficient(1, 2, 1);
    model.setGCoefficient(7, 2, 1);
    EXPECT_EQ(model.gCoefficientOfDegree(2, 1), 7);
    EXPECT_EQ(model.cache().size(), 1U);
    model.cache()["2_1_g"] = 8;
    EXPECT_EQ(model.gCoefficientOfDegree(2, 1), 8);
}

}  // namespace
}  // namespace mezalith
