// SPDX-License-Identifier: MIT
#include "host/parts.hpp"

#include "host/wkb_file.hpp"
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const std::string kGood = MEZALITH_SOURCE_DIR "/data/map/wkb/";
const std::string kBad = MEZALITH_SOURCE_DIR "/tests/data/bad/wkb/";
const test::Model kLine{2, {{{0, 0}, {1, 2}}}, {}};

std::vector<Part> partsOfModel(const test::Model& model) {
    return partsOf(*readWKB(test::bytesOf(model)).geometry.record());
}

std::vector<Part> partsOfFile(const std::string& path) {
    return partsOf(*readWKB(readFile(path)).geometry.record());
}

TEST(PartsOf, TakesCollectionsAndMultiLineStringsApart) {
    const test::Model lines{5, {kLine.runs[0], kLine.runs[0]}, {}};
    const test::Model points{4, {{{1, 1}, {2, 2}}}, {}};
    const test::Model inner{7, {}, {{1, {{{5, 6}}}, {}}}};
    const auto parts = partsOfModel({7, {}, {lines, points, inner}});
    ASSERT_EQ(parts.size(), 4u);
    EXPECT_EQ(parts[0].form, Form::Line);
    EXPECT_EQ(parts[1].form, Form::Line);
    EXPECT_EQ(parts[2].form, Form::Points);
    EXPECT_EQ(parts[2].geometry->geometryType(), 4u);
    EXPECT_EQ(parts[3].form, Form::Points);
    EXPECT_EQ(parts[3].geometry->geometryType(), 1u);
}

TEST(PartsOf, MakesAMultiPointOfALine) {
    const auto parts = partsOfModel(kLine);
    ASSERT_EQ(parts.size(), 1u);
    ASSERT_EQ(parts[0].geometry->geometryType(), 4u);
    const auto* geometry = static_cast<const MzMultiPointGeometry*>(parts[0].geometry.get());
    ASSERT_EQ(geometry->multiPointGeometry()->count, 2u);
    EXPECT_EQ(geometry->multiPointGeometry()->points[1].y, 2);
}

TEST(PartsOf, KeepsPolygonsWholeAndLeavesOutWhatHasNoPoints) {
    const auto parts = partsOfFile(kGood + "multipolygon-norway-be.wkb");
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].form, Form::Area);
    EXPECT_EQ(parts[0].geometry->leafNodes().size(), 4u);
    for (const char* name : {"empty-linestring.wkb", "empty-multipoint.wkb", "empty-polygon.wkb",
                             "empty-multipolygon.wkb"}) {
        EXPECT_TRUE(partsOfFile(kBad + name).empty()) << name;
    }
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(partsOfModel({1, {{{kNaN, kNaN}}}, {}}).empty());
}

}  // namespace
}  // namespace mezalith::host
