// SPDX-License-Identifier: MIT
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/recording_symbolizer.hpp>
#include <mezalith/style/rule.hpp>

#include <functional>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Lines = std::vector<std::string>;
using testing::ArchivableRecordingSymbolizer;
using testing::KeyedStore;
using testing::ObservationRecorder;
using testing::RecordingSymbolizer;

class FormatPredicate : public platform::Predicate {
  public:
    explicit FormatPredicate(std::string format) : format_(std::move(format)) {}
    bool evaluateWithObject(const platform::Object*) const override { return true; }
    std::string predicateFormat() const override { return format_; }
    std::string_view archiveClassName() const override { return "FormatPredicate"; }
    void encodeWithCoder(platform::KeyedArchiver&) const override {}

  private:
    std::string format_;
};

class SpecialRule : public MzRule {
  protected:
    std::shared_ptr<MzRule> newInstance() const override { return std::make_shared<SpecialRule>(); }
};

std::shared_ptr<const platform::Predicate> predicate(std::string format) {
    return std::make_shared<FormatPredicate>(std::move(format));
}

class Rule : public ::testing::Test {
  protected:
    std::shared_ptr<RecordingSymbolizer> symbolizer(const std::string& name,
                                                    std::uint32_t type = 0) {
        auto made = std::make_shared<ArchivableRecordingSymbolizer>(name, &log);
        made->type = type;
        return made;
    }
    /// Two rules with the same values and the same symbolizer.
    std::shared_ptr<MzRule> filledRule() {
        auto rule = std::make_shared<MzRule>();
        rule->setName("name");
        rule->setTitle("title");
        rule->setAbstract("abstract");
        rule->setMinScaleDenominator(1000);
        rule->setMaxScaleDenominator(5000);
        rule->setSelectionFilter(1);
        rule->setFilterType(2);
        rule->setFilter(predicate("kind == 'city'"));
        rule->setSymbolizers({shared});
        return rule;
    }

    RecordingSymbolizer::Log log;
    std::shared_ptr<RecordingSymbolizer> shared = symbolizer("shared");
};

TEST_F(Rule, IsUnnamedUnboundedAndUnfilteredAtFirst) {
    const MzRule rule;
    EXPECT_EQ(rule.name(), "Unnamed");
    EXPECT_EQ(rule.title(), "");
    EXPECT_EQ(rule.abstract(), "");
    EXPECT_EQ(rule.minScaleDenominator(), std::nullopt);
    EXPECT_EQ(rule.maxScaleDenominator(), std::nullopt);
    EXPECT_EQ(rule.selectionFilter(), 0);
    EXPECT_EQ(rule.filterType(), 0);
    EXPECT_EQ(rule.filter(), nullptr);
    EXPECT_TRUE(rule.symbolizers().empty());
}

TEST_F(Rule, DependsInItsDrawingOnAllButItsTexts) {
    const MzRule rule;
    EXPECT_EQ(rule.keyPathsForValuesAffectingValueForKey(MzDrawPropertyKey),
              (std::set<std::string>{"symbolizers", "minScaleDenominator", "maxScaleDenominator",
                                     "selectionFilter", "filterType", "filter"}));
    EXPECT_TRUE(rule.keyPathsForValuesAffectingValueForKey("symbolizers").empty());
    EXPECT_TRUE(rule.keyPathsForValuesAffectingValueForKey("").empty());
}

TEST_F(Rule, AnnouncesAChangeOfItsDrawingForEachOfItsValues) {
    MzRule rule;
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"minScaleDenominator", [&] { rule.setMinScaleDenominator(1); }},
        {"maxScaleDenominator", [&] { rule.setMaxScaleDenominator(2); }},
        {"selectionFilter", [&] { rule.setSelectionFilter(1); }},
        {"filterType", [&] { rule.setFilterType(1); }},
        {"filter", [&] { rule.setFilter(predicate("x")); }},
        {"symbolizers", [&] { rule.setSymbolizers({shared}); }}};
    for (const auto& [key, change] : changes) {
        ObservationRecorder recorder;
        rule.addObserver(&recorder, key, 1);
        rule.addObserver(&recorder, MzDrawPropertyKey, 2, true);
        change();
        EXPECT_EQ(recorder.lines,
                  (Lines{"will drawProperty (2)", "did " + (key + std::string(" (1)")),
                         "did drawProperty (2)"}));
    }
}

