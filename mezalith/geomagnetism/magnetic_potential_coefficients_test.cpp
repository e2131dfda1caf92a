// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>
#include <tests/support/temporary_folder.hpp>

#include <chrono>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::startOfYear;
using Coefficients = MzMagneticPotentialCoefficients;
using Seconds = std::chrono::duration<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const std::string kSource = MEZALITH_SOURCE_DIR;
const std::string kIGRF11 = kSource + "/mezalith/geomagnetism/resources/IGRF11.COF";

std::shared_ptr<Coefficients> bad(const std::string& name) {
    return Coefficients::initWithCOFfile(kSource + "/tests/data/bad/cof/" + name + ".cof");
}

std::shared_ptr<Coefficients> coefficientsOf(const std::string& text) {
    const testing::TemporaryFolder folder;
    return Coefficients::initWithCOFfile(folder.put("test.cof", text));
}

MzMagneticModel modelOf(const Coefficients& coefficients, int year) {
    return *coefficients.models().at(startOfYear(year));
}

/// Two epochs of different degree, the second with secular variation of degree 1.
constexpr char kTwoEpochs[] =
    "A 1990.00 2 0 0 1990.00 1995.00 -1.0 600.0 A 0\n"
    "1 0 -100 0 9 9 A 1\n1 1 10 20 9 9 A 2\n2 0 7 0 9 9 A 3\n"
    "B 1995.00 3 1 0 1995.50 2000.00 -2.0 700.0 B 0\n"
    "1 0 -200 0 10 0 B 1\n1 1 30 10 1 -2 B 2\n2 0 9 0 5 5 B 3\n3 3 4 5 6 6 B 4\n";

TEST(MagneticPotentialCoefficients, ReadsEveryEpochOfIGRF11) {
    const auto coefficients = Coefficients::initWithCOFfile(kIGRF11);
    ASSERT_EQ(coefficients->models().size(), 23U);
    const MzMagneticModel last = modelOf(*coefficients, 2010);
    EXPECT_EQ(last.name(), "IGRF2010");
    EXPECT_EQ(last.startDate(), startOfYear(2010));
    EXPECT_EQ(last.endDate(), startOfYear(2015));
    EXPECT_EQ(last.maxDegree(), 13U);
    EXPECT_EQ(last.maxSVDegree(), 8U);
    EXPECT_EQ(last.minAltitude(), -1.0);
    EXPECT_EQ(last.maxAltitude(), 600.0);
    EXPECT_EQ(last.gCoefficientOfDegree(1, 0), -29496.5);
    EXPECT_EQ(last.hCoefficientOfDegree(1, 1), 4945.1);
    EXPECT_EQ(last.gSVCoefficientOfDegree(1, 0), 11.4);
    EXPECT_EQ(last.cache().contains("8_8_h_sv"), true);
    EXPECT_EQ(last.cache().contains("9_0_g_sv"), false);
    // 104 pairs of the main field, 44 of its variation.
    EXPECT_EQ(last.cache().size(), 2 * 104 + 2 * 44U);
    EXPECT_EQ(modelOf(*coefficients, 1995).maxDegree(), 10U);
    EXPECT_EQ(modelOf(*coefficients, 1900).cache().size(), 2 * 65U);
}

TEST(MagneticPotentialCoefficients, HasNoModelUpToTheFirstStartDate) {
    const auto coefficients = Coefficients::initWithCOFfile(kIGRF11);
    EXPECT_EQ(coefficients->magneticModelForDate(startOfYear(1899)), nullptr);
    EXPECT_EQ(coefficients->magneticModelForDate(startOfYear(1900)), nullptr);
    EXPECT_NE(coefficients->magneticModelForDate(startOfYear(1900) + Seconds(1)), nullptr);
}

