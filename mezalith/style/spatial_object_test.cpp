// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/style/spatial_object.hpp>
#include <mezalith/style/style.hpp>
#include <mezalith/style/testing.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using testing::Lines;
using testing::TestDrawContext;
using testing::TestFeature;

/// Writes what it is told, with the point and whether object and context came through.
class TellingStyle : public MzStyle {
  public:
    Lines lines;
    const MzSpatialObjectDrawAdditions* expectedObject = nullptr;
    const MzDrawContext* expectedContext = nullptr;

    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override {
        note(selected ? "draw selected" : "draw", object, context);
    }
    bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                         MzDrawContext* context, bool selected) override {
        note(selected ? "test selected" : "test", object, context, point);
        return true;
    }
    void didRemoveFromContext(MzDrawContext* context,
                              MzSpatialObjectDrawAdditions* object) override {
        note("removed", object, context);
    }
    void mouseEntered(const platform::Event& event, MzPoint point,
                      MzSpatialObjectDrawAdditions* object, MzDrawContext* context) override {
        note("entered " + std::to_string(event.buttonNumber), object, context, point);
    }
    void mouseExited(const platform::Event& event, MzPoint point,
                     MzSpatialObjectDrawAdditions* object, MzDrawContext* context) override {
        note("exited " + std::to_string(event.buttonNumber), object, context, point);
    }
    void mouseMoved(const platform::Event& event, MzPoint point,
                    MzSpatialObjectDrawAdditions* object, MzDrawContext* context) override {
        note("moved " + std::to_string(event.buttonNumber), object, context, point);
    }

  private:
    void note(const std::string& what, const MzSpatialObjectDrawAdditions* object,
              const MzDrawContext* context, MzPoint point = {0, 0}) {
        const bool same = object == expectedObject && context == expectedContext;
        lines.push_back(what + " " + NSStringFromMzPoint(point) + (same ? "" : " of others"));
    }
};

/// Answers a geometry and a style without being a spatial object.
class Lookalike : public MzSpatialObjectDrawAdditions {
  public:
    explicit Lookalike(std::shared_ptr<MzStyle> style) : style_(std::move(style)) {}
    std::shared_ptr<MzGeometry> geometry() const override {
        return MzPointGeometry::initWithPoint({0, 0});
    }
    std::shared_ptr<MzStyle> style() const override { return style_; }

  private:
    std::shared_ptr<MzStyle> style_;
};

struct Scene {
    TestDrawContext context;
    std::shared_ptr<TellingStyle> style = std::make_shared<TellingStyle>();
    TestFeature feature{MzPointGeometry::initWithPoint({0, 0}), style};

    Scene() { expect(feature); }
    void expect(const MzSpatialObjectDrawAdditions& object) {
        style->expectedObject = &object;
        style->expectedContext = &context;
    }
};

TEST(SpatialObject, ForwardsDrawingAndTestsToItsStyle) {
    Scene scene;
    scene.feature.drawInContext(&scene.context, false);
    scene.feature.drawInContext(&scene.context, true);
    EXPECT_TRUE(scene.feature.isAtPoint({3, 4}, &scene.context, false));
    EXPECT_TRUE(scene.feature.isAtPoint({5, 6}, &scene.context, true));
    scene.feature.didRemoveFromContext(&scene.context);
    EXPECT_EQ(scene.style->lines, (Lines{"draw {0, 0}", "draw selected {0, 0}", "test {3, 4}",
                                         "test selected {5, 6}", "removed {0, 0}"}));
}

TEST(SpatialObject, ForwardsTheMouseToItsStyle) {
    Scene scene;
    const platform::Event event{.buttonNumber = 2};
    scene.feature.mouseEntered(event, {1, 2}, &scene.context);
    scene.feature.mouseMoved(event, {3, 4}, &scene.context);
    scene.feature.mouseExited(event, {5, 6}, &scene.context);
    EXPECT_EQ(scene.style->lines, (Lines{"entered 2 {1, 2}", "moved 2 {3, 4}", "exited 2 {5, 6}"}));
}

TEST(SpatialObject, TellsItsStyleNothingWhenAdded) {
    Scene scene;
    scene.feature.didAddToContext(&scene.context);
    EXPECT_EQ(scene.style->lines, Lines{});
}

TEST(SpatialObject, DrawsNoLookalikeButTestsAndTellsIt) {
    Scene scene;
    Lookalike lookalike(scene.style);
    scene.expect(lookalike);
    lookalike.drawInContext(&scene.context, false);
    EXPECT_EQ(scene.style->lines, Lines{});
    EXPECT_TRUE(lookalike.isAtPoint({3, 4}, &scene.context, false));
    lookalike.mouseMoved({}, {1, 2}, &scene.context);
    lookalike.didRemoveFromContext(&scene.context);
    EXPECT_EQ(scene.style->lines, (Lines{"test {3, 4}", "moved 0 {1, 2}", "removed {0, 0}"}));
}

TEST(SpatialObject, HasNoEventOptionsWithAStyle) {
    TestFeature feature(nullptr, std::make_shared<MzStyle>());
    EXPECT_EQ(feature.spatialObjectEventOptions(), 0U);
}

