// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_builder.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

void addAll(MzWKBBuilder& builder, const Points& points) {
    for (const MzPoint p : points) builder.add(p);
}

void build(MzWKBBuilder& builder, const Model& model) {
    builder.begin(model.type);
    const std::uint32_t member = MzMemberTypeOf(model.type);
    for (const Points& run : model.runs) {
        if (model.type == MzGeometryTypePolygon) builder.beginRing();
        if (member == MzGeometryTypeLineString) builder.begin(member);
        if (member == MzGeometryTypePoint) {
            for (const MzPoint p : run) build(builder, {member, {{p}}, {}});
        } else {
            addAll(builder, run);
        }
        if (model.type == MzGeometryTypePolygon || member == MzGeometryTypeLineString) {
            builder.end();
        }
    }
    for (const Model& one : model.members) build(builder, one);
    builder.end();
}

TEST(WKBBuilder, CountsWhatItIsGiven) {
    MzWKBBuilder builder;
    builder.begin(MzGeometryTypePolygon);
    for (const Points& ring : {square(0, 0, 4), square(1, 1, 1)}) {
        builder.beginRing();
        addAll(builder, ring);
        builder.end();
    }
    builder.end();
    EXPECT_EQ(builder.bytes(),
              WkbWriter().polygon(kLittle, {square(0, 0, 4), square(1, 1, 1)}).bytes());
}

TEST(WKBBuilder, BuildsEveryGeometry) {
    const Dice dice = diceOf(5);
    for (int i = 0; i < 1000; ++i) {
        const Model model = ModelMaker{dice}.make();
        MzWKBBuilder builder;
        build(builder, model);
        ASSERT_EQ(builder.bytes(), bytesOf(model)) << i;
    }
}

}  // namespace
}  // namespace mezalith
