// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/recording_symbolizer.hpp>
#include <mezalith/style/style.hpp>
#include <mezalith/style/testing.hpp>

#include <functional>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using testing::ArchivableRecordingSymbolizer;
using testing::KeyedStore;
using testing::Lines;
using testing::ObservationRecorder;
using testing::RecordingSymbolizer;
using testing::TestDrawContext;
using testing::TestFeature;

/// Admits features of one kind, and counts how often it is asked.
class KindPredicate : public platform::Predicate {
  public:
    explicit KindPredicate(std::string kind) : kind_(std::move(kind)) {}
    bool evaluateWithObject(const platform::Object* object) const override {
        ++asked;
        const auto* feature = dynamic_cast<const MzSpatialObject*>(object);
        return feature != nullptr && feature->kind() == kind_;
    }
    std::string predicateFormat() const override { return "kind == '" + kind_ + "'"; }
    std::string_view archiveClassName() const override { return "KindPredicate"; }
    void encodeWithCoder(platform::KeyedArchiver&) const override {}

    mutable int asked = 0;

  private:
    std::string kind_;
};

class SpecialStyle : public MzStyle {
  protected:
    std::shared_ptr<MzStyle> newInstance() const override {
        return std::make_shared<SpecialStyle>();
    }
};

/// The view's scale, told how often it is asked.
class CountingContext : public TestDrawContext {
  public:
    mutable int asked = 0;
    double scaleDenominator() const override {
        ++asked;
        return denominator;
    }
};

class Style : public ::testing::Test {
  protected:
    Style() { feature.kindName = "city"; }

    std::shared_ptr<RecordingSymbolizer> symbolizer(const std::string& name) {
        return std::make_shared<ArchivableRecordingSymbolizer>(name, &log);
    }
    /// Adds a rule with a symbolizer of the same name.
    std::shared_ptr<MzRule> addRule(const std::string& name, std::int32_t filterType = 0) {
        auto rule = std::make_shared<MzRule>();
        rule->setFilterType(filterType);
        rule->addSymbolizer(symbolizer(name));
        style.addRule(rule);
        return rule;
    }
    Lines drawn(bool selected = false) {
        log.clear();
        style.drawSpatialObject(&feature, &context, selected);
        return log;
    }
    bool drawsAt(double scale) {
        context.denominator = scale;
        return !drawn().empty();
    }
    bool hit(bool selected = false) {
        log.clear();
        return style.isSpatialObject(&feature, {3, 4}, &context, selected);
    }
    static RecordingSymbolizer& first(const MzRule& rule) {
        return dynamic_cast<RecordingSymbolizer&>(*rule.symbolizers().at(0));
    }

    RecordingSymbolizer::Log log;
    CountingContext context;
    TestFeature feature{nullptr};
    MzStyle style;
};

TEST_F(Style, HasNoTextsAndNoRulesAtFirst) {
    EXPECT_EQ(style.name(), "");
    EXPECT_EQ(style.title(), "");
    EXPECT_EQ(style.abstract(), "");
    EXPECT_TRUE(style.rules().empty());
    EXPECT_TRUE(drawn().empty());
    EXPECT_FALSE(hit());
}

// --- which rules apply -----------------------------------------------------------------------

TEST_F(Style, AppliesARuleStrictlyBetweenItsScaleBounds) {
    const auto rule = addRule("A");
    rule->setMinScaleDenominator(1000);
    rule->setMaxScaleDenominator(5000);
    EXPECT_TRUE(drawsAt(1000.5));
    EXPECT_TRUE(drawsAt(4999));
    for (const double scale : {1000.0, 5000.0, 999.0, 5000.5, std::nan("")}) {
        EXPECT_FALSE(drawsAt(scale)) << scale;
        EXPECT_FALSE(hit()) << scale;
    }
}

