// SPDX-License-Identifier: MIT
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>
#include <mezalith/style/rule.hpp>
#include <mezalith/style/style.hpp>
#include <mezalith/style/testing.hpp>

#include <cmath>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::InterfaceFile;
using platform::InterfaceOwner;
using platform::View;
using testing::Lines;
using testing::multiPoint;
using testing::ObservationRecorder;
using testing::TestDrawContext;
using testing::TestFeature;

/// A program with an interface file "card", whose view is 200 by 100.
class BubbleSymbolizer : public ::testing::Test {
  protected:
    BubbleSymbolizer() {
        InterfaceFile::setLoader("card", [this](const InterfaceOwner& owner) {
            represented = owner.representedObject();
            return std::make_shared<View>(MzRect{{7, 8}, {200, 100}});
        });
        symbolizer = MzBubbleSymbolizer::initWithNib("card", {});
    }
    ~BubbleSymbolizer() override { InterfaceFile::setLoader("card", nullptr); }

    void draw(const std::shared_ptr<MzGeometry>& geometry, bool selected = false) {
        TestFeature feature(geometry);
        symbolizer->drawSpatialObject(&feature, &context, selected);
    }
    void drawAt(MzPoint point) { draw(MzPointGeometry::initWithPoint(point)); }
    View& bubble() const { return *symbolizer->bubbleView(); }
    bool isShown() const { return bubble().superview() == &context.view; }
    MzPoint origin() const { return bubble().frame().origin; }

    std::shared_ptr<platform::Object> represented;
    TestDrawContext context;
    std::shared_ptr<MzBubbleSymbolizer> symbolizer;
};

#define EXPECT_RECT(actual, ...) \
    EXPECT_TRUE(MzEqualRects(actual, MzRect __VA_ARGS__)) << NSStringFromMzRect(actual)

TEST_F(BubbleSymbolizer, HasNoViewsByItself) {
    const MzBubbleSymbolizer plain;
    EXPECT_TRUE(MzEqualPoints(plain.offset(), {0, 0}));
    EXPECT_RECT(plain.bubbleRect(), {{-25, 25}, {150, 100}});
    EXPECT_EQ(plain.representedObject(), nullptr);
    EXPECT_EQ(plain.view(), nullptr);
    EXPECT_EQ(plain.bubbleView(), nullptr);
    EXPECT_EQ(plain.symbolizerType(), 118166U);
}

// --- the views -------------------------------------------------------------------------------

TEST_F(BubbleSymbolizer, FramesAContentOf200By100) {
    EXPECT_RECT(symbolizer->bubbleView()->frame(), {{0, 0}, {222, 147}});
    EXPECT_RECT(symbolizer->bubbleView()->bubbleRect(), {{1, 26}, {220, 120}});
    EXPECT_TRUE(MzEqualPoints(symbolizer->bubbleView()->stemOrigin(), {25, 0}));
    EXPECT_RECT(symbolizer->view()->frame(), {{11, 36}, {200, 100}});
    EXPECT_EQ(bubble().subviews(), (View::Views{symbolizer->view()}));
    EXPECT_EQ(bubble().superview(), nullptr);
    EXPECT_TRUE(MzEqualPoints(symbolizer->offset(), {0, 0}));
    EXPECT_RECT(symbolizer->bubbleRect(), {{0, 0}, {0, 0}});
}

TEST_F(BubbleSymbolizer, FramesNothingWhereThereIsNoInterfaceFile) {
    const auto empty = MzBubbleSymbolizer::initWithNib("no such file", {});
    EXPECT_EQ(empty->view(), nullptr);
    EXPECT_RECT(empty->bubbleView()->frame(), {{0, 0}, {22, 47}});
    EXPECT_RECT(empty->bubbleView()->bubbleRect(), {{1, 26}, {20, 20}});
    EXPECT_TRUE(empty->bubbleView()->subviews().empty());
}

TEST_F(BubbleSymbolizer, OwnsItsInterfaceFileWithTheObjectItPresents) {
    const auto object = std::make_shared<View>();
    const auto presenting = MzBubbleSymbolizer::initWithNib("card", object);
    EXPECT_EQ(presenting->representedObject(), object);
    EXPECT_EQ(represented, object);
}

// --- showing ---------------------------------------------------------------------------------

TEST_F(BubbleSymbolizer, PutsTheStemAtThePointOfAFeature) {
    drawAt({300, 200});
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(MzEqualPoints(origin(), {275, 200}));
}

TEST_F(BubbleSymbolizer, DisplacesTheStemByTheOffset) {
    symbolizer->setOffset({4, -3});
    symbolizer->bubbleView()->setStemOrigin({20, 5});
    drawAt({300, 200});
    EXPECT_TRUE(MzEqualPoints(origin(), {284, 192}));
}

