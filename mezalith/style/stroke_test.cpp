// SPDX-License-Identifier: MIT
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/stroke.hpp>

#include <cstring>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Doubles = std::vector<double>;
using Lines = std::vector<std::string>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

MzStroke dashedStroke(Doubles pattern) {
    MzStroke stroke;
    stroke.isDashed = true;
    stroke.lineDashCount = pattern.size();
    stroke.lineDash = std::move(pattern);
    return stroke;
}

Lines applied(const MzStroke& stroke, double scaleFactor) {
    platform::RecordingPort port;
    stroke.applyTo(port, scaleFactor);
    return port.lines();
}

TEST(Stroke, ReachesAsFarAsItsJoinsAndCaps) {
    MzStroke stroke;
    EXPECT_EQ(stroke.reach(3), 3);
    stroke.lineCap = 2;
    EXPECT_NEAR(stroke.reach(1), 1.4142, 1e-4);
    stroke.lineJoin = 0;
    EXPECT_EQ(stroke.reach(1), 10);
    stroke.lineJoin = 7;
    stroke.lineCap = 7;
    EXPECT_EQ(stroke.reach(1), 10) << "may be those of the port";
    stroke.strokeWidth = -1;
    EXPECT_EQ(stroke.reach(1), 0);
}

Doubles used(const MzStroke& stroke) {
    return {stroke.dashPattern().begin(), stroke.dashPattern().end()};
}

testing::KeyedStore archived(const MzStroke& stroke) {
    testing::KeyedStore store;
    stroke.encodeWithCoder(store);
    return store;
}

/// An archive with this count and pattern.
testing::KeyedStore storeWithDash(std::int32_t count, const Doubles& pattern,
                                  std::size_t bytesTooFew = 0) {
    testing::KeyedStore store;
    store.encodeInt(count, "lineDashCount");
    const auto bytes = std::as_bytes(std::span(pattern));
    store.encodeBytes(bytes.first(bytes.size() - bytesTooFew), "lineDash");
    return store;
}

// --- on the port

TEST(Stroke, SetsCapJoinWidthAndASolidLineInThisOrder) {
    MzStroke stroke;
    stroke.lineCap = 2;
    stroke.lineJoin = 0;
    EXPECT_EQ(applied(stroke, 1),
              (Lines{"setLineCap 2", "setLineJoin 0", "setLineWidth 2", "setLineDash 0 solid"}));
}

TEST(Stroke, MultipliesWidthDashesAndOffsetByTheScaleFactor) {
    MzStroke stroke = dashedStroke({4, 1.5});
    stroke.lineDashOffset = 3;
    EXPECT_EQ(applied(stroke, 2),
              (Lines{"setLineCap 1", "setLineJoin 1", "setLineWidth 4", "setLineDash 6 [8 3]"}));
    EXPECT_EQ(stroke.lineDash, (Doubles{4, 1.5}));
}

TEST(Stroke, WidensTheWidthBeforeItIsScaled) {
    MzStroke stroke;
    stroke.strokeWidth = 0.1F;
    EXPECT_EQ(applied(stroke, 3)[2], "setLineWidth 0.30000000447034836");
}

TEST(Stroke, IsSolidUnlessAskedToBeDashed) {
    MzStroke stroke = dashedStroke({4, 1});
    stroke.lineDashOffset = 3;
    stroke.isDashed = false;
    EXPECT_EQ(applied(stroke, 2).back(), "setLineDash 0 solid");
}

TEST(Stroke, IsSolidWithACountOfZeroOrWithoutAPattern) {
    MzStroke withoutCount = dashedStroke({4, 1});
    withoutCount.lineDashCount = 0;
    EXPECT_EQ(applied(withoutCount, 1).back(), "setLineDash 0 solid");
    MzStroke withoutPattern = dashedStroke({});
    withoutPattern.lineDashCount = 4;
    withoutPattern.lineDashOffset = 3;
    EXPECT_EQ(applied(withoutPattern, 1).back(), "setLineDash 0 solid");
}