TEST(MagneticPotentialCoefficients, InterpolatesToTheLowerDegreeOfTheTwo) {
    const auto coefficients = coefficientsOf(kTwoEpochs);
    const auto date = startOfYear(1990) + Seconds(86400 * 365);
    const auto model = coefficients->magneticModelForDate(date);
    ASSERT_NE(model, nullptr);
    const double share = 365.0 / 1826;
    EXPECT_EQ(model->maxDegree(), 2U);
    EXPECT_EQ(model->maxSVDegree(), 0U);
    EXPECT_EQ(model->startDate(), date);
    EXPECT_EQ(model->endDate(), date);
    EXPECT_EQ(model->name(), "");
    EXPECT_EQ(model->minAltitude(), 0.0);
    EXPECT_EQ(model->maxAltitude(), 0.0);
    EXPECT_EQ(model->gCoefficientOfDegree(1, 0), -100 + -100 * share);
    EXPECT_EQ(model->hCoefficientOfDegree(1, 1), 20 + -10 * share);
    EXPECT_EQ(model->gCoefficientOfDegree(2, 0), 7 + 2 * share);
    EXPECT_EQ(model->gCoefficientOfDegree(3, 3), 0.0);
    // Every degree from 0, every order, g and h, and nothing else.
    EXPECT_EQ(model->cache().size(), 12U);
    EXPECT_EQ(model->cache().at("0_0_g"), 0.0);
}

TEST(MagneticPotentialCoefficients, ExtrapolatesByTheSecularVariationToItsDegree) {
    const auto coefficients = coefficientsOf(kTwoEpochs);
    const auto date = startOfYear(1995) + Seconds(31556926.080000002 * 3);
    const auto model = coefficients->magneticModelForDate(date);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->maxDegree(), 1U);
    EXPECT_EQ(model->maxSVDegree(), 0U);
    EXPECT_NEAR(model->gCoefficientOfDegree(1, 0), -170, 1e-9);
    EXPECT_NEAR(model->gCoefficientOfDegree(1, 1), 33, 1e-9);
    EXPECT_NEAR(model->hCoefficientOfDegree(1, 1), 4, 1e-9);
    EXPECT_EQ(model->gCoefficientOfDegree(2, 0), 0.0);
    EXPECT_EQ(model->cache().size(), 6U);
    EXPECT_EQ(model->startDate(), date);
    const auto today =
        Coefficients::initWithCOFfile(kIGRF11)->magneticModelForDate(startOfYear(2026));
    ASSERT_NE(today, nullptr);
    EXPECT_EQ(today->maxDegree(), 8U);
}

TEST(MagneticPotentialCoefficients, EndsWithALastEpochWithoutSecularVariation) {
    const std::string text = kTwoEpochs;
    const auto coefficients =
        coefficientsOf(text + "C 2000 2 0 0 2000 2005 0 0 C 0\n1 0 5 5 5 5 C 1\n");
    EXPECT_EQ(coefficients->magneticModelForDate(startOfYear(2000)), nullptr);
    EXPECT_EQ(coefficients->magneticModelForDate(startOfYear(2001)), nullptr);
    EXPECT_NE(coefficients->magneticModelForDate(startOfYear(2000) - Seconds(1)), nullptr);
}

TEST(MagneticPotentialCoefficients, ReadsTheWholePartOfYearsAlone) {
    const auto coefficients = coefficientsOf(kTwoEpochs);
    const MzMagneticModel model = modelOf(*coefficients, 1995);
    EXPECT_EQ(model.startDate(), startOfYear(1995));
    EXPECT_EQ(model.minAltitude(), -2.0);
    EXPECT_EQ(model.maxAltitude(), 700.0);
}

TEST(MagneticPotentialCoefficients, KeepsTheLaterOfTwoModelsThatStartAlike) {
    const auto coefficients = bad("duplicate-start");
    ASSERT_EQ(coefficients->models().size(), 1U);
    EXPECT_EQ(modelOf(*coefficients, 1995).name(), "SECOND");
    EXPECT_EQ(modelOf(*coefficients, 1995).gCoefficientOfDegree(1, 0), -11111);
}

TEST(MagneticPotentialCoefficients, HasThatEpochsFieldOnALaterStartDate) {
    const std::string text = kTwoEpochs;
    const auto three =
        coefficientsOf(text + "C 2000 2 1 0 2000 2005 0 0 C 0\n1 0 -300 5 5 5 C 1\n");
    // In the middle: interpolated with the whole of the way behind it.
    const auto middle = three->magneticModelForDate(startOfYear(1995));
    EXPECT_EQ(middle->maxDegree(), 2U);
    EXPECT_EQ(middle->gCoefficientOfDegree(1, 0), -200);
    EXPECT_EQ(middle->gCoefficientOfDegree(2, 0), 9);
    // At the end: extrapolated by no time at all.
    const auto last = three->magneticModelForDate(startOfYear(2000));
    EXPECT_EQ(last->maxDegree(), 1U);
    EXPECT_EQ(last->gCoefficientOfDegree(1, 0), -300);
}