TEST_F(BubbleSymbolizer, PutsTheStemInViewPoints) {
    context.transform->scaleBy(2);
    drawAt({300, 200});
    EXPECT_TRUE(MzEqualPoints(origin(), {575, 400}));
}

TEST_F(BubbleSymbolizer, IsShownOnceHoweverOftenItIsDrawn) {
    drawAt({300, 200});
    context.addSubview(std::make_shared<View>());
    drawAt({1, 2});
    ASSERT_EQ(context.view.subviews().size(), 2U);
    EXPECT_EQ(context.view.subviews()[0], symbolizer->bubbleView());
    EXPECT_TRUE(MzEqualPoints(origin(), {-24, 2}));
}

TEST_F(BubbleSymbolizer, StaysInTheParentThatItHas) {
    View other;
    other.addSubview(symbolizer->bubbleView());
    drawAt({300, 200});
    EXPECT_EQ(bubble().superview(), &other);
    EXPECT_TRUE(MzEqualPoints(origin(), {275, 200}));
}

TEST_F(BubbleSymbolizer, IsTakenAwayFromACulledFeatureAndShownAgain) {
    drawAt({300, 200});
    drawAt({5000, 0});
    EXPECT_EQ(bubble().superview(), nullptr);
    drawAt({300, 200});
    EXPECT_TRUE(isShown());
}

TEST_F(BubbleSymbolizer, IsTakenAwayWhereThePointIsClipped) {
    drawAt({300, 200});
    drawAt({1000, 0});  // touches the rectangle that the clipped point must lie within
    EXPECT_EQ(bubble().superview(), nullptr);
}

TEST_F(BubbleSymbolizer, IsTakenAwayWithoutAGeometryAFeatureARegionOrAContext) {
    TestFeature feature(MzPointGeometry::initWithPoint({300, 200})), formless(nullptr);
    TestDrawContext withoutRegion;
    withoutRegion.region = nullptr;
    const std::vector<std::pair<TestFeature*, TestDrawContext*>> missing{{&formless, &context},
                                                                         {nullptr, &context},
                                                                         {&feature, &withoutRegion},
                                                                         {&feature, nullptr}};
    for (const auto& [object, view] : missing) {
        drawAt({300, 200});
        symbolizer->drawSpatialObject(object, view, false);
        EXPECT_EQ(bubble().superview(), nullptr);
    }
}

TEST_F(BubbleSymbolizer, StandsAtTheOffsetFromTheOriginForMultiPoints) {
    symbolizer->setOffset({40, 30});
    draw(multiPoint({{300, 200}, {310, 210}}));
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(MzEqualPoints(origin(), {15, 30}));
}

TEST_F(BubbleSymbolizer, LeavesTheViewAsItIsForOtherGeometries) {
    const auto area = testing::polygon({{{0, 0}, {9, 0}, {9, 9}}}, context);
    draw(area);
    EXPECT_FALSE(isShown());
    drawAt({300, 200});
    draw(area);
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(MzEqualPoints(origin(), {275, 200}));
}

TEST_F(BubbleSymbolizer, DrawsSelectedFeaturesLikeOthersAndNothingIntoThePort) {
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    draw(MzPointGeometry::initWithPoint({300, 200}), true);
    EXPECT_TRUE(MzEqualPoints(origin(), {275, 200}));
    EXPECT_TRUE(port.lines().empty());
}

TEST_F(BubbleSymbolizer, ShowsNothingWithoutABubble) {
    symbolizer->setBubbleView(nullptr);
    drawAt({300, 200});
    draw(multiPoint({{300, 200}, {310, 210}}));
    drawAt({5000, 0});
    symbolizer->removeView();
    EXPECT_TRUE(context.view.subviews().empty());
}

TEST_F(BubbleSymbolizer, IsNeverHit) {
    TestFeature feature(MzPointGeometry::initWithPoint({300, 200}));
    EXPECT_FALSE(symbolizer->isSpatialObject(&feature, {300, 200}, &context, false));
}

// --- taking away -----------------------------------------------------------------------------

TEST_F(BubbleSymbolizer, KeepsTheBubbleThatItTakesAway) {
    drawAt({300, 200});
    const auto kept = symbolizer->bubbleView();
    symbolizer->removeView();
    symbolizer->removeView();
    EXPECT_EQ(kept->superview(), nullptr);
    EXPECT_EQ(symbolizer->bubbleView(), kept);
}

TEST_F(BubbleSymbolizer, IsTakenAwayWithItsFeature) {
    drawAt({300, 200});
    symbolizer->didRemoveFromContext(&context, nullptr);
    EXPECT_EQ(bubble().superview(), nullptr);
    const auto style = std::make_shared<MzStyle>();
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(symbolizer);
    style->addRule(rule);
    TestFeature feature(MzPointGeometry::initWithPoint({300, 200}), style);
    feature.drawInContext(&context, false);
    EXPECT_TRUE(isShown());
    feature.didRemoveFromContext(&context);
    EXPECT_EQ(bubble().superview(), nullptr);
}