TEST_F(Rule, AnnouncesAChangeOfItsDrawingForEachEditOfItsList) {
    MzRule rule;
    ObservationRecorder recorder;
    rule.addObserver(&recorder, MzDrawPropertyKey, 1, true);
    rule.addSymbolizer(shared);
    rule.moveSymbolizerFromIndex(0, 0);
    rule.removeSymbolizer(shared);
    const std::string will = "will drawProperty (1)", did = "did drawProperty (1)";
    EXPECT_EQ(recorder.lines, (Lines{will, did, will, did, will, did}));
}

TEST_F(Rule, TellsARemovedSymbolizerThatItLeftEveryView) {
    MzRule rule;
    rule.addSymbolizer(shared);
    rule.removeSymbolizer(shared);
    EXPECT_EQ(log, (Lines{"removed shared"}));
    EXPECT_EQ(shared->lastObject, nullptr);
    EXPECT_EQ(shared->lastContext, nullptr);
}

TEST_F(Rule, TellsARemovedSymbolizerBetweenObservationAndAnnouncement) {
    class : public MzSymbolizer {
      public:
        std::function<void()> reaction;
        void touch() {
            changeValues({MzDrawPropertyKey}, [] {});
        }
        void didRemoveFromContext(MzDrawContext*, MzSpatialObjectDrawAdditions*) override {
            reaction();
        }
    } leaving;
    const std::shared_ptr<MzSymbolizer> unowned(std::shared_ptr<void>(), &leaving);
    MzRule rule;
    ObservationRecorder recorder;
    rule.addSymbolizer(unowned);
    rule.addObserver(&recorder, MzDrawPropertyKey, 1);
    rule.addObserver(&recorder, "symbolizers", 2, true);
    leaving.reaction = [&] {
        leaving.touch();  // no longer observed
        recorder.lines.emplace_back("left");
    };
    rule.removeSymbolizer(unowned);
    EXPECT_EQ(recorder.lines, (Lines{"left", "will symbolizers kind 3 at 0+1 (2)",
                                     "did drawProperty (1)", "did symbolizers kind 3 at 0+1 (2)"}));
}

TEST_F(Rule, EndsWithoutAnnouncingTheEndOfItsSymbolizers) {
    struct Parting : MzSymbolizer {
        ~Parting() override {
            changeValues({MzDrawPropertyKey}, [] {});
        }
    };
    ObservationRecorder recorder;
    auto rule = std::make_unique<MzRule>();
    rule->addSymbolizer(std::make_shared<Parting>());
    rule->addObserver(&recorder, MzDrawPropertyKey, 1);
    rule.reset();
    EXPECT_TRUE(recorder.lines.empty());
}

// --- equality --------------------------------------------------------------------------------

TEST_F(Rule, EqualsARuleOfTheSameValuesAndTheVerySameSymbolizers) {
    const auto one = filledRule(), other = filledRule();
    EXPECT_TRUE(one->isEqualToRule(one.get()));
    EXPECT_TRUE(one->isEqualToRule(other.get()));
    EXPECT_FALSE(one->isEqualToRule(nullptr));
    EXPECT_TRUE(MzRule().isEqualToRule(std::make_unique<MzRule>().get()));
}

