// SPDX-License-Identifier: MIT
#include <mezalith/geometry/affine_transform.hpp>
#include <mezalith/platform/log.hpp>
#include <mezalith/platform/memory_archive.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using Matrix = MzAffineTransform::Matrix;

constexpr Matrix kEach{2, 3, 5, 7, 11, 13};  // a different prime in each place
constexpr Matrix kZeros{0, 0, 0, 0, 0, 0};

MzAffineTransform with(const Matrix& matrix) {
    MzAffineTransform transform;
    transform.setMatrix(matrix.data());
    return transform;
}

Matrix matrixOf(const MzAffineTransform& transform) {
    Matrix matrix;
    transform.getMatrix(matrix.data());
    return matrix;
}

void expectPoint(MzPoint actual, MzPoint expected) {
    EXPECT_EQ(actual.x, expected.x);
    EXPECT_EQ(actual.y, expected.y);
}

// The lines that `action` logs.
template <typename Action>
std::vector<std::string> logged(Action action) {
    std::vector<std::string> lines;
    platform::LogSink before =
        platform::setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    action();
    platform::setLogSink(std::move(before));
    return lines;
}

double moderate() { return *rc::gen::inRange(-100000, 100000) / 64.0; }

MzAffineTransform anyTransform() {
    return with({moderate(), moderate(), moderate(), moderate(), moderate(), moderate()});
}

class Flipped : public MzAffineTransform {
  protected:
    std::shared_ptr<MzAffineTransform> newInstance() const override {
        return std::make_shared<Flipped>();
    }
};

// --- making and copying ----------------------------------------------------

TEST(AffineTransform, IsTheIdentityWhenNew) {
    EXPECT_EQ(matrixOf(MzAffineTransform()), MzAffineTransform::identityTransform);
    EXPECT_EQ(matrixOf(*MzAffineTransform::transform()), (Matrix{1, 0, 0, 1, 0, 0}));
}

TEST(AffineTransform, CopiesTheMatrixOfAnother) {
    const MzAffineTransform other = with(kEach);
    EXPECT_EQ(matrixOf(*MzAffineTransform::initWithTransform(&other)), kEach);
}

TEST(AffineTransform, FromNullMapsEveryPointToZero) {
    const auto transform = MzAffineTransform::initWithTransform(nullptr);
    EXPECT_EQ(matrixOf(*transform), kZeros);
    expectPoint(transform->transformPoint({3, -4}), {0, 0});
}

TEST(AffineTransform, CopyIsOfTheReceiversClassAndIndependent) {
    Flipped transform;
    transform.setMatrix(kEach.data());
    const auto copy = transform.copy();
    EXPECT_NE(dynamic_cast<Flipped*>(copy.get()), nullptr);
    transform.scaleBy(2);
    EXPECT_EQ(matrixOf(*copy), kEach);
}

TEST(AffineTransform, IsEqualToOneOfTheSameClassAndValuesOnly) {
    const MzAffineTransform transform = with(kEach);
    EXPECT_TRUE(transform.isEqual(&transform));
    EXPECT_TRUE(transform.isEqual(transform.copy().get()));
    for (std::size_t i = 0; i < kEach.size(); ++i) {
        Matrix changed = kEach;
        changed[i] += 1;
        const MzAffineTransform other = with(changed);
        EXPECT_FALSE(transform.isEqual(&other)) << i;
    }
}

TEST(AffineTransform, IsNotEqualToAnotherClassWithTheSameMatrix) {
    const MzAffineTransform transform;
    const Flipped flipped;
    EXPECT_FALSE(transform.isEqual(&flipped));
    EXPECT_FALSE(flipped.isEqual(&transform));
    EXPECT_TRUE(flipped.isEqual(flipped.copy().get()));
    EXPECT_FALSE(transform.isEqual(nullptr));
}