TEST_F(BubbleSymbolizer, IsTakenAwayWhenItsRuleDropsIt) {
    MzRule rule;
    rule.addSymbolizer(symbolizer);
    drawAt({300, 200});
    rule.removeSymbolizer(symbolizer);
    EXPECT_EQ(bubble().superview(), nullptr);
}

TEST_F(BubbleSymbolizer, IsShownInAnotherViewOnceTheFirstIsGone) {
    auto gone = std::make_unique<TestDrawContext>();
    TestFeature feature(MzPointGeometry::initWithPoint({300, 200}));
    symbolizer->drawSpatialObject(&feature, gone.get(), false);
    EXPECT_EQ(bubble().superview(), &gone->view);
    gone.reset();
    symbolizer->drawSpatialObject(&feature, &context, false);
    EXPECT_TRUE(isShown());
}

TEST_F(BubbleSymbolizer, LeavesItsBubbleToTheViewWhenItEnds) {
    drawAt({300, 200});
    symbolizer.reset();
    EXPECT_EQ(context.view.subviews().size(), 1U);
}

// --- properties ------------------------------------------------------------------------------

TEST_F(BubbleSymbolizer, AnnouncesAChangeOfItsDrawingForTheOffsetAlone) {
    ObservationRecorder recorder;
    recorder.observe(*symbolizer, {MzDrawPropertyKey});
    symbolizer->setOffset({1, 2});
    EXPECT_EQ(recorder.lines, (Lines{"will drawProperty", "did drawProperty"}));
    recorder.lines.clear();
    symbolizer->setBubbleRect({{1, 2}, {3, 4}});
    symbolizer->setRepresentedObject(std::make_shared<View>());
    symbolizer->setView(nullptr);
    symbolizer->setBubbleView(nullptr);
    EXPECT_TRUE(recorder.lines.empty());
}

TEST_F(BubbleSymbolizer, AnnouncesEachOfItsPropertiesAndKeepsIt) {
    ObservationRecorder recorder;
    recorder.observe(*symbolizer,
                     {"offset", "bubbleRect", "representedObject", "view", "bubbleView"});
    const auto object = std::make_shared<View>();
    const auto framed = std::make_shared<MzBubbleView>();
    symbolizer->setOffset({1, 2});
    symbolizer->setBubbleRect({{1, 2}, {3, 4}});
    symbolizer->setRepresentedObject(object);
    symbolizer->setView(object);
    symbolizer->setBubbleView(framed);
    EXPECT_EQ(recorder.lines,
              (Lines{"will offset", "did offset", "will bubbleRect", "did bubbleRect",
                     "will representedObject", "did representedObject", "will view", "did view",
                     "will bubbleView", "did bubbleView"}));
    EXPECT_TRUE(MzEqualPoints(symbolizer->offset(), {1, 2}));
    EXPECT_RECT(symbolizer->bubbleRect(), {{1, 2}, {3, 4}});
    EXPECT_EQ(symbolizer->representedObject(), object);
    EXPECT_EQ(symbolizer->view(), object);
    EXPECT_EQ(symbolizer->bubbleView(), framed);
    EXPECT_TRUE(framed->subviews().empty());
}

TEST_F(BubbleSymbolizer, DependsOnNoKeys) {
    EXPECT_TRUE(symbolizer->drawPropertyKeyPaths().empty());
    EXPECT_TRUE(symbolizer->keyPathsForValuesAffectingValueForKey(MzDrawPropertyKey).empty());
}

TEST_F(BubbleSymbolizer, IsCopiedBlankAndEqualsOnlyItself) {
    symbolizer->setOffset({1, 2});
    const auto copy = std::dynamic_pointer_cast<MzBubbleSymbolizer>(symbolizer->copy());
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(MzEqualPoints(copy->offset(), {0, 0}));
    EXPECT_RECT(copy->bubbleRect(), {{-25, 25}, {150, 100}});
    EXPECT_EQ(copy->bubbleView(), nullptr);
    EXPECT_FALSE(copy->isEqualToSymbolizer(symbolizer.get()));
    EXPECT_TRUE(copy->isEqualToSymbolizer(copy.get()));
}

TEST_F(BubbleSymbolizer, DrawsTheBubbleThroughItsParentView) {
    drawAt({300, 200});
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    context.view.display();
    EXPECT_EQ(testing::only("translate", port.lines()),
              (Lines{"translate -1000 -1000", "translate 275 200", "translate 11 36"}));
    EXPECT_EQ(testing::only("drawPath", port.lines()), (Lines{"drawPath 0", "drawPath 2"}));
}

}  // namespace
}  // namespace mezalith
