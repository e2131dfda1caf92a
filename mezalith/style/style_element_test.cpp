// SPDX-License-Identifier: MIT
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/recording_symbolizer.hpp>
#include <mezalith/style/rule.hpp>
#include <mezalith/style/style.hpp>
#include <mezalith/style/style_element.hpp>

#include <limits>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using Lines = std::vector<std::string>;
using testing::ObservationRecorder;
using testing::RecordingSymbolizer;

/// The list of a rule, and how its members are made and changed.
struct RuleEditing {
    using Element = MzRule;
    using Member = MzSymbolizer;
    static constexpr const char* kKey = "symbolizers";
    static constexpr std::int64_t kContext = 3548;

    RecordingSymbolizer::Log log;

    std::shared_ptr<Member> makeMember() {
        return std::make_shared<RecordingSymbolizer>("member", &log);
    }
    static void change(Member& member) { dynamic_cast<RecordingSymbolizer&>(member).setSize(1); }
    static const auto& list(const Element& rule) { return rule.symbolizers(); }
    static void setList(Element& rule, Element::Members list) {
        rule.setSymbolizers(std::move(list));
    }
    template <typename... Index>
    static bool add(Element& rule, std::shared_ptr<Member> member, Index... index) {
        return rule.addSymbolizer(std::move(member), index...);
    }
    static bool remove(Element& rule, std::shared_ptr<Member> member) {
        return rule.removeSymbolizer(std::move(member));
    }
    static bool move(Element& rule, std::size_t from, std::size_t to) {
        return rule.moveSymbolizerFromIndex(from, to);
    }
};

struct StyleEditing {
    using Element = MzStyle;
    using Member = MzRule;
    static constexpr const char* kKey = "rules";
    static constexpr std::int64_t kContext = 6848;

    static std::shared_ptr<Member> makeMember() { return std::make_shared<MzRule>(); }
    static void change(Member& member) { member.setFilterType(0); }
    static const auto& list(const Element& style) { return style.rules(); }
    static void setList(Element& style, Element::Members list) { style.setRules(std::move(list)); }
    template <typename... Index>
    static bool add(Element& style, std::shared_ptr<Member> member, Index... index) {
        return style.addRule(std::move(member), index...);
    }
    static bool remove(Element& style, std::shared_ptr<Member> member) {
        return style.removeRule(std::move(member));
    }
    static bool move(Element& style, std::size_t from, std::size_t to) {
        return style.moveRuleFromIndex(from, to);
    }
};

template <typename Editing>
class StyleElement : public ::testing::Test {
  protected:
    using Member = typename Editing::Member;
    using Members = std::vector<std::shared_ptr<Member>>;

    /// Adds `count` members and then begins to record the list's changes.
    void fill(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            members.push_back(editing.makeMember());
            Editing::add(*element, members.back());
        }
        element->addObserver(&recorder, Editing::kKey, 0, true);
    }
    Lines announced(const std::string& change) const {
        return {"will " + (Editing::kKey + (" " + change)),
                "did " + (Editing::kKey + (" " + change))};
    }
    /// Whether a change of the member is passed on as one of the element's drawing.
    bool isRelayed(Member& member) {
        ObservationRecorder drawing;
        element->addObserver(&drawing, MzDrawPropertyKey, 7, true);
        Editing::change(member);
        element->removeObserver(&drawing, MzDrawPropertyKey);
        EXPECT_TRUE(drawing.lines.empty() ||
                    drawing.lines == (Lines{"will drawProperty (7)", "did drawProperty (7)"}));
        return !drawing.lines.empty();
    }

    Editing editing;
    std::shared_ptr<typename Editing::Element> element =
        std::make_shared<typename Editing::Element>();
    Members members;
    ObservationRecorder recorder;
};

using Editings = ::testing::Types<RuleEditing, StyleEditing>;
TYPED_TEST_SUITE(StyleElement, Editings, );

// --- adding ----------------------------------------------------------------------------------

TYPED_TEST(StyleElement, AppendsAndAnnouncesAnInsertionAtTheEnd) {
    this->fill(2);
    const auto added = this->editing.makeMember();
    EXPECT_TRUE(TypeParam::add(*this->element, added));
    this->members.push_back(added);
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
    EXPECT_EQ(this->recorder.lines, this->announced("kind 2 at 2+1"));
    EXPECT_TRUE(this->isRelayed(*added));
}