TEST(MagneticPotentialCoefficients, HasNoModelOnTheOnlyStartDate) {
    const auto coefficients =
        coefficientsOf("C 2000 2 1 0 2000 2005 0 0 C 0\n1 0 -300 5 5 5 C 1\n");
    EXPECT_EQ(coefficients->magneticModelForDate(startOfYear(2000)), nullptr);
    EXPECT_NE(coefficients->magneticModelForDate(startOfYear(2000) + Seconds(1)), nullptr);
}

TEST(MagneticPotentialCoefficients, HasNoModelForWhatIsNoInstant) {
    const auto coefficients = Coefficients::initWithCOFfile(kIGRF11);
    for (const double seconds : {kInfinity, -kInfinity, std::nan("")}) {
        EXPECT_EQ(coefficients->magneticModelForDate(platform::Date(Seconds(seconds))), nullptr);
    }
    EXPECT_EQ(Coefficients().magneticModelForDate(startOfYear(2000)), nullptr);
}

TEST(MagneticPotentialCoefficients, AddsTheModelsOfAnotherFile) {
    const auto coefficients = bad("ok-two-epochs");
    EXPECT_EQ(coefficients->models().size(), 2U);
    coefficients->createModelsFromCOFfile(kIGRF11);
    EXPECT_EQ(coefficients->models().size(), 23U);
    EXPECT_EQ(modelOf(*coefficients, 1995).maxDegree(), 10U);
}

TEST(MagneticPotentialCoefficients, IsThereButEmptyWhenNothingCanBeRead) {
    for (const std::string& path : {std::string("/no/such/file"), std::string("/"),
                                    std::string("/dev/zero"), std::string()}) {
        const auto coefficients = Coefficients::initWithCOFfile(path);
        ASSERT_NE(coefficients, nullptr);
        EXPECT_TRUE(coefficients->models().empty()) << path;
    }
}

TEST(MagneticPotentialCoefficients, ReadsNoFileLargerThanItsBound) {
    const std::string text = kTwoEpochs;
    const std::string filling(Coefficients::kMaxFileSize - text.size(), ' ');
    EXPECT_EQ(coefficientsOf(text + filling)->models().size(), 2U);
    EXPECT_TRUE(coefficientsOf(text + filling + "x")->models().empty());
}

TEST(MagneticPotentialCoefficients, TrimsAndLeavesOutWhatBecomesEmpty) {
    const std::vector<std::string> texts{"\n a\n", "", "\n\n", "b\nc", "d"};
    const std::vector<std::string> expected{" a", "b\nc", "d"};
    EXPECT_EQ(Coefficients().timmedComponentsFromArray(texts, "\n\r"), expected);
    EXPECT_EQ(Coefficients().timmedComponentsFromArray({}, "\n"), std::vector<std::string>());
    EXPECT_EQ(Coefficients().timmedComponentsFromArray(expected, ""), expected);
}

// --- files that are not what they should be ---------------------------------------------------

TEST(MalformedCoefficientFile, IsReadAsFarAsItsLinesAreInForm) {
    EXPECT_TRUE(bad("empty")->models().empty());
    EXPECT_TRUE(bad("only-newlines")->models().empty());
    EXPECT_TRUE(bad("utf16")->models().empty());
    EXPECT_EQ(bad("header-only")->models().size(), 2U);
    EXPECT_TRUE(modelOf(*bad("header-only"), 1995).cache().empty());
    for (const char* name : {"header-10-fields", "header-12-fields"}) {
        const auto coefficients = bad(name);
        ASSERT_EQ(coefficients->models().size(), 1U) << name;
        EXPECT_EQ(coefficients->models().begin()->first, startOfYear(2000)) << name;
    }
    EXPECT_EQ(bad("coefficients-first")->models().size(), 1U);
    EXPECT_EQ(bad("many-fields")->models().size(), 2U);
    EXPECT_EQ(bad("cr-only")->models().size(), 2U);
    EXPECT_EQ(bad("truncated-line")->models().size(), 2U);
    EXPECT_EQ(modelOf(*bad("truncated-line"), 2000).hCoefficientOfDegree(2, 2), 0.0);
}

TEST(MalformedCoefficientFile, WithAByteAbove127GivesNothing) {
    EXPECT_TRUE(bad("binary")->models().empty());
    EXPECT_TRUE(bad("utf8-bom")->models().empty());
}