TEST(Stroke, UsesTheEntriesThatAreCountedAndThere) {
    MzStroke stroke = dashedStroke({4, 1, 2, 1});
    stroke.lineDashCount = 2;
    EXPECT_EQ(applied(stroke, 1).back(), "setLineDash 0 [4 1]");
    stroke.lineDashCount = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(applied(stroke, 1).back(), "setLineDash 0 [4 1 2 1]");
}

TEST(Stroke, HandsUnknownCapsAndJoinsToThePort) {
    MzStroke stroke;
    stroke.lineCap = 7;
    stroke.lineJoin = 9;
    const Lines lines = applied(stroke, 1);
    EXPECT_EQ(lines[0], "setLineCap 7");
    EXPECT_EQ(lines[1], "setLineJoin 9");
}

// --- copies and comparison

TEST(Stroke, CopiesThePatternInUseWithItsCount) {
    MzStroke source = dashedStroke({4, 1, 2, 1});
    source.lineDashCount = 2;
    source.strokeWidth = 3;
    source.lineJoin = 2;
    source.lineCap = 0;
    source.lineDashOffset = 0.25;
    MzStroke copy;
    copy.copyFrom(source);
    EXPECT_TRUE(copy.isEqualTo(source));
    EXPECT_TRUE(copy.isDashed);
    EXPECT_EQ(copy.lineDash, (Doubles{4, 1}));
}

TEST(Stroke, CopiesACountBeyondThePattern) {
    MzStroke source = dashedStroke({4, 1});
    source.lineDashCount = 10;
    MzStroke copy;
    copy.copyFrom(source);
    EXPECT_TRUE(copy.isEqualTo(source));
    EXPECT_EQ(copy.lineDash, (Doubles{4, 1}));
}

TEST(Stroke, CopiesNoCountWithoutAPattern) {
    MzStroke source = dashedStroke({});
    source.lineDashCount = 4;
    MzStroke copy;
    copy.copyFrom(source);
    EXPECT_EQ(copy.lineDashCount, 0U);
    copy.lineDashCount = 3;
    copy.copyFrom(source);
    EXPECT_EQ(copy.lineDashCount, 3U);
}

TEST(Stroke, ComparesWidthJoinCapOffsetAndCount) {
    const MzStroke stroke = dashedStroke({4, 1});
    const auto differs = [&](auto change) {
        MzStroke other = stroke;
        change(other);
        return !stroke.isEqualTo(other);
    };
    EXPECT_TRUE(differs([](MzStroke& s) { s.strokeWidth = 2.5F; }));
    EXPECT_TRUE(differs([](MzStroke& s) { s.lineJoin = 0; }));
    EXPECT_TRUE(differs([](MzStroke& s) { s.lineCap = 0; }));
    EXPECT_TRUE(differs([](MzStroke& s) { s.lineDashOffset = 1e-300; }));
    EXPECT_TRUE(differs([](MzStroke& s) { s.lineDashCount = 1; }));
    EXPECT_FALSE(differs([](MzStroke& s) { s.isDashed = false; }));
    EXPECT_FALSE(differs([](MzStroke& s) { s.lineDash = {9, 9}; }));
}

TEST(Stroke, IsUnequalToItselfWithANaN) {
    MzStroke stroke;
    stroke.lineDashOffset = kNaN;
    EXPECT_FALSE(stroke.isEqualTo(stroke));
}

// --- archives

TEST(Stroke, WritesItsKeysInOrder) {
    EXPECT_EQ(archived(dashedStroke({4, 1})).layout(),
              (Lines{"int lineJoin", "int lineCap", "float lineDashOffset", "int lineDashCount",
                     "bool isDashed", "bytes lineDash"}));
}