TEST_F(Style, AppliesARuleWithoutABoundOnThatSide) {
    const auto rule = addRule("A");
    EXPECT_TRUE(drawsAt(std::nan("")));
    rule->setMaxScaleDenominator(0);
    EXPECT_TRUE(drawsAt(-1e300));
    EXPECT_FALSE(drawsAt(0));
    rule->setMaxScaleDenominator(std::nullopt);
    rule->setMinScaleDenominator(0);
    EXPECT_TRUE(drawsAt(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(drawsAt(0));
}

TEST_F(Style, AsksForTheScaleAfreshForEachBound) {
    const auto rule = addRule("A");
    drawn();
    EXPECT_EQ(context.asked, 0);
    rule->setMinScaleDenominator(1);
    rule->setMaxScaleDenominator(5000);
    drawn();
    EXPECT_EQ(context.asked, 2);
}

TEST_F(Style, AppliesRulesBySelection) {
    const auto rule = addRule("A");
    const auto draws = [&](std::int32_t filter, bool selected) {
        rule->setSelectionFilter(filter);
        return !drawn(selected).empty();
    };
    EXPECT_TRUE(draws(0, false) && draws(0, true));
    EXPECT_TRUE(!draws(1, false) && draws(1, true));
    EXPECT_TRUE(draws(2, false) && !draws(2, true));
    for (const std::int32_t never : {3, -1, 1 << 30}) {
        EXPECT_TRUE(!draws(never, false) && !draws(never, true)) << never;
    }
}

TEST_F(Style, AppliesAFilteredRuleToFeaturesThatMeetItsFilter) {
    const auto rule = addRule("A", 1);
    rule->setFilter(std::make_shared<KindPredicate>("city"));
    EXPECT_EQ(drawn(), (Lines{"draw A"}));
    feature.kindName = "village";
    EXPECT_TRUE(drawn().empty());
}

TEST_F(Style, AppliesAFilteredRuleWithoutAFilterToEveryFeature) {
    addRule("A", 1);
    EXPECT_EQ(drawn(), (Lines{"draw A"}));
}

TEST_F(Style, AsksTheFilterOnlyForFilterTypeOneAndWhenScaleAndSelectionAdmit) {
    const auto rule = addRule("A");
    const auto filter = std::make_shared<KindPredicate>("village");
    rule->setFilter(filter);
    EXPECT_EQ(drawn(), (Lines{"draw A"}));
    rule->setFilterType(1);
    rule->setSelectionFilter(1);
    drawn();
    rule->setSelectionFilter(0);
    rule->setMinScaleDenominator(context.denominator);
    drawn();
    EXPECT_EQ(filter->asked, 0);
    rule->setMinScaleDenominator(0);
    EXPECT_TRUE(drawn().empty());
    EXPECT_EQ(filter->asked, 1);
}

TEST_F(Style, NeverAppliesRulesOfUnknownFilterTypes) {
    const auto rule = addRule("A");
    for (const std::int32_t type : {3, -1}) {
        rule->setFilterType(type);
        EXPECT_TRUE(drawn().empty());
    }
}

TEST_F(Style, AppliesAnElseRuleBehindAMatchingOneTogetherWithIt) {
    addRule("A", 1);
    addRule("B", 2);
    EXPECT_EQ(drawn(), (Lines{"draw B", "draw A"}));
}

TEST_F(Style, PassesOverAnElseRuleBeforeAMatchingOne) {
    addRule("B", 2);
    addRule("A", 1);
    EXPECT_EQ(drawn(), (Lines{"draw A"}));
}

TEST_F(Style, CountsAnElseRuleForTheElseRulesBeforeIt) {
    addRule("A", 2);
    addRule("B", 2);
    EXPECT_EQ(drawn(), (Lines{"draw B"}));
}

TEST_F(Style, CountsARuleWithoutSymbolizersAsApplied) {
    addRule("B", 2);
    style.addRule(std::make_shared<MzRule>());
    EXPECT_TRUE(drawn().empty());
    EXPECT_FALSE(hit());
    EXPECT_TRUE(log.empty());
}

TEST_F(Style, DoesNotCountARuleThatDoesNotApply) {
    addRule("B", 2);
    addRule("A")->setSelectionFilter(3);
    EXPECT_EQ(drawn(), (Lines{"draw B"}));
}

TEST_F(Style, StartsEachPassWithNoRuleApplied) {
    addRule("B", 2);
    EXPECT_EQ(drawn(), (Lines{"draw B"}));
    EXPECT_EQ(drawn(), (Lines{"draw B"}));
}

/// The rules of a style, told in plain values: which of them draw.
struct PlainRule {
    bool inScale, forSelected, forUnselected, isElse, matches;
};

std::vector<std::size_t> drawingRules(const std::vector<PlainRule>& rules, bool selected) {
    std::vector<std::size_t> drawing;
    for (std::size_t i = rules.size(); i-- > 0;) {
        const PlainRule& rule = rules[i];
        const bool filtered = rule.isElse ? drawing.empty() : rule.matches;
        if (rule.inScale && (selected ? rule.forSelected : rule.forUnselected) && filtered) {
            drawing.push_back(i);
        }
    }
    return drawing;
}

TEST_F(Style, AppliesTheRulesThatScaleSelectionAndFilterAdmit) {
    context.denominator = 100;
    const auto holds = [&](const std::vector<std::tuple<int, int, int, bool>>& values) {
        style.setRules({});
        std::vector<PlainRule> plain;
        for (const auto& [scale, selection, filter, matches] : values) {
            const auto rule = addRule(std::to_string(plain.size()), filter % 4);
            if (scale % 3 == 1) rule->setMinScaleDenominator(100);
            if (scale % 3 == 2) rule->setMaxScaleDenominator(101);
            rule->setSelectionFilter(selection % 4);
            rule->setFilter(std::make_shared<KindPredicate>(matches ? "city" : "town"));
            const int s = rule->selectionFilter(), f = rule->filterType();
            plain.push_back({scale % 3 != 1, s == 0 || s == 1, s == 0 || s == 2, f == 2,
                             f == 0 || (f == 1 && matches)});
        }
        for (const bool selected : {false, true}) {
            Lines expected;
            for (const std::size_t i : drawingRules(plain, selected)) {
                expected.push_back((selected ? "draw selected " : "draw ") + std::to_string(i));
            }
            RC_ASSERT(drawn(selected) == expected);
        }
    };
    const auto natural = rc::gen::inRange(0, 12);
    EXPECT_TRUE(rc::check("rules apply as their values say", [&] {
        holds(*rc::gen::container<std::vector<std::tuple<int, int, int, bool>>>(
            rc::gen::tuple(natural, natural, natural, rc::gen::arbitrary<bool>())));
    }));
}

// --- drawing, hitting, removing --------------------------------------------------------------

TEST_F(Style, DrawsTheSymbolizersOfARuleFromTheLastToTheFirst) {
    const auto rule = addRule("S1");
    rule->addSymbolizer(symbolizer("S2"));
    EXPECT_EQ(drawn(), (Lines{"draw S2", "draw S1"}));
}

TEST_F(Style, DrawsRulesFromTheLastToTheFirst) {
    addRule("A")->addSymbolizer(symbolizer("A2"));
    addRule("B");
    EXPECT_EQ(drawn(true), (Lines{"draw selected B", "draw selected A2", "draw selected A"}));
}

TEST_F(Style, PassesObjectContextAndPointOn) {
    RecordingSymbolizer& inner = first(*addRule("A"));
    drawn();
    EXPECT_EQ(inner.lastObject, &feature);
    EXPECT_EQ(inner.lastContext, &context);
    inner.lastObject = nullptr;
    hit(true);
    EXPECT_EQ(inner.lastObject, &feature);
    EXPECT_EQ(inner.lastPoint.x, 3);
    EXPECT_EQ(inner.lastPoint.y, 4);
    EXPECT_EQ(log, (Lines{"test selected A"}));
}

TEST_F(Style, EndsAHitTestAtTheFirstSymbolizerHit) {
    const auto a = addRule("A");
    const auto b = addRule("B");
    b->addSymbolizer(symbolizer("B2"));
    EXPECT_FALSE(hit());
    EXPECT_EQ(log, (Lines{"test B2", "test B", "test A"}));
    first(*b).isHit = true;
    EXPECT_TRUE(hit());
    EXPECT_EQ(log, (Lines{"test B2", "test B"}));
    first(*b).isHit = false;
    first(*a).isHit = true;
    EXPECT_TRUE(hit());
}

TEST_F(Style, TellsWhichSymbolizerOfWhichRuleWasHit) {
    addRule("A");
    const auto rule = addRule("B");
    const auto below = symbolizer("C");
    rule->addSymbolizer(below);
    EXPECT_FALSE(style.hitOfSpatialObject(&feature, {3, 4}, &context, false));
    first(*style.rules()[0]).isHit = true;
    below->isHit = true;
    const auto hit = style.hitOfSpatialObject(&feature, {3, 4}, &context, false);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->rule, rule);
    EXPECT_EQ(hit->ruleIndex, 1u);
    EXPECT_EQ(hit->symbolizer, below);
    EXPECT_EQ(hit->symbolizerIndex, 1u);
    below->isHit = false;
    EXPECT_EQ(style.hitOfSpatialObject(&feature, {3, 4}, &context, false)->ruleIndex, 0u);
    EXPECT_FALSE(style.hitOfSpatialObject(nullptr, {3, 4}, &context, false));
    EXPECT_FALSE(style.hitOfSpatialObject(&feature, {3, 4}, nullptr, false));
}

TEST_F(Style, CountsARuleAsAppliedThatIsNotHit) {
    first(*addRule("else", 2)).isHit = true;
    addRule("A");
    EXPECT_FALSE(hit());
    EXPECT_EQ(log, (Lines{"test A"}));
}

TEST_F(Style, HitsOnlyByRulesThatApply) {
    const auto rule = addRule("A");
    first(*rule).isHit = true;
    rule->setSelectionFilter(1);
    EXPECT_FALSE(hit());
    EXPECT_TRUE(hit(true));
}

TEST_F(Style, TellsEverySymbolizerInListOrderOfARemoval) {
    const auto rule = addRule("A1", 3);
    rule->addSymbolizer(symbolizer("A2"));
    rule->setMinScaleDenominator(1e9);
    addRule("B");
    style.didRemoveFromContext(&context, &feature);
    EXPECT_EQ(log, (Lines{"removed A1", "removed A2", "removed B"}));
    EXPECT_EQ(first(*rule).lastObject, &feature);
    EXPECT_EQ(first(*rule).lastContext, &context);
    style.didRemoveFromContext(nullptr, nullptr);
    EXPECT_EQ(first(*rule).lastObject, nullptr);
    EXPECT_EQ(first(*rule).lastContext, nullptr);
}

TEST_F(Style, DrawsAndHitsNothingForNull) {
    first(*addRule("A")).isHit = true;
    style.drawSpatialObject(nullptr, &context, false);
    style.drawSpatialObject(&feature, nullptr, false);
    EXPECT_FALSE(style.isSpatialObject(nullptr, {}, &context, false));
    EXPECT_FALSE(style.isSpatialObject(&feature, {}, nullptr, false));
    EXPECT_TRUE(log.empty());
}

TEST_F(Style, DoesNothingOnEvents) {
    addRule("A");
    const platform::Event event;
    style.mouseDown(event, {1, 2}, &feature, &context);
    style.mouseUp(event, {1, 2}, &feature, &context);
    style.mouseDragged(event, {1, 2}, &feature, &context);
    style.mouseEntered(event, {1, 2}, &feature, &context);
    style.mouseExited(event, {1, 2}, &feature, &context);
    style.mouseMoved(event, {1, 2}, nullptr, nullptr);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(style.spatialObjectEventOptions(), 0U);
}

// --- default styles --------------------------------------------------------------------------

/// Whether the default style is one "Unnamed" rule with one symbolizer of the class `Symbolizer`.
template <typename Symbolizer>
void expectDefault(const MzGeometry& geometry) {
    const auto style = MzStyle::styleForGeometry(&geometry);
    ASSERT_EQ(style->rules().size(), 1U);
    const MzRule& rule = *style->rules()[0];
    EXPECT_TRUE(rule.name() == "Unnamed" && rule.filterType() == 0);
    ASSERT_EQ(rule.symbolizers().size(), 1U);
    EXPECT_NE(dynamic_cast<Symbolizer*>(rule.symbolizers()[0].get()), nullptr);
    ObservationRecorder recorder;
    style->addObserver(&recorder, MzDrawPropertyKey, 1);
    dynamic_cast<Symbolizer&>(*rule.symbolizers()[0]).setStrokeWidth(9);
    EXPECT_FALSE(recorder.lines.empty());
}

TEST_F(Style, ChoosesADefaultSymbolizerByTheTypeOfTheGeometry) {
    expectDefault<MzPointSymbolizer>(MzPointGeometry());
    expectDefault<MzPointSymbolizer>(MzMultiPointGeometry());
    expectDefault<MzLineSymbolizer>(MzLineStringGeometry());
    expectDefault<MzPolygonSymbolizer>(MzPolygonGeometry());
    expectDefault<MzPolygonSymbolizer>(MzMultiPolygonGeometry());
}

TEST_F(Style, HasAnEmptyDefaultRuleForOtherGeometriesAndNull) {
    const MzGeometry abstract;
    for (const MzGeometry* geometry : {&abstract, static_cast<const MzGeometry*>(nullptr)}) {
        const auto made = MzStyle::initForGeometry(geometry);
        ASSERT_EQ(made->rules().size(), 1U);
        EXPECT_TRUE(made->rules()[0]->symbolizers().empty());
    }
}

// --- notifications ---------------------------------------------------------------------------

TEST_F(Style, AnnouncesChangesOfItsRulesAndTheirSymbolizers) {
    const auto rule = addRule("A");
    ObservationRecorder recorder;
    style.addObserver(&recorder, MzDrawPropertyKey, 1, true);
    rule->setFilterType(1);
    first(*rule).setSize(3);
    const std::string will = "will drawProperty (1)", did = "did drawProperty (1)";
    EXPECT_EQ(recorder.lines, (Lines{will, did, will, did}));
    rule->setName("x");
    EXPECT_EQ(recorder.lines.size(), 4U);
}

TEST_F(Style, AnnouncesNoChangeOfItsDrawingForItsNameAndItsList) {
    EXPECT_TRUE(style.keyPathsForValuesAffectingValueForKey(MzDrawPropertyKey).empty());
    ObservationRecorder recorder;
    style.addObserver(&recorder, MzDrawPropertyKey, 1, true);
    style.setName("x");
    const auto rule = addRule("A");
    style.moveRuleFromIndex(0, 0);
    style.removeRule(rule);
    style.setRules({rule});
    EXPECT_TRUE(recorder.lines.empty());
}

// --- equality --------------------------------------------------------------------------------

TEST_F(Style, EqualsAStyleOfTheSameTextsAndTheVerySameRules) {
    addRule("A");
    MzStyle other;
    other.setRules(style.rules());
    EXPECT_TRUE(style.isEqualToStyle(&style));
    EXPECT_TRUE(style.isEqualToStyle(&other));
    EXPECT_FALSE(style.isEqualToStyle(nullptr));
    for (const auto set : {&MzStyle::setName, &MzStyle::setTitle, &MzStyle::setAbstract}) {
        (other.*set)("x");
        EXPECT_FALSE(style.isEqualToStyle(&other));
        (other.*set)("");
    }
    other.setRules({style.rules()[0]->copy()});
    EXPECT_TRUE(style.rules()[0]->isEqualToRule(other.rules()[0].get()));
    EXPECT_FALSE(style.isEqualToStyle(&other));
}

TEST_F(Style, DiffersFromStylesOfOtherClasses) {
    const SpecialStyle special, other;
    EXPECT_FALSE(style.isEqualToStyle(&special));
    EXPECT_FALSE(special.isEqualToStyle(&style));
    EXPECT_FALSE(style.isStructurallyEqualToStyle(&special));
    EXPECT_TRUE(special.isStructurallyEqualToStyle(&other));
}

TEST_F(Style, EqualsInStructureWhenItsRulesDo) {
    MzStyle other;
    EXPECT_TRUE(style.isStructurallyEqualToStyle(&other));
    addRule("A")->setName("x");
    EXPECT_FALSE(style.isStructurallyEqualToStyle(&other));
    const auto rule = std::make_shared<MzRule>();
    other.setRules({rule});
    EXPECT_FALSE(style.isStructurallyEqualToStyle(&other));
    rule->addSymbolizer(symbolizer("another"));
    EXPECT_TRUE(style.isStructurallyEqualToStyle(&other));
    EXPECT_TRUE(style.isStructurallyEqualToStyle(&style));
    EXPECT_FALSE(style.isStructurallyEqualToStyle(nullptr));
}

// --- copying and archiving -------------------------------------------------------------------

TEST_F(Style, SharesItsRulesWithACopyThatAnnouncesNothingOfThem) {
    style.setName("name");
    const auto rule = addRule("A");
    const auto copy = style.copy();
    EXPECT_TRUE(copy->isEqualToStyle(&style));
    ObservationRecorder source, copied;
    style.addObserver(&source, MzDrawPropertyKey, 1);
    copy->addObserver(&copied, MzDrawPropertyKey, 2);
    rule->setMinScaleDenominator(1e9);
    EXPECT_EQ(source.lines, (Lines{"did drawProperty (1)"}));
    EXPECT_TRUE(copied.lines.empty());
    EXPECT_TRUE(drawn().empty());
    copy->drawSpatialObject(&feature, &context, false);
    EXPECT_TRUE(log.empty());
    rule->setMinScaleDenominator(std::nullopt);
    EXPECT_EQ(drawn(), (Lines{"draw A"}));
    copy->drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(log, (Lines{"draw A", "draw A"}));
}

TEST_F(Style, CopiesToItsOwnClass) {
    EXPECT_NE(dynamic_cast<SpecialStyle*>(SpecialStyle().copy().get()), nullptr);
}

TEST_F(Style, ArchivesItsTextsAndRulesInTheirOrder) {
    KeyedStore store;
    style.encodeWithCoder(store);
    EXPECT_EQ(store.layout(),
              (Lines{"string name", "string title", "string abstract", "objects rules"}));
    EXPECT_EQ(style.archiveClassName(), "MzStyle");
}

TEST_F(Style, ReadsBackWhatItArchivedAndObservesTheRules) {
    style.setName("name");
    style.setTitle("title");
    style.setAbstract("abstract");
    const auto rule = addRule("A");
    addRule("B");
    KeyedStore store;
    style.encodeWithCoder(store);
    const auto read = MzStyle::initWithCoder(store);
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(read->isEqualToStyle(&style));
    ObservationRecorder recorder;
    read->addObserver(&recorder, MzDrawPropertyKey, 1);
    rule->setFilterType(2);
    EXPECT_EQ(recorder.lines, (Lines{"did drawProperty (1)"}));
}

TEST_F(Style, IsNotReadWithForeignObjectsAmongItsRules) {
    const platform::Archivable* const objects[] = {&style};
    KeyedStore store;
    store.encodeObjects(objects, "rules");
    EXPECT_EQ(MzStyle::initWithCoder(store), nullptr);
}

// --- edits while drawing

/// Calls `edit` instead of drawing, and wherever else the style calls.
class EditingSymbolizer : public MzSymbolizer {
  public:
    std::function<void()> edit;
    void drawSpatialObject(MzSpatialObjectDrawAdditions*, MzDrawContext*, bool) override { edit(); }
    bool isSpatialObject(MzSpatialObjectDrawAdditions*, MzPoint, MzDrawContext*, bool) override {
        edit();
        return false;
    }
    void didRemoveFromContext(MzDrawContext*, MzSpatialObjectDrawAdditions*) override { edit(); }
};

class EditingPredicate : public KindPredicate {
  public:
    EditingPredicate() : KindPredicate("city") {}
    std::function<void()> edit;
    bool evaluateWithObject(const platform::Object* object) const override {
        edit();
        return KindPredicate::evaluateWithObject(object);
    }
};

/// Takes everything away that a style draws with.
void empty(MzStyle& style) {
    for (const auto& rule : MzStyle::Rules(style.rules())) {
        rule->setFilter(nullptr);
        rule->setSymbolizers({});
        style.removeRule(rule);
    }
}

TEST_F(Style, FinishesWithTheSymbolizersThatWereThereWhenOneEditsTheStyle) {
    const auto rule = addRule("A");
    const auto editing = std::make_shared<EditingSymbolizer>();
    rule->addSymbolizer(editing);
    addRule("B");
    editing->edit = [&] { empty(style); };
    style.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(log, (Lines{"draw B", "draw A"}));
    EXPECT_TRUE(style.rules().empty());
    style.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(log.size(), 2U);
}

TEST_F(Style, DrawsWhatIsAddedMeanwhileFromTheNextTimeOn) {
    const auto rule = addRule("A");
    const auto editing = std::make_shared<EditingSymbolizer>();
    rule->addSymbolizer(editing);
    editing->edit = [&] {
        for (int i = 0; i < 100; ++i) style.addRule(std::make_shared<MzRule>(), 0);
        rule->addSymbolizer(symbolizer("new"));
    };
    style.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(log, (Lines{"draw A"}));
    editing->edit = [] {};
    style.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(log, (Lines{"draw A", "draw new", "draw A"}));
}

TEST_F(Style, MayBeEditedByFiltersHitTestsAndRemovals) {
    for (int way = 0; way < 3; ++way) {
        const auto rule = addRule("A", 1);
        auto filter = std::make_shared<EditingPredicate>();
        const std::weak_ptr<EditingPredicate> watched = filter;
        filter->edit = [&] { empty(style); };
        rule->setFilter(std::move(filter));
        const auto editing = std::make_shared<EditingSymbolizer>();
        editing->edit = [&] { empty(style); };
        rule->addSymbolizer(editing);
        if (way == 0) style.drawSpatialObject(&feature, &context, false);
        if (way == 1) style.isSpatialObject(&feature, {0, 0}, &context, false);
        if (way == 2) style.didRemoveFromContext(&context, &feature);
        EXPECT_TRUE(style.rules().empty()) << way;
        EXPECT_TRUE(watched.expired()) << way;
    }
}

}  // namespace
}  // namespace mezalith