TEST(MalformedCoefficientFile, HasZerosForNumbersThatAreNone) {
    const auto words = bad("header-text-numbers");
    ASSERT_EQ(words->models().size(), 1U);
    const MzMagneticModel model = modelOf(*words, 0);
    EXPECT_EQ(model.maxDegree(), 0U);
    EXPECT_EQ(model.maxSVDegree(), 2U);
    EXPECT_EQ(model.endDate(), startOfYear(20));
    EXPECT_EQ(model.minAltitude(), 0.0);
    EXPECT_FALSE(model.cache().contains("1_0_g"));
    EXPECT_TRUE(model.cache().contains("1_0_g_sv"));

    const MzMagneticModel odd = modelOf(*bad("nonfinite-values"), 1995);
    EXPECT_EQ(odd.gCoefficientOfDegree(1, 0), 0.0);
    EXPECT_EQ(odd.hCoefficientOfDegree(1, 0), 0.0);
    EXPECT_EQ(odd.gSVCoefficientOfDegree(1, 0), 0.0);
    EXPECT_EQ(odd.hSVCoefficientOfDegree(1, 0), kInfinity);
    EXPECT_EQ(odd.gCoefficientOfDegree(1, 1), -kInfinity);
    EXPECT_EQ(odd.hCoefficientOfDegree(1, 1), 0.0);
    EXPECT_EQ(odd.gSVCoefficientOfDegree(1, 1), 0.0);
    EXPECT_EQ(odd.hSVCoefficientOfDegree(1, 1), 0.0);

    const auto commas = bad("comma-decimals");
    EXPECT_EQ(commas->models().size(), 2U);
    EXPECT_EQ(modelOf(*commas, 2000).gCoefficientOfDegree(1, 0), -29619);
    EXPECT_EQ(modelOf(*bad("long-line"), 1995).gCoefficientOfDegree(1, 0), -29692);
}

TEST(MalformedCoefficientFile, KeepsDegreesAndOrdersAsTheyStand) {
    const MzMagneticModel odd = modelOf(*bad("degree-out-of-range"), 1995);
    EXPECT_EQ(odd.gCoefficientOfDegree(-1, -1), 1.0);
    EXPECT_EQ(odd.cache().size(), 4 * 6U);
    EXPECT_EQ(modelOf(*bad("order-above-degree"), 1995).hCoefficientOfDegree(1, 2), 456.0);
    const MzMagneticModel above = modelOf(*bad("sv-degree-above"), 1995);
    EXPECT_EQ(above.maxSVDegree(), 9U);
    EXPECT_TRUE(above.cache().contains("2_0_g_sv"));
    EXPECT_FALSE(above.cache().contains("2_0_g"));
    const auto later = bad("sv-degree-above")->magneticModelForDate(startOfYear(1996));
    EXPECT_EQ(later->maxDegree(), 1U);
}

TEST(MalformedCoefficientFile, LosesModelsOfImpossibleDegreeOrYear) {
    EXPECT_TRUE(bad("maxdegree-huge")->models().empty());
    EXPECT_TRUE(bad("maxdegree-negative")->models().empty());
    const auto years = bad("year-absurd");
    ASSERT_EQ(years->models().size(), 1U);
    EXPECT_EQ(years->models().begin()->first, startOfYear(2000));
    EXPECT_EQ(coefficientsOf("A 0 63 0 0 -9999 9999 0 0 A 0\n")->models().size(), 1U);
    EXPECT_TRUE(coefficientsOf("A 0 64 0 0 1 9999 0 0 A 0\n")->models().empty());
    EXPECT_TRUE(coefficientsOf("A 0 1 0 0 1 10000 0 0 A 0\n")->models().empty());
    EXPECT_TRUE(coefficientsOf("A 0 1 0 0 -10000 1 0 0 A 0\n")->models().empty());
}

TEST(MalformedCoefficientFile, MayHaveItsEpochsInAnyOrder) {
    const auto coefficients = bad("epochs-reversed");
    EXPECT_EQ(coefficients->models().size(), 2U);
    const auto model = coefficients->magneticModelForDate(startOfYear(1998));
    EXPECT_LT(model->gCoefficientOfDegree(1, 0), -29619.4);
    EXPECT_GT(model->gCoefficientOfDegree(1, 0), -29692);
    EXPECT_NE(bad("nul-bytes"), nullptr);
}

}  // namespace
}  // namespace mezalith