TYPED_TEST(StyleElement, AnnouncesBeforeAndAfterTheListChanges) {
    this->fill(1);
    std::vector<std::size_t> sizes;
    this->recorder.reaction = [&] { sizes.push_back(TypeParam::list(*this->element).size()); };
    TypeParam::add(*this->element, this->editing.makeMember());
    TypeParam::remove(*this->element, this->members[0]);
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1, 2, 2, 1}));
}

TYPED_TEST(StyleElement, InsertsInFront) {
    this->fill(2);
    const auto added = this->editing.makeMember();
    EXPECT_TRUE(TypeParam::add(*this->element, added, 0U));
    this->members.insert(this->members.begin(), added);
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
    EXPECT_EQ(this->recorder.lines, this->announced("kind 2 at 0+1"));
    EXPECT_TRUE(this->isRelayed(*added));
}

TYPED_TEST(StyleElement, AppendsAtTheIndexOnePastTheLastMember) {
    this->fill(2);
    const auto added = this->editing.makeMember();
    EXPECT_TRUE(TypeParam::add(*this->element, added, 2U));
    EXPECT_EQ(TypeParam::list(*this->element).back(), added);
    EXPECT_EQ(this->recorder.lines, this->announced("kind 2 at 2+1"));
}

TYPED_TEST(StyleElement, ObservesAMemberThatItDoesNotInsertBeyondTheEnd) {
    this->fill(2);
    for (const std::size_t index : {std::size_t{3}, std::numeric_limits<std::size_t>::max()}) {
        const auto refused = this->editing.makeMember();
        EXPECT_FALSE(TypeParam::add(*this->element, refused, index));
        EXPECT_EQ(TypeParam::list(*this->element), this->members);
        EXPECT_TRUE(this->recorder.lines.empty());
        EXPECT_TRUE(this->isRelayed(*refused));
    }
}

TYPED_TEST(StyleElement, ObservesAMemberBeforeItAnnouncesIt) {
    this->fill(0);
    const auto added = this->editing.makeMember();
    ObservationRecorder drawing;
    this->element->addObserver(&drawing, MzDrawPropertyKey, 1);
    std::size_t relayed = 0;
    this->recorder.reaction = [&] {
        this->recorder.reaction = nullptr;
        TypeParam::change(*added);
        relayed = drawing.lines.size();
    };
    TypeParam::add(*this->element, added);
    EXPECT_EQ(relayed, 1U);
}

TYPED_TEST(StyleElement, RefusesNull) {
    this->fill(1);
    EXPECT_FALSE(TypeParam::add(*this->element, nullptr));
    EXPECT_FALSE(TypeParam::add(*this->element, nullptr, 0U));
    EXPECT_FALSE(TypeParam::remove(*this->element, nullptr));
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
    EXPECT_TRUE(this->recorder.lines.empty());
}

// --- removing --------------------------------------------------------------------------------

TYPED_TEST(StyleElement, RemovesAndAnnouncesTheIndex) {
    this->fill(3);
    EXPECT_TRUE(TypeParam::remove(*this->element, this->members[1]));
    EXPECT_EQ(this->recorder.lines, this->announced("kind 3 at 1+1"));
    EXPECT_FALSE(this->isRelayed(*this->members[1]));
    EXPECT_TRUE(this->isRelayed(*this->members[2]));
    this->members.erase(this->members.begin() + 1);
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
}

TYPED_TEST(StyleElement, OnlyStopsObservingWhatIsNotInTheList) {
    this->fill(1);
    const auto refused = this->editing.makeMember();
    TypeParam::add(*this->element, refused, 5U);
    EXPECT_TRUE(TypeParam::remove(*this->element, refused));
    EXPECT_FALSE(this->isRelayed(*refused));
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
    EXPECT_TRUE(this->recorder.lines.empty());
}

TYPED_TEST(StyleElement, TakesOutOneOfTwoOccurrencesAndKeepsObservingTheOther) {
    this->fill(2);
    TypeParam::add(*this->element, this->members[0]);
    this->recorder.lines.clear();
    TypeParam::remove(*this->element, this->members[0]);
    EXPECT_EQ(TypeParam::list(*this->element), (std::vector{this->members[1], this->members[0]}));
    EXPECT_EQ(this->recorder.lines, this->announced("kind 3 at 0+1"));
    EXPECT_TRUE(this->isRelayed(*this->members[0]));
}

