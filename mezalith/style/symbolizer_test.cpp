// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using testing::Lines;
using testing::TestDrawContext;
using testing::TestFeature;

/// A symbolizer with a code, key paths and an opinion of its own.
class Custom : public MzSymbolizer {
  public:
    explicit Custom(std::uint32_t type = 1) : type_(type) {}
    std::uint32_t symbolizerType() const override { return type_; }
    std::vector<std::string> drawPropertyKeyPaths() const override { return {"b", "a"}; }

    void set(std::string_view key, int value) { setProperty(key, value_, value); }
    void touch() {
        changeValues({"a", "b", "c"}, [] {});
    }
    static std::shared_ptr<MzGeometry> visible(const MzSpatialObjectDrawAdditions* object,
                                               const MzDrawContext* context) {
        return visibleGeometry(object, context);
    }
    static platform::GraphicsPort* port() { return currentGraphicsPort(); }
    int value() const { return value_; }

  protected:
    std::shared_ptr<MzSymbolizer> newInstance() const override {
        return std::make_shared<Custom>(type_);
    }
    void copyPropertiesTo(MzSymbolizer& copy) const override {
        static_cast<Custom&>(copy).value_ = value_;
    }
    bool hasEqualProperties(const MzSymbolizer&) const override { return true; }

  private:
    std::uint32_t type_;
    int value_ = 0;
};

// --- the base class

TEST(Symbolizer, HasTypeZeroAndNoKeyPaths) {
    const MzSymbolizer symbolizer;
    EXPECT_EQ(symbolizer.symbolizerType(), 0U);
    EXPECT_TRUE(symbolizer.drawPropertyKeyPaths().empty());
    EXPECT_TRUE(symbolizer.keyPathsForValuesAffectingValueForKey("drawProperty").empty());
}

TEST(Symbolizer, DrawsNothingAndIsNeverHit) {
    MzSymbolizer symbolizer;
    TestDrawContext context;
    const auto geometry = MzPointGeometry::initWithPoint({3, 4});
    EXPECT_EQ(testing::drawn(symbolizer, geometry, context, true), Lines{});
    TestFeature feature(geometry);
    EXPECT_FALSE(symbolizer.isSpatialObject(&feature, {3, 4}, &context, true));
    symbolizer.didRemoveFromContext(nullptr, nullptr);
}

TEST(Symbolizer, HasFixedTypeCodes) {
    EXPECT_EQ(MzPointSymbolizer().symbolizerType(), 0U);
    EXPECT_EQ(MzLineSymbolizer().symbolizerType(), 1U);
    EXPECT_EQ(MzPolygonSymbolizer().symbolizerType(), 2U);
}

TEST(Symbolizer, CopiesToItsOwnClass) {
    Custom custom(5);
    custom.set("a", 7);
    const auto copy = std::dynamic_pointer_cast<Custom>(custom.copy());
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy.get(), &custom);
    EXPECT_EQ(copy->symbolizerType(), 5U);
    EXPECT_EQ(copy->value(), 7);
    EXPECT_NE(MzSymbolizer().copy(), nullptr);
}

// --- equality

TEST(Symbolizer, IsEqualToItselfWhateverItsClassSays) {
    const MzSymbolizer base;
    EXPECT_TRUE(base.isEqualToSymbolizer(&base));
    MzLineSymbolizer line;
    line.setStrokeColor(nullptr);
    EXPECT_FALSE(line.isEqualToLineSymbolizer(&line));
    EXPECT_TRUE(line.isEqualToSymbolizer(&line));
}

TEST(Symbolizer, IsUnequalToNothingAndToAnotherType) {
    const MzLineSymbolizer line;
    const MzPolygonSymbolizer polygon;
    EXPECT_FALSE(line.isEqualToSymbolizer(nullptr));
    EXPECT_FALSE(line.isEqualToSymbolizer(&polygon));
    EXPECT_FALSE(polygon.isEqualToSymbolizer(&line));
    const Custom one(1);
    const Custom two(2);
    EXPECT_FALSE(one.isEqualToSymbolizer(&two));
}

TEST(Symbolizer, ComparesByTheClassForItsType) {
    const MzPointSymbolizer point;
    const MzLineSymbolizer line;
    const MzPolygonSymbolizer polygon;
    EXPECT_TRUE(point.isEqualToSymbolizer(point.copy().get()));
    EXPECT_TRUE(line.isEqualToSymbolizer(line.copy().get()));
    EXPECT_TRUE(polygon.isEqualToSymbolizer(polygon.copy().get()));
    const auto wider = line.copy();
    wider->setStrokeWidth(3);
    EXPECT_FALSE(line.isEqualToSymbolizer(wider.get()));
}

