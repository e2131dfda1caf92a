// SPDX-License-Identifier: MIT
#include <mezalith/geometry/records.hpp>

#include <array>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();

// Two polygons: one of two rings with 4 and 5 points, one of a ring with 3.
struct Polygons {
    std::array<MzPoint, 5> points{};
    std::array<MzLinearRing, 2> first{{{4, points.data()}, {5, points.data()}}};
    std::array<MzLinearRing, 1> second{{{3, points.data()}}};
    std::array<MzPolygon, 2> both{{{2, first.data()}, {1, second.data()}}};
};

TEST(RecordSizes, OfAPointIs16) { EXPECT_EQ(sizeOfMzPoint(), 16u); }

TEST(RecordSizes, OfPointsAreAHeaderAnd16Each) {
    const MzLineString line{3, nullptr};
    const MzMultiPoint points{5, nullptr};
    const MzMultiPoint none{0, nullptr};
    EXPECT_EQ(sizeOfMzLineString(&line), 16u + 48u);
    EXPECT_EQ(sizeOfMzMultiPoint(&points), 16u + 80u);
    EXPECT_EQ(sizeOfMzMultiPoint(&none), 16u);
}

TEST(RecordSizes, DoNotWrapAt32Bits) {
    const MzMultiPoint most{kMost, nullptr};
    EXPECT_EQ(sizeOfMzMultiPoint(&most), 16u + 16u * std::uint64_t{kMost});
}

TEST(RecordSizes, OfAPolygonCountEachRingHeaderAndItsPoints) {
    const Polygons polygons;
    EXPECT_EQ(sizeOfMzPolygon(polygons.both.data()), 16u + 2 * 16u + (4 + 5) * 16u);
    EXPECT_EQ(sizeOfMzPolygon(&polygons.both[1]), 16u + 16u + 3 * 16u);
}

TEST(RecordSizes, OfAMultiLineStringCountEachHeaderTwice) {
    std::array<MzLineString, 2> lines{{{2, nullptr}, {3, nullptr}}};
    const MzMultiLineString multi{2, lines.data()};
    EXPECT_EQ(sizeOfMzMultiLineString(&multi), 16u + 2 * 16u + (16u + 32u) + (16u + 48u));
}

TEST(RecordSizes, OfAMultiPolygonCountEachPolygonHeaderTwice) {
    Polygons polygons;
    const MzMultiPolygon multi{2, polygons.both.data()};
    EXPECT_EQ(sizeOfMzMultiPolygon(&multi),
              16u + 2 * 16u + (16u + 32u + 9 * 16u) + (16u + 16u + 3 * 16u));
}

TEST(RecordSizes, CountNullArraysOfMembersAsEmpty) {
    const MzPolygon polygon{7, nullptr};
    const MzMultiLineString lines{7, nullptr};
    const MzMultiPolygon polygons{7, nullptr};
    EXPECT_EQ(sizeOfMzPolygon(&polygon), 16u);
    EXPECT_EQ(sizeOfMzMultiLineString(&lines), 16u);
    EXPECT_EQ(sizeOfMzMultiPolygon(&polygons), 16u);
}

TEST(RecordSizes, OfNullAre0) {
    EXPECT_EQ(sizeOfMzLineString(nullptr), 0u);
    EXPECT_EQ(sizeOfMzMultiPoint(nullptr), 0u);
    EXPECT_EQ(sizeOfMzPolygon(nullptr), 0u);
    EXPECT_EQ(sizeOfMzMultiLineString(nullptr), 0u);
    EXPECT_EQ(sizeOfMzMultiPolygon(nullptr), 0u);
}

TEST(RecordSpans, ShowTheArrays) {
    Polygons polygons;
    const MzMultiPolygon multi{2, polygons.both.data()};
    const auto members = polygonsOf(&multi);
    ASSERT_EQ(members.size(), 2u);
    ASSERT_EQ(ringsOf(members.data()).size(), 2u);
    EXPECT_EQ(pointsOf(&ringsOf(members.data())[1]).size(), 5u);
    EXPECT_EQ(pointsOf(ringsOf(&members[1]).data()).data(), polygons.points.data());

    MzLineString line{4, polygons.points.data()};
    const MzMultiLineString lines{1, &line};
    EXPECT_EQ(lineStringsOf(&lines).data(), &line);
}

TEST(RecordSpans, AreEmptyForNullArraysAndRecords) {
    const MzLinearRing ring{3, nullptr};
    const MzPolygon polygon{3, nullptr};
    const MzMultiLineString lines{3, nullptr};
    const MzMultiPolygon polygons{3, nullptr};
    EXPECT_TRUE(pointsOf(&ring).empty());
    EXPECT_TRUE(ringsOf(&polygon).empty());
    EXPECT_TRUE(lineStringsOf(&lines).empty());
    EXPECT_TRUE(polygonsOf(&polygons).empty());
    EXPECT_TRUE(pointsOf<MzMultiPoint>(nullptr).empty());
    EXPECT_TRUE(ringsOf(nullptr).empty());
    EXPECT_TRUE(lineStringsOf(nullptr).empty());
    EXPECT_TRUE(polygonsOf(nullptr).empty());
}

}  // namespace
}  // namespace mezalith