TYPED_TEST(StyleElement, RemovesAMemberNamedByTheListItself) {
    this->fill(1);
    this->members.clear();
    TypeParam::remove(*this->element, TypeParam::list(*this->element)[0]);
    EXPECT_TRUE(TypeParam::list(*this->element).empty());
}

// --- moving ----------------------------------------------------------------------------------

TYPED_TEST(StyleElement, AnnouncesAMoveFromOneToThreeAsReplacingOneAndTwo) {
    this->fill(4);
    EXPECT_TRUE(TypeParam::move(*this->element, 1, 3));
    EXPECT_EQ(this->recorder.lines, this->announced("kind 4 at 1+2"));
    const auto& m = this->members;
    EXPECT_EQ(TypeParam::list(*this->element), (std::vector{m[0], m[2], m[3], m[1]}));
}

TYPED_TEST(StyleElement, AnnouncesAMoveForwardFromTheSmallerIndex) {
    this->fill(4);
    EXPECT_TRUE(TypeParam::move(*this->element, 3, 1));
    EXPECT_EQ(this->recorder.lines, this->announced("kind 4 at 1+2"));
    const auto& m = this->members;
    EXPECT_EQ(TypeParam::list(*this->element), (std::vector{m[0], m[3], m[1], m[2]}));
}

TYPED_TEST(StyleElement, AnnouncesAnEmptyRangeForAMoveOntoItself) {
    this->fill(3);
    EXPECT_TRUE(TypeParam::move(*this->element, 2, 2));
    EXPECT_EQ(this->recorder.lines, this->announced("kind 4 at 2+0"));
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
}

TYPED_TEST(StyleElement, ThrowsForMovesOutsideTheListAndLeavesItAsItIs) {
    this->fill(2);
    const std::size_t huge = std::numeric_limits<std::size_t>::max();
    for (const auto& [from, to] : {std::pair<std::size_t, std::size_t>{0, 2},
                                   {2, 0},
                                   {2, 2},
                                   {huge, 1},
                                   {1, std::size_t{1} << 32}}) {
        EXPECT_THROW(TypeParam::move(*this->element, from, to), std::out_of_range);
    }
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
    EXPECT_TRUE(this->recorder.lines.empty());
    typename TypeParam::Element empty;
    EXPECT_THROW(TypeParam::move(empty, 0, 0), std::out_of_range);
}

TYPED_TEST(StyleElement, MovesLikeTakingOutAndPuttingBack) {
    const auto holds = [this] {
        const std::size_t count = *rc::gen::inRange<std::size_t>(1, 9);
        const std::size_t from = *rc::gen::inRange<std::size_t>(0, count);
        const std::size_t to = *rc::gen::inRange<std::size_t>(0, count);
        typename TypeParam::Element moved;
        for (std::size_t i = 0; i < count; ++i) TypeParam::add(moved, this->editing.makeMember());
        auto expected = TypeParam::list(moved);
        const auto member = expected[from];
        std::erase(expected, member);
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(to), member);
        TypeParam::move(moved, from, to);
        RC_ASSERT(TypeParam::list(moved) == expected);
    };
    EXPECT_TRUE(rc::check("a move takes one member out and puts it back", holds));
}

// --- edits within edits -----------------------------------------------------------------------

TYPED_TEST(StyleElement, EditsWhatAnObserverOfTheEditLeftOfTheList) {
    const auto emptied = [this](const auto& edit) {
        this->element = std::make_shared<typename TypeParam::Element>();
        this->members.clear();
        this->fill(3);
        ObservationRecorder emptying;
        emptying.reaction = [&] {
            emptying.reaction = nullptr;
            TypeParam::setList(*this->element, {});
        };
        this->element->addObserver(&emptying, TypeParam::kKey, 1, true);
        edit();
        return TypeParam::list(*this->element).size();
    };
    EXPECT_EQ(emptied([this] { TypeParam::add(*this->element, this->editing.makeMember()); }), 1U);
    EXPECT_EQ(emptied([this] { TypeParam::remove(*this->element, this->members[1]); }), 0U);
    EXPECT_EQ(emptied([this] { TypeParam::move(*this->element, 0, 2); }), 0U);
}