TEST(SpatialObject, DoesNothingAndAnswersNoWithoutAStyle) {
    Scene scene;
    scene.feature.styleValue = nullptr;
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    scene.feature.didAddToContext(&scene.context);
    scene.feature.drawInContext(&scene.context, true);
    EXPECT_FALSE(scene.feature.isAtPoint({0, 0}, &scene.context, true));
    EXPECT_EQ(scene.feature.spatialObjectEventOptions(), 0U);
    scene.feature.mouseEntered({}, {0, 0}, &scene.context);
    scene.feature.mouseMoved({}, {0, 0}, &scene.context);
    scene.feature.mouseExited({}, {0, 0}, &scene.context);
    scene.feature.didRemoveFromContext(&scene.context);
    EXPECT_EQ(port.lines(), Lines{});
    EXPECT_EQ(scene.style->lines, Lines{});
}

TEST(SpatialObject, AnswersItsGeometryForAnyResolution) {
    const TestFeature feature(MzPointGeometry::initWithPoint({3, 4}));
    EXPECT_EQ(feature.geometryForResolution(10), feature.geometry());
}

TEST(SpatialObject, AnswersForTheNamesOfItsOperations) {
    const auto geometry = MzPointGeometry::initWithPoint({3, 4});
    TestFeature feature(geometry, std::make_shared<MzStyle>());
    feature.name = "Oslo";
    feature.kindName = "city";
    using platform::KeyedValue;
    EXPECT_EQ(feature.valueForKey("featureName"), KeyedValue(std::string("Oslo")));
    EXPECT_EQ(feature.valueForKey("featureDescription"), KeyedValue(std::string()));
    EXPECT_EQ(feature.valueForKey("kind"), KeyedValue(std::string("city")));
    EXPECT_EQ(feature.valueForKey("allowsInteraction"), KeyedValue(true));
    EXPECT_EQ(feature.valueForKey("propertiesByName"), KeyedValue(&feature.properties));
    using Object = std::shared_ptr<const platform::Object>;
    EXPECT_EQ(feature.valueForKey("geometry"), KeyedValue(Object(geometry)));
    EXPECT_EQ(feature.valueForKey("style"), KeyedValue(Object(feature.styleValue)));
    EXPECT_EQ(feature.valueForKey("objectOwner"), KeyedValue());
}

TEST(SpatialObject, AnswersNullForPartsItHasNot) {
    const TestFeature feature(nullptr);
    EXPECT_EQ(feature.valueForKey("geometry"), platform::KeyedValue());
    EXPECT_EQ(feature.valueForKey("style"), platform::KeyedValue());
}

TEST(SpatialObject, AnswersForItsAttributesBehindItsOperations) {
    TestFeature feature(nullptr);
    feature.kindName = "city";
    feature.properties = {{"kind", std::string("town")}, {"population", std::int64_t{700}}};
    EXPECT_EQ(feature.valueForKey("population"), platform::KeyedValue(std::int64_t{700}));
    EXPECT_EQ(feature.valueForKey("kind"), platform::KeyedValue(std::string("city")));
    EXPECT_EQ(feature.valueForKey("mayor"), platform::KeyedValue());
}

TEST(SpatialObject, OwnsNoOwner) {
    struct Owned : TestFeature {
        using TestFeature::TestFeature;
        platform::Object* objectOwner() const override { return owner; }
        platform::Object* owner = nullptr;
    };
    TestFeature owner(nullptr);
    Owned feature(nullptr);
    feature.owner = &owner;
    const auto answer = feature.valueForKey("objectOwner");
    const auto& object = std::get<std::shared_ptr<const platform::Object>>(answer);
    EXPECT_EQ(object.get(), &owner);
    EXPECT_EQ(object.use_count(), 0);
}

TEST(SpatialObject, IsWhatRuleFiltersAreAskedAbout) {
    TestFeature feature(nullptr);
    feature.kindName = "city";
    feature.properties["population"] = std::int64_t{1500000};
    const auto filter = platform::FormatPredicate::predicateWithFormat(
        "kind == 'city' AND propertiesByName.population > 1000000");
    ASSERT_NE(filter, nullptr);
    EXPECT_TRUE(filter->evaluateWithObject(&feature));
    feature.properties["population"] = std::int64_t{1000000};
    EXPECT_FALSE(filter->evaluateWithObject(&feature));
}

TEST(SpatialObject, AnnouncesDrawingUnderThisKey) {
    EXPECT_STREQ(MzDrawPropertyKey, "drawProperty");
}

TEST(SpatialObject, DrawsThroughTheStyleOfItsGeometry) {
    TestDrawContext context;
    const auto geometry = MzPointGeometry::initWithPoint({0, 0});
    TestFeature feature(geometry, MzStyle::styleForGeometry(geometry.get()));
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    feature.drawInContext(&context, false);
    EXPECT_EQ(testing::only("drawLayerAtPoint", port.lines()), Lines{"drawLayerAtPoint 1 0 0"});
    EXPECT_TRUE(feature.isAtPoint({3, 1}, &context, false));
}

}  // namespace
}  // namespace mezalith