TEST_F(Rule, DiffersInEachOfItsValues) {
    const std::vector<std::function<void(MzRule&)>> changes{
        [](MzRule& rule) { rule.setName("x"); },
        [](MzRule& rule) { rule.setTitle("x"); },
        [](MzRule& rule) { rule.setAbstract("x"); },
        [](MzRule& rule) { rule.setMinScaleDenominator(1000.5); },
        [](MzRule& rule) { rule.setMinScaleDenominator(std::nullopt); },
        [](MzRule& rule) { rule.setMaxScaleDenominator(4999); },
        [](MzRule& rule) { rule.setMaxScaleDenominator(std::nullopt); },
        [](MzRule& rule) { rule.setSelectionFilter(2); },
        [](MzRule& rule) { rule.setFilterType(1); },
        [](MzRule& rule) { rule.setFilter(predicate("kind == 'town'")); },
        [](MzRule& rule) { rule.setFilter(nullptr); },
        [](MzRule& rule) { rule.setSymbolizers({}); },
        [this](MzRule& rule) { rule.setSymbolizers({symbolizer("shared")}); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto one = filledRule(), other = filledRule();
        changes[i](*other);
        EXPECT_FALSE(one->isEqualToRule(other.get())) << "change " << i;
        EXPECT_FALSE(other->isEqualToRule(one.get())) << "change " << i;
    }
}

TEST_F(Rule, ToldFromOneWithoutFilterByAnEmptyFormat) {
    MzRule without, empty;
    empty.setFilter(predicate(""));
    EXPECT_FALSE(without.isEqualToRule(&empty));
}

TEST_F(Rule, DiffersFromRulesOfOtherClasses) {
    const MzRule rule;
    const SpecialRule special;
    EXPECT_FALSE(rule.isEqualToRule(&special));
    EXPECT_FALSE(special.isEqualToRule(&rule));
    EXPECT_FALSE(rule.isStructurallyEqualToRule(&special));
    EXPECT_TRUE(special.isStructurallyEqualToRule(std::make_unique<SpecialRule>().get()));
}

TEST_F(Rule, EqualsInStructureWhenTheTypesOfItsSymbolizersDo) {
    MzRule one, other;
    EXPECT_TRUE(one.isStructurallyEqualToRule(&other));
    one.setSymbolizers({symbolizer("a", 1), symbolizer("b", 2)});
    EXPECT_FALSE(one.isStructurallyEqualToRule(&other));
    other.setSymbolizers({symbolizer("c", 1), symbolizer("d", 2)});
    other.setFilterType(2);
    EXPECT_TRUE(one.isStructurallyEqualToRule(&other));
    other.moveSymbolizerFromIndex(0, 1);
    EXPECT_FALSE(one.isStructurallyEqualToRule(&other));
    EXPECT_TRUE(one.isStructurallyEqualToRule(&one));
    EXPECT_FALSE(one.isStructurallyEqualToRule(nullptr));
}

// --- copying and archiving -------------------------------------------------------------------

TEST_F(Rule, CopiesAllItsValuesAndSharesFilterAndSymbolizers) {
    const auto rule = filledRule();
    const auto copy = rule->copy();
    EXPECT_NE(copy, rule);
    EXPECT_TRUE(copy->isEqualToRule(rule.get()));
    EXPECT_EQ(copy->filter(), rule->filter());
    copy->removeSymbolizer(shared);
    EXPECT_EQ(rule->symbolizers().size(), 1U);
}

TEST_F(Rule, CopiesToItsOwnClass) {
    EXPECT_NE(dynamic_cast<SpecialRule*>(SpecialRule().copy().get()), nullptr);
}

TEST_F(Rule, ArchivesItsValuesInTheirOrder) {
    KeyedStore store;
    filledRule()->encodeWithCoder(store);
    EXPECT_EQ(store.layout(),
              (Lines{"string name", "string title", "string abstract", "number minScaleDenominator",
                     "number maxScaleDenominator", "int selectionFilter", "int filterType",
                     "object filter", "objects symbolizers"}));
    EXPECT_EQ(MzRule().archiveClassName(), "MzRule");
}

TEST_F(Rule, ReadsBackWhatItArchived) {
    KeyedStore store;
    const auto rule = filledRule();
    rule->encodeWithCoder(store);
    const auto read = MzRule::initWithCoder(store);
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(read->isEqualToRule(rule.get()));
}

TEST_F(Rule, ReadsNoDefaultsWhereTheArchiveHasNothing) {
    const auto read = MzRule::initWithCoder(KeyedStore());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->name(), "");
    EXPECT_EQ(read->filter(), nullptr);
}

TEST_F(Rule, ObservesTheSymbolizersItReads) {
    KeyedStore store;
    const auto rule = filledRule();
    rule->encodeWithCoder(store);
    const auto read = MzRule::initWithCoder(store);
    ObservationRecorder recorder;
    read->addObserver(&recorder, MzDrawPropertyKey, 1);
    shared->setSize(2);
    EXPECT_EQ(recorder.lines, (Lines{"did drawProperty (1)"}));
}

TEST_F(Rule, LeavesOutSymbolizersThatCannotBeArchived) {
    MzRule rule;
    rule.setSymbolizers({std::make_shared<MzSymbolizer>(), shared});
    KeyedStore store;
    rule.encodeWithCoder(store);
    EXPECT_EQ(MzRule::initWithCoder(store)->symbolizers().size(), 1U);
}

TEST_F(Rule, IsNotReadWithForeignObjectsForFilterOrSymbolizers) {
    const MzRule foreign;
    const platform::Archivable* const objects[] = {&foreign};
    KeyedStore badFilter, badSymbolizer;
    badFilter.encodeObject(&foreign, "filter");
    badSymbolizer.encodeObjects(objects, "symbolizers");
    EXPECT_EQ(MzRule::initWithCoder(badFilter), nullptr);
    EXPECT_EQ(MzRule::initWithCoder(badSymbolizer), nullptr);
}

}  // namespace
}  // namespace mezalith