TYPED_TEST(StyleElement, EndsAnEditWithTheElement) {
    const auto ended = [this](const auto& edit) {
        this->element = std::make_shared<typename TypeParam::Element>();
        this->members.clear();
        this->fill(3);
        ObservationRecorder ending;
        ending.reaction = [this] { this->element.reset(); };
        this->element->addObserver(&ending, TypeParam::kKey, 1, true);
        typename TypeParam::Element& edited = *this->element;
        edit(edited);
        return ending.lines.size() == 1 && this->element == nullptr;
    };
    EXPECT_TRUE(ended([this](auto& e) { TypeParam::add(e, this->editing.makeMember()); }));
    EXPECT_TRUE(ended([this](auto& e) { TypeParam::remove(e, this->members[1]); }));
    EXPECT_TRUE(ended([](auto& e) { TypeParam::move(e, 0, 2); }));
}

// --- observation -----------------------------------------------------------------------------

TYPED_TEST(StyleElement, IgnoresNotificationsOfAnyOtherContext) {
    this->fill(0);
    ObservationRecorder drawing;
    this->element->addObserver(&drawing, MzDrawPropertyKey, 1);
    for (const std::int64_t context : {0, 3548, 6848, -1}) {
        this->element->observeValueForKey(MzDrawPropertyKey, nullptr, {}, context);
    }
    EXPECT_EQ(drawing.lines.size(), 1U);
    this->element->observeValueForKey(MzDrawPropertyKey, nullptr, {}, TypeParam::kContext);
    EXPECT_EQ(drawing.lines.size(), 2U);
}

TYPED_TEST(StyleElement, ReplacesTheListWithoutTouchingObservation) {
    this->fill(1);
    const auto listed = this->editing.makeMember();
    TypeParam::setList(*this->element, {nullptr, listed, nullptr});
    EXPECT_EQ(TypeParam::list(*this->element), (std::vector{listed}));
    EXPECT_EQ(this->recorder.lines, (Lines{"will " + std::string(TypeParam::kKey),
                                           "did " + std::string(TypeParam::kKey)}));
    EXPECT_FALSE(this->isRelayed(*listed));
    EXPECT_TRUE(this->isRelayed(*this->members[0]));
}

TYPED_TEST(StyleElement, SharesMembersWithACopyThatDoesNotObserveThem) {
    this->fill(2);
    const auto source = this->element;
    this->element = source->copy();
    EXPECT_EQ(TypeParam::list(*this->element), this->members);
    EXPECT_FALSE(this->isRelayed(*this->members[0]));
    this->element = source;
    EXPECT_TRUE(this->isRelayed(*this->members[0]));
}

TYPED_TEST(StyleElement, LeavesItsMembersToTheOthersWhenACopyEnds) {
    this->fill(1);
    this->element->copy().reset();
    EXPECT_TRUE(this->isRelayed(*this->members[0]));
}

TYPED_TEST(StyleElement, EndsBeforeItsMembersAndAfterThem) {
    this->fill(2);
    TypeParam::setList(*this->element, {this->members[0]});
    this->members[1].reset();
    this->element.reset();
    TypeParam::change(*this->members[0]);
    EXPECT_TRUE(this->recorder.lines.size() == 2U);
}

// --- texts -----------------------------------------------------------------------------------

TYPED_TEST(StyleElement, AnnouncesItsTextsAndNoChangeOfDrawing) {
    for (const char* key : {"name", "title", "abstract", MzDrawPropertyKey}) {
        this->element->addObserver(&this->recorder, key, 1);
    }
    this->element->setName("Roads");
    this->element->setTitle("All roads");
    this->element->setAbstract("Main roads and others");
    EXPECT_EQ(this->recorder.lines, (Lines{"did name (1)", "did title (1)", "did abstract (1)"}));
    EXPECT_EQ(this->element->name(), "Roads");
    EXPECT_EQ(this->element->title(), "All roads");
    EXPECT_EQ(this->element->abstract(), "Main roads and others");
}

}  // namespace
}  // namespace mezalith