TEST(Symbolizer, IsUnequalToAnotherClassOfTheSameType) {
    const MzSymbolizer base;
    const MzSymbolizer otherBase;
    const MzPointSymbolizer point;
    const Custom custom(1);
    EXPECT_FALSE(base.isEqualToSymbolizer(&otherBase));
    EXPECT_FALSE(base.isEqualToSymbolizer(&point));
    EXPECT_FALSE(point.isEqualToSymbolizer(&base));
    EXPECT_FALSE(MzLineSymbolizer().isEqualToSymbolizer(&custom));
}

TEST(Symbolizer, ComparesNoTypesBeyondTwo) {
    EXPECT_TRUE(Custom(2).isEqualToSymbolizer(std::make_shared<Custom>(2).get()));
    EXPECT_FALSE(Custom(3).isEqualToSymbolizer(std::make_shared<Custom>(3).get()));
    EXPECT_FALSE(Custom(14561).isEqualToSymbolizer(std::make_shared<Custom>(14561).get()));
}

// --- change notification

TEST(Symbolizer, DerivesDrawPropertyFromItsKeyPaths) {
    const Custom custom;
    EXPECT_EQ(custom.keyPathsForValuesAffectingValueForKey("drawProperty"),
              (std::set<std::string>{"a", "b"}));
    EXPECT_TRUE(custom.keyPathsForValuesAffectingValueForKey("a").empty());
}

TEST(Symbolizer, AnnouncesAPropertyAndDrawPropertyWithIt) {
    Custom custom;
    testing::ObservationRecorder log;
    log.observe(custom, {"drawProperty"});
    custom.set("c", 1);
    EXPECT_EQ(log.lines, Lines{});
    custom.set("a", 2);
    EXPECT_EQ(log.lines, (Lines{"will drawProperty", "did drawProperty"}));
    EXPECT_EQ(custom.value(), 2);
}

TEST(Symbolizer, AnnouncesAPropertyAlsoWhenItsValueStays) {
    Custom custom;
    testing::ObservationRecorder log;
    log.observe(custom, {"a"});
    custom.set("a", custom.value());
    EXPECT_EQ(log.lines, (Lines{"will a", "did a"}));
}

TEST(Symbolizer, AnnouncesSeveralKeysInOrderAndBack) {
    Custom custom;
    testing::ObservationRecorder log;
    log.observe(custom, {"a", "b", "c"});
    custom.touch();
    EXPECT_EQ(log.lines, (Lines{"will a", "will b", "will c", "did c", "did b", "did a"}));
}

// --- the road to the geometry

TEST(Symbolizer, SeesProjectedGeometryInsideTheClippingRectangle) {
    TestDrawContext context;
    const auto inside = MzPointGeometry::initWithPoint({3, 4});
    TestFeature feature(inside);
    EXPECT_EQ(Custom::visible(&feature, &context),
              inside->geometryWithProjection(context.projection));
    TestFeature outside(MzPointGeometry::initWithPoint({2000, 4}));
    EXPECT_EQ(Custom::visible(&outside, &context), nullptr);
}

TEST(Symbolizer, TakesNoRegionForTheZeroRectangle) {
    TestDrawContext context;
    context.region = nullptr;
    TestFeature point(MzPointGeometry::initWithPoint({0, 0}));
    EXPECT_EQ(Custom::visible(&point, &context), nullptr);
    TestFeature around(testing::multiPoint({{-1, -1}, {1, 1}}));
    EXPECT_NE(Custom::visible(&around, &context), nullptr);
}

TEST(Symbolizer, SeesNothingWhereSomethingIsMissing) {
    TestDrawContext context;
    TestFeature feature(MzPointGeometry::initWithPoint({3, 4}));
    TestFeature empty(nullptr);
    EXPECT_EQ(Custom::visible(nullptr, &context), nullptr);
    EXPECT_EQ(Custom::visible(&feature, nullptr), nullptr);
    EXPECT_EQ(Custom::visible(&empty, &context), nullptr);
    context.projection = nullptr;
    EXPECT_EQ(Custom::visible(&feature, &context), nullptr);
}

TEST(Symbolizer, DrawsToTheCurrentPort) {
    EXPECT_EQ(Custom::port(), nullptr);
    const platform::GraphicsContext withoutPort(nullptr);
    EXPECT_EQ(Custom::port(), nullptr);
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    EXPECT_EQ(Custom::port(), &port);
}

}  // namespace
}  // namespace mezalith