TEST(AffineTransform, ComparesValuesAsNumbers) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const MzAffineTransform plus = with(kZeros), minus = with({-0.0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(plus.isEqual(&minus));
    const MzAffineTransform none = with({nan, 0, 0, 1, 0, 0});
    EXPECT_FALSE(none.isEqual(&none));
}

// --- operations ------------------------------------------------------------

TEST(AffineTransform, PrependsATranslation) {
    MzAffineTransform transform = with(kEach);
    transform.translateXBy(17, 19);
    EXPECT_EQ(matrixOf(transform),
              (Matrix{2, 3, 5, 7, 17 * 2 + 19 * 5 + 11, 17 * 3 + 19 * 7 + 13}));
}

TEST(AffineTransform, TranslationThenScaleMapsOneOneToTwelveTwo) {
    MzAffineTransform transform;
    transform.translateXBy(10, 0);
    transform.scaleBy(2);
    expectPoint(transform.transformPoint({1, 1}), {12, 2});
}

TEST(AffineTransform, ScalesLeaveTheTranslation) {
    MzAffineTransform both = with(kEach);
    both.scaleXBy(17, 19);
    EXPECT_EQ(matrixOf(both), (Matrix{2 * 17, 3 * 17, 5 * 19, 7 * 19, 11, 13}));
    MzAffineTransform one = with(kEach);
    one.scaleBy(3);
    EXPECT_EQ(matrixOf(one), (Matrix{6, 9, 15, 21, 11, 13}));
}

TEST(AffineTransform, RotationBy90DegreesKeepsASinglePrecisionCosine) {
    MzAffineTransform transform;
    transform.rotateByDegrees(90);
    const double cosine = static_cast<float>(std::cos(std::numbers::pi / 2));
    EXPECT_EQ(matrixOf(transform), (Matrix{cosine, 1, -1, cosine, 0, 0}));
    EXPECT_NE(cosine, 0);
    EXPECT_NEAR(cosine, 6.12e-17, 1e-19);
}

TEST(AffineTransform, RotationRoundsSineAndCosineToSinglePrecision) {
    const double angle = 12345.678;  // which single precision itself would round
    MzAffineTransform transform = with(kEach);
    transform.rotateByRadians(angle);
    const double s = static_cast<float>(std::sin(angle)), c = static_cast<float>(std::cos(angle));
    EXPECT_NE(s, std::sin(angle));
    EXPECT_EQ(matrixOf(transform),
              (Matrix{s * 5 + c * 2, s * 7 + c * 3, c * 5 - s * 2, c * 7 - s * 3, 11, 13}));
}

TEST(AffineTransform, DegreesAreMultipliedByPiAndThenDividedBy180) {
    // Far out, where the last place of the angle is a good part of a turn.
    const double degrees = 7e16;
    EXPECT_NE(degrees * std::numbers::pi / 180, degrees * (std::numbers::pi / 180));
    MzAffineTransform byDegrees, byRadians;
    byDegrees.rotateByDegrees(degrees);
    byRadians.rotateByRadians(degrees * std::numbers::pi / 180);
    EXPECT_TRUE(byDegrees.isEqual(&byRadians));
}

TEST(AffineTransform, RotationComesBeforeWhatWasThere) {
    MzAffineTransform transform;
    transform.translateXBy(100, 0);
    transform.rotateByDegrees(90);
    const MzPoint point = transform.transformPoint({1, 0});
    EXPECT_NEAR(point.x, 100, 1e-12);
    EXPECT_NEAR(point.y, 1, 1e-12);
}

TEST(AffineTransform, AppendsWhatFollows) {
    MzAffineTransform transform = with(kEach);
    const MzAffineTransform other = with({17, 19, 23, 29, 31, 37});
    transform.appendTransform(&other);
    EXPECT_EQ(matrixOf(transform),
              (Matrix{2 * 17 + 3 * 23, 2 * 19 + 3 * 29, 5 * 17 + 7 * 23, 5 * 19 + 7 * 29,
                      11 * 17 + 13 * 23 + 31, 11 * 19 + 13 * 29 + 37}));
}

TEST(AffineTransform, PrependsWhatComesFirst) {
    MzAffineTransform transform = with(kEach);
    const MzAffineTransform other = with({17, 19, 23, 29, 31, 37});
    transform.prependTransform(&other);
    EXPECT_EQ(matrixOf(transform),
              (Matrix{17 * 2 + 19 * 5, 17 * 3 + 19 * 7, 23 * 2 + 29 * 5, 23 * 3 + 29 * 7,
                      31 * 2 + 37 * 5 + 11, 31 * 3 + 37 * 7 + 13}));
}

TEST(AffineTransform, AppendsAndPrependsItself) {
    MzAffineTransform appended = with(kEach), prepended = with(kEach);
    appended.appendTransform(&appended);
    prepended.prependTransform(&prepended);
    EXPECT_TRUE(appended.isEqual(&prepended));
}

TEST(AffineTransform, AppendingAndPrependingNullDoesNothing) {
    MzAffineTransform transform = with(kEach);
    transform.appendTransform(nullptr);
    transform.prependTransform(nullptr);
    EXPECT_EQ(matrixOf(transform), kEach);
}

TEST(AffineTransform, AppendMapsAsOneAfterTheOther) {
    EXPECT_TRUE(rc::check([] {
        const MzAffineTransform first = anyTransform(), second = anyTransform();
        const MzPoint point{moderate(), moderate()};
        const auto both = first.copy();
        both->appendTransform(&second);
        const MzPoint one = both->transformPoint(point);
        const MzPoint two = second.transformPoint(first.transformPoint(point));
        RC_ASSERT(std::abs(one.x - two.x) <= 1e-3);  // of values up to 1e11
        RC_ASSERT(std::abs(one.y - two.y) <= 1e-3);
        const auto prepended = second.copy();
        prepended->prependTransform(&first);
        RC_ASSERT(prepended->isEqual(both.get()));
    }));
}

// --- inversion -------------------------------------------------------------

TEST(AffineTransform, InvertsScaleAndTranslation) {
    MzAffineTransform transform = with({2, 0, 0, 2, 4, 6});
    EXPECT_TRUE(logged([&] { transform.invert(); }).empty());
    EXPECT_EQ(matrixOf(transform), (Matrix{0.5, 0, 0, 0.5, -2, -3}));
}

TEST(AffineTransform, KeepsAMatrixThatCannotBeInvertedAndLogsIt) {
    const Matrix singular{1, 2, 2, 4, 0, 0};
    MzAffineTransform transform = with(singular);
    const std::vector<std::string> message{"error: determinant of matrix is 0!"};
    EXPECT_EQ(logged([&] { transform.invert(); }), message);
    EXPECT_EQ(matrixOf(transform), singular);
}

TEST(AffineTransform, ADeterminantTooSmallForSinglePrecisionCountsAsZero) {
    MzAffineTransform transform = with({1e-23, 0, 0, 1e-23, 1, 1});
    EXPECT_EQ(logged([&] { transform.invert(); }).size(), 1u);
    EXPECT_EQ(matrixOf(transform), (Matrix{1e-23, 0, 0, 1e-23, 1, 1}));
}

TEST(AffineTransform, ADeterminantBeyondSinglePrecisionGivesZeros) {
    MzAffineTransform transform = with({1e20, 0, 0, 1e20, 5, 7});
    EXPECT_TRUE(logged([&] { transform.invert(); }).empty());
    EXPECT_EQ(matrixOf(transform), kZeros);
}

TEST(AffineTransform, InversionRoundsTheDeterminantAndEachValueToSinglePrecision) {
    MzAffineTransform transform = with({3.1, 0.7, -0.2, 2.3, 10.1, -4.7});
    transform.invert();
    const double det = static_cast<float>(3.1 * 2.3 - 0.7 * -0.2);
    EXPECT_EQ(matrixOf(transform),
              (Matrix{static_cast<float>(2.3 / det), static_cast<float>(-0.7 / det),
                      static_cast<float>(0.2 / det), static_cast<float>(3.1 / det),
                      static_cast<float>((-0.2 * -4.7 - 2.3 * 10.1) / det),
                      static_cast<float>((0.7 * 10.1 - 3.1 * -4.7) / det)}));
}

TEST(AffineTransform, InverseUndoesItWithinSinglePrecision) {
    EXPECT_TRUE(rc::check([] {
        const Matrix m = matrixOf(anyTransform());
        const double det = m[0] * m[3] - m[1] * m[2];
        const double spread = std::abs(m[0]) + std::abs(m[1]) + std::abs(m[2]) + std::abs(m[3]);
        RC_PRE(std::abs(det) > 1e-2 * spread * spread);  // well conditioned
        const MzPoint point{moderate(), moderate()};
        const auto transform = with(m);
        const auto inverse = transform.copy();
        inverse->invert();
        const MzPoint back = inverse->transformPoint(transform.transformPoint(point));
        // Relative to the terms that are added up on the way, 2^-24 each for determinant, value and
        // translation, times the condition.
        const MzPoint mapped = transform.transformPoint(point);
        const Matrix i = matrixOf(*inverse);
        const double terms =
            (std::abs(mapped.x) + std::abs(mapped.y)) *
                (std::abs(i[0]) + std::abs(i[1]) + std::abs(i[2]) + std::abs(i[3])) +
            std::abs(i[4]) + std::abs(i[5]);
        const double tolerance = 4 * std::numeric_limits<float>::epsilon() * terms;
        RC_ASSERT(std::abs(back.x - point.x) <= tolerance);
        RC_ASSERT(std::abs(back.y - point.y) <= tolerance);
    }));
}

// --- mapping ---------------------------------------------------------------

TEST(AffineTransform, MapsPointsInRowVectorForm) {
    expectPoint(with(kEach).transformPoint({17, 19}), {2 * 17 + 5 * 19 + 11, 3 * 17 + 7 * 19 + 13});
}

TEST(AffineTransform, MapsManyPointsAsItMapsEachAndInPlace) {
    EXPECT_TRUE(rc::check([] {
        const MzAffineTransform transform = anyTransform();
        std::array<MzPoint, 7> points{};
        for (MzPoint& point : points) point = {moderate(), moderate()};
        const auto before = points;
        transform.transformPoints(points, points);
        for (std::size_t i = 0; i < points.size(); ++i) {
            RC_ASSERT(MzEqualPoints(points[i], transform.transformPoint(before[i])));
        }
    }));
}

TEST(AffineTransform, SizesArePositiveUnderAHalfTurn) {
    MzAffineTransform transform = with({1, 0, 0, 1, 50, 60});
    transform.rotateByDegrees(180);
    const MzSize size = transform.transformSize({1, 1});
    EXPECT_GT(size.width, 0);
    EXPECT_GT(size.height, 0);
    EXPECT_NEAR(size.width, 1, 1e-6);
    EXPECT_NEAR(size.height, 1, 1e-6);
}

TEST(AffineTransform, SizesTakeTheAbsoluteValueOfTheSum) {
    const MzSize size = with({1, -2, -3, 4, 9, 9}).transformSize({5, 6});
    EXPECT_EQ(size.width, 13);   // |5 - 18|
    EXPECT_EQ(size.height, 14);  // |-10 + 24|
}

TEST(AffineTransform, RectanglesMapByOriginAndSize) {
    const MzRect rect = with({0, 1, -1, 0, 10, 20}).transformRect({{1, 2}, {3, 4}});
    EXPECT_TRUE(MzEqualRects(rect, {{10 - 2, 20 + 1}, {4, 3}}));
}

// --- values and archives ---------------------------------------------------

TEST(AffineTransform, ReadsAndWritesItsSixValues) {
    const platform::AffineTransform values{2, 3, 5, 7, 11, 13};
    MzAffineTransform transform;
    transform.setTransformStruct(values);
    EXPECT_EQ(matrixOf(transform), kEach);
    EXPECT_EQ(transform.transformStruct(), values);
}

TEST(AffineTransform, SinglePrecisionStructIsUnrounded) {
    const MzAffineTransform transform = with({0.1, 0.2, 0.3, 0.4, 0.5, 0.6});
    const platform::AffineTransform values{0.1, 0.2, 0.3, 0.4, 0.5, 0.6};
    EXPECT_EQ(transform.singlePrecisionTransformStruct(), values);
    EXPECT_EQ(transform.nsTransform(), values);
}

TEST(AffineTransform, IgnoresNullArrays) {
    MzAffineTransform transform = with(kEach);
    transform.setMatrix(nullptr);
    transform.getMatrix(nullptr);
    EXPECT_EQ(matrixOf(transform), kEach);
}

TEST(AffineTransform, ArchivesItsMatrixAsOneArrayOfSix) {
    platform::MemoryArchiver archiver;
    with(kEach).encodeWithCoder(archiver);
    ASSERT_EQ(archiver.arrays.size(), 1u);
    EXPECT_EQ(archiver.arrays[0], (std::vector<double>{2, 3, 5, 7, 11, 13}));

    platform::MemoryUnarchiver unarchiver(archiver.arrays);
    const auto decoded = MzAffineTransform::initWithCoder(unarchiver);
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(matrixOf(*decoded), kEach);
}

TEST(AffineTransform, IsNullFromAnArchiveOfSomethingElse) {
    platform::MemoryUnarchiver unarchiver({{1, 2, 3}});
    EXPECT_EQ(MzAffineTransform::initWithCoder(unarchiver), nullptr);
}

}  // namespace
}  // namespace mezalith