TEST(Stroke, WritesThePatternAsNativeDoubles) {
    const auto bytes = archived(dashedStroke({4, 1})).decodeBytes("lineDash");
    ASSERT_EQ(bytes.size(), 16U);
    double entries[2];
    std::memcpy(entries, bytes.data(), sizeof entries);
    EXPECT_EQ(entries[0], 4);
    EXPECT_EQ(entries[1], 1);
}

TEST(Stroke, WritesTheEntriesThatAreCountedAndThere) {
    MzStroke stroke = dashedStroke({4, 1});
    stroke.lineDashCount = 1;
    EXPECT_EQ(archived(stroke).decodeBytes("lineDash").size(), 8U);
    stroke.lineDashCount = 1'000'000'000'000;
    EXPECT_EQ(archived(stroke).decodeBytes("lineDash").size(), 16U);
    EXPECT_EQ(archived(stroke).decodeInt("lineDashCount"), 2);
}

TEST(Stroke, KeepsTheCountOfAPatternThatWasTakenAway) {
    MzStroke stroke = dashedStroke({});
    stroke.lineDashCount = 4;
    EXPECT_EQ(archived(stroke).decodeInt("lineDashCount"), 4);
    MzStroke decoded;
    decoded.decodeWithCoder(archived(stroke));
    EXPECT_EQ(decoded.lineDashCount, 4U);
    EXPECT_TRUE(decoded.lineDash.empty());
}

TEST(Stroke, ReadsWhatItWrote) {
    MzStroke source = dashedStroke({4, 1, 0.1});
    source.lineJoin = 2;
    source.lineCap = 0;
    source.lineDashOffset = 0.5;
    MzStroke decoded;
    decoded.lineDashCount = 9;
    decoded.decodeWithCoder(archived(source));
    EXPECT_TRUE(decoded.isEqualTo(source));
    EXPECT_TRUE(decoded.isDashed);
    EXPECT_EQ(decoded.lineDash, source.lineDash);
}

TEST(Stroke, NarrowsTheDashOffsetInArchives) {
    MzStroke stroke;
    stroke.lineDashOffset = 0.1;
    MzStroke decoded;
    decoded.decodeWithCoder(archived(stroke));
    EXPECT_EQ(decoded.lineDashOffset, double{0.1F});
}

TEST(Stroke, ReadsZerosFromAnEmptyArchive) {
    MzStroke stroke = dashedStroke({4, 1});
    stroke.decodeWithCoder(testing::KeyedStore());
    EXPECT_EQ(stroke.lineJoin, 0U);
    EXPECT_EQ(stroke.lineCap, 0U);
    EXPECT_EQ(stroke.lineDashOffset, 0);
    EXPECT_EQ(stroke.lineDashCount, 0U);
    EXPECT_FALSE(stroke.isDashed);
    EXPECT_TRUE(stroke.lineDash.empty());
}

TEST(Stroke, ReadsNoMoreOfAPatternThanItsBytesHold) {
    MzStroke stroke;
    stroke.decodeWithCoder(storeWithDash(4, {4, 1, 2}, 3));
    EXPECT_EQ(stroke.lineDashCount, 4U);
    EXPECT_EQ(stroke.lineDash, (Doubles{4, 1}));
    stroke.decodeWithCoder(storeWithDash(std::numeric_limits<std::int32_t>::max(), {4, 1}));
    EXPECT_EQ(stroke.lineDash, (Doubles{4, 1}));
}

TEST(Stroke, ReadsNoMoreOfAPatternThanItsCountSays) {
    MzStroke stroke;
    stroke.decodeWithCoder(storeWithDash(1, {4, 1}));
    EXPECT_EQ(stroke.lineDash, (Doubles{4}));
}

TEST(Stroke, TakesANegativeCountForNone) {
    MzStroke stroke;
    stroke.decodeWithCoder(storeWithDash(-2, {4, 1}));
    EXPECT_EQ(stroke.lineDashCount, 0U);
    EXPECT_TRUE(used(stroke).empty());
    EXPECT_TRUE(stroke.lineDash.empty());
}

}  // namespace
}  // namespace mezalith
