// SPDX-License-Identifier: MIT
#include <mezalith/platform/observable.hpp>
#include <mezalith/platform/observation_recorder.hpp>

#include <cstdlib>
#include <map>
#include <new>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::size_t allocations = 0;
std::size_t blocks = 0;  // those not freed yet

}  // namespace

// Not inlined: the compiler takes the pair's halves for mismatched when it sees inside one of them.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    ++blocks;
    if (void* block = std::malloc(size)) return block;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* block) noexcept {
    blocks -= block != nullptr;
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

namespace mezalith::platform {
namespace {

using Lines = std::vector<std::string>;
using Recorder = testing::ObservationRecorder;

struct Model : Observable {
    std::map<std::string, std::set<std::string>> dependencies;
    int value = 0;

    std::set<std::string> keyPathsForValuesAffectingValueForKey(
        const std::string& key) const override {
        const auto found = dependencies.find(key);
        return found != dependencies.end() ? found->second : std::set<std::string>{};
    }
    void setValue(int newValue) { setProperty("value", value, newValue); }
    void touch(std::string_view key) {
        changeValues({key}, [] {});
    }
    template <typename Action>
    void change(std::initializer_list<std::string_view> keys, Action action) {
        changeValues(keys, action);
    }
    template <typename Action>
    void changeList(IndexRange indexes, Action action) {
        changeMembers(ChangeKind::Insertion, indexes, "list", action);
    }
    void touchBoth(std::string_view first, std::string_view second) {
        changeValues({first, second}, [this] { value = 9; });
    }
};

TEST(Observable, TellsAnObserverOnceAfterAChangeWithItsContext) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "value", 3548);
    recorder.reaction = [&] { EXPECT_EQ(model.value, 5); };
    model.setValue(5);
    EXPECT_EQ(recorder.lines, (Lines{"did value (3548)"}));
}

TEST(Observable, TellsBeforeTheChangeOnlyWhoAskedForIt) {
    Model model;
    Recorder plain, prior;
    std::vector<int> seen;
    prior.reaction = [&] { seen.push_back(model.value); };
    model.addObserver(&plain, "value", 1);
    model.addObserver(&prior, "value", 2, true);
    model.setValue(7);
    EXPECT_EQ(plain.lines, (Lines{"did value (1)"}));
    EXPECT_EQ(prior.lines, (Lines{"will value (2)", "did value (2)"}));
    EXPECT_EQ(seen, (std::vector<int>{0, 7}));
}

TEST(Observable, HandsOverItselfAsTheObject) {
    struct : Observer {
        Observable* seen = nullptr;
        void observeValueForKey(const std::string&, Observable* object, const Change&,
                                std::int64_t) override {
            seen = object;
        }
    } observer;
    Model model;
    model.addObserver(&observer, "value", 0);
    model.setValue(1);
    EXPECT_EQ(observer.seen, &model);
}

TEST(Observable, TellsNothingOfOtherKeys) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "values", 1);
    model.setValue(1);
    EXPECT_TRUE(recorder.lines.empty());
}

TEST(Observable, PassesListChangesWithTheirIndexes) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "list", 1, true);
    model.willChange(ChangeKind::Insertion, {4, 1}, "list");
    model.didChange(ChangeKind::Insertion, {4, 1}, "list");
    model.willChange(ChangeKind::Removal, {0, 2}, "list");
    model.didChange(ChangeKind::Removal, {0, 2}, "list");
    model.willChange(ChangeKind::Replacement, {1, 0}, "list");
    model.didChange(ChangeKind::Replacement, {1, 0}, "list");
    EXPECT_EQ(recorder.lines, (Lines{"will list kind 2 at 4+1 (1)", "did list kind 2 at 4+1 (1)",
                                     "will list kind 3 at 0+2 (1)", "did list kind 3 at 0+2 (1)",
                                     "will list kind 4 at 1+0 (1)", "did list kind 4 at 1+0 (1)"}));
}

TEST(Observable, NestsPairsOfOneKeyAndOfSeveral) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "a", 1, true);
    model.addObserver(&recorder, "b", 2, true);
    model.willChangeValueForKey("a");
    model.willChangeValueForKey("a");
    model.willChangeValueForKey("b");
    model.didChangeValueForKey("b");
    model.didChangeValueForKey("a");
    model.didChangeValueForKey("a");
    EXPECT_EQ(recorder.lines, (Lines{"will a (1)", "will a (1)", "will b (2)", "did b (2)",
                                     "did a (1)", "did a (1)"}));
}

TEST(Observable, AnnouncesSeveralKeysOfOneChangeNested) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "a", 1, true);
    model.addObserver(&recorder, "b", 2, true);
    model.touchBoth("a", "b");
    EXPECT_EQ(recorder.lines, (Lines{"will a (1)", "will b (2)", "did b (2)", "did a (1)"}));
}

TEST(Observable, IgnoresADidWithoutItsWill) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "value", 1);
    model.didChangeValueForKey("value");
    model.willChangeValueForKey("other");
    model.didChangeValueForKey("value");
    EXPECT_TRUE(recorder.lines.empty());
    model.setValue(1);
    model.didChangeValueForKey("value");
    EXPECT_EQ(recorder.lines, (Lines{"did value (1)"}));
}

TEST(Observable, NotifiesInTheOrderOfRegistration) {
    Model model;
    std::vector<int> order;
    Recorder first, second, third;
    first.reaction = [&] { order.push_back(1); };
    second.reaction = [&] { order.push_back(2); };
    third.reaction = [&] { order.push_back(3); };
    model.addObserver(&second, "value", 0);
    model.addObserver(&third, "value", 0);
    model.addObserver(&first, "value", 0);
    model.setValue(1);
    EXPECT_EQ(order, (std::vector<int>{2, 3, 1}));
}

// --- dependent keys --------------------------------------------------------------------------

TEST(Observable, NotifiesDependentKeysInsideTheSamePair) {
    Model model;
    model.dependencies["area"] = {"width", "height"};
    Recorder recorder;
    model.addObserver(&recorder, "width", 1, true);
    model.addObserver(&recorder, "area", 2, true);
    model.touch("width");
    EXPECT_EQ(recorder.lines,
              (Lines{"will width (1)", "will area (2)", "did width (1)", "did area (2)"}));
}

TEST(Observable, FollowsDependenciesAtAnyRemove) {
    Model model;
    model.dependencies = {{"d", {"c"}}, {"c", {"x", "b"}}, {"b", {"a"}}};
    Recorder recorder;
    model.addObserver(&recorder, "d", 1);
    model.touch("a");
    model.touch("y");
    EXPECT_EQ(recorder.lines, (Lines{"did d (1)"}));
}

TEST(Observable, EndsOnDependenciesInACircle) {
    Model model;
    model.dependencies = {{"a", {"b"}}, {"b", {"c"}}, {"c", {"a", "c"}}};
    Recorder recorder;
    model.addObserver(&recorder, "a", 1);
    model.addObserver(&recorder, "b", 2);
    model.touch("a");
    model.touch("outside");
    EXPECT_EQ(recorder.lines, (Lines{"did a (1)", "did b (2)"}));
}

TEST(Observable, TellsADependentKeyOfAListChangeAsASetting) {
    Model model;
    model.dependencies["drawing"] = {"list"};
    Recorder recorder;
    model.addObserver(&recorder, "drawing", 1, true);
    model.willChange(ChangeKind::Insertion, {2, 1}, "list");
    model.didChange(ChangeKind::Insertion, {2, 1}, "list");
    EXPECT_EQ(recorder.lines, (Lines{"will drawing (1)", "did drawing (1)"}));
}

TEST(Observable, TellsAKeyThatDependsOnItselfOnce) {
    Model model;
    model.dependencies["a"] = {"a"};
    Recorder recorder;
    model.addObserver(&recorder, "a", 1);
    model.touch("a");
    EXPECT_EQ(recorder.lines, (Lines{"did a (1)"}));
}

// --- registrations ---------------------------------------------------------------------------

TEST(Observable, NotifiesEachRegistrationOfOneObserver) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "value", 1);
    model.addObserver(&recorder, "value", 2);
    model.addObserver(&recorder, "value", 2);
    model.setValue(1);
    EXPECT_EQ(recorder.lines, (Lines{"did value (1)", "did value (2)", "did value (2)"}));
}

TEST(Observable, RemovesTheLatestRegistrationOrThatOfAContext) {
    Model model;
    Recorder recorder;
    for (const std::int64_t context : {1, 2, 1, 3}) model.addObserver(&recorder, "value", context);
    model.removeObserver(&recorder, "value");
    model.removeObserver(&recorder, "value", 1);
    model.setValue(1);
    EXPECT_EQ(recorder.lines, (Lines{"did value (1)", "did value (2)"}));
}

TEST(Observable, ToleratesRemovingAnObserverTwice) {
    Model model;
    Recorder removed, other;
    model.addObserver(&removed, "value", 1);
    model.addObserver(&other, "value", 2);
    for (int i = 0; i < 2; ++i) model.removeObserver(&removed, "value");
    for (int i = 0; i < 2; ++i) model.removeObserver(&removed, "value", 1);
    model.removeObserver(&other, "value", 7);
    model.removeObserver(&other, "another");
    model.setValue(1);
    EXPECT_TRUE(removed.lines.empty());
    EXPECT_EQ(other.lines, (Lines{"did value (2)"}));
}

TEST(Observable, ToleratesNullObservers) {
    Model model;
    model.addObserver(nullptr, "value", 1);
    model.removeObserver(nullptr, "value");
    model.setValue(1);
    EXPECT_EQ(model.value, 1);
}

TEST(Observable, LeavesObservationBehindInCopies) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "value", 1);
    Model copy(model);
    Model assigned;
    assigned = model;
    copy.setValue(1);
    assigned.setValue(1);
    EXPECT_TRUE(recorder.lines.empty());
    model = copy;
    model.setValue(2);
    EXPECT_EQ(recorder.lines, (Lines{"did value (1)"}));
}

TEST(Observer, LeavesObservationBehindInCopies) {
    Model model;
    auto recorder = std::make_unique<Recorder>();
    model.addObserver(recorder.get(), "value", 1);
    const Recorder copy(*recorder);
    Recorder assigned;
    assigned = *recorder;
    recorder.reset();
    model.setValue(1);
    EXPECT_TRUE(copy.lines.empty());
    EXPECT_TRUE(assigned.lines.empty());
}

TEST(Observable, AllocatesNothingWhileNobodyObserves) {
    Model model;
    Recorder recorder;
    model.addObserver(&recorder, "value", 1);
    model.removeObserver(&recorder, "value");
    const std::size_t before = allocations;
    model.setValue(1);
    model.willChange(ChangeKind::Insertion, {0, 1}, "a list with a name beyond any small buffer");
    model.didChange(ChangeKind::Insertion, {0, 1}, "a list with a name beyond any small buffer");
    const Model copy;
    EXPECT_EQ(allocations, before);
}

// --- changes during a notification -----------------------------------------------------------

TEST(Observable, ForgetsObserversThatVanished) {
    Model model;
    Recorder other;
    auto vanishing = std::make_unique<Recorder>();
    model.addObserver(vanishing.get(), "value", 1);
    model.addObserver(&other, "value", 2);
    vanishing.reset();
    model.setValue(1);
    EXPECT_EQ(other.lines, (Lines{"did value (2)"}));
}

TEST(Observable, KeepsNothingOfObserversThatVanished) {
    Model model;
    Recorder staying;
    model.addObserver(&staying, "value", 1);
    const auto addAndVanish = [&] {
        Recorder vanishing;
        model.addObserver(&vanishing, "value", 2);
    };
    addAndVanish();
    const std::size_t before = blocks;
    for (int i = 0; i < 10; ++i) addAndVanish();
    EXPECT_EQ(blocks, before);
}

TEST(Observable, DoesNotTakeANewObserverForAVanishedOneAtTheSameAddress) {
    Model model;
    alignas(Recorder) std::byte place[sizeof(Recorder)];
    auto* gone = new (place) Recorder;
    model.addObserver(gone, "value", 1);
    gone->~Recorder();
    auto* late = new (place) Recorder;
    model.addObserver(late, "value", 2);
    model.setValue(1);
    EXPECT_EQ(late->lines, (Lines{"did value (2)"}));
    late->~Recorder();
}

TEST(Observable, SkipsAnObserverThatAnotherOneEndsMeanwhile) {
    Model model;
    Recorder first, last;
    auto victim = std::make_unique<Recorder>();
    first.reaction = [&] { victim.reset(); };
    model.addObserver(&first, "value", 1);
    model.addObserver(victim.get(), "value", 2);
    model.addObserver(&last, "value", 3);
    model.setValue(1);
    EXPECT_EQ(first.lines, (Lines{"did value (1)"}));
    EXPECT_EQ(last.lines, (Lines{"did value (3)"}));
}

TEST(Observable, SurvivesAnObserverThatEndsItselfWhileBeingNotified) {
    Model model;
    Recorder last;
    auto suicidal = std::make_unique<Recorder>();
    suicidal->reaction = [&] { suicidal.reset(); };
    model.addObserver(suicidal.get(), "value", 1);
    model.addObserver(suicidal.get(), "value", 2);
    model.addObserver(&last, "value", 3);
    model.setValue(1);
    EXPECT_EQ(suicidal, nullptr);
    EXPECT_EQ(last.lines, (Lines{"did value (3)"}));
}

TEST(Observable, SkipsRegistrationsTakenOffMeanwhile) {
    Model model;
    Recorder first, second, third;
    first.reaction = [&] {
        model.removeObserver(&first, "value");
        model.removeObserver(&second, "value");
    };
    model.addObserver(&first, "value", 1);
    model.addObserver(&second, "value", 2);
    model.addObserver(&third, "value", 3);
    model.setValue(1);
    EXPECT_EQ(first.lines, (Lines{"did value (1)"}));
    EXPECT_TRUE(second.lines.empty());
    EXPECT_EQ(third.lines, (Lines{"did value (3)"}));
}

TEST(Observable, TellsRegistrationsMadeMeanwhileOnlyOfTheNextPair) {
    Model model;
    Recorder first;
    std::vector<std::unique_ptr<Recorder>> late;
    first.reaction = [&] {
        late.push_back(std::make_unique<Recorder>());
        model.addObserver(late.back().get(), "value", 2);
    };
    model.addObserver(&first, "value", 1, true);
    model.setValue(1);  // adds one before the change and one after it
    ASSERT_EQ(late.size(), 2U);
    EXPECT_TRUE(late[0]->lines.empty());
    EXPECT_TRUE(late[1]->lines.empty());
    first.reaction = nullptr;
    model.setValue(2);
    EXPECT_EQ(late[0]->lines, (Lines{"did value (2)"}));
    EXPECT_EQ(late[1]->lines, (Lines{"did value (2)"}));
}

TEST(Observable, StartsAfreshWhenItsLastObserverIsReplacedInsideAPair) {
    Model model;
    Recorder before, after;
    model.addObserver(&before, "value", 1);
    model.willChangeValueForKey("value");
    model.removeObserver(&before, "value");
    model.addObserver(&after, "value", 2);
    model.didChangeValueForKey("value");
    EXPECT_TRUE(before.lines.empty());
    EXPECT_TRUE(after.lines.empty());
    model.setValue(1);
    EXPECT_EQ(after.lines, (Lines{"did value (2)"}));
}

TEST(Observable, NotifiesChangesMadeByAnObserverAtOnce) {
    Model model;
    Recorder first, second;
    first.reaction = [&] {
        if (model.value < 3) model.setValue(model.value + 1);
    };
    model.addObserver(&first, "value", 1);
    model.addObserver(&second, "value", 2);
    model.setValue(1);
    EXPECT_EQ(model.value, 3);
    EXPECT_EQ(first.lines.size(), 3U);
    EXPECT_EQ(second.lines.size(), 3U);
}

TEST(Observable, MayEndWhileNotifying) {
    auto model = std::make_unique<Model>();
    Recorder first, second;
    first.reaction = [&] { model.reset(); };
    model->addObserver(&first, "value", 1);
    model->addObserver(&second, "value", 2);
    model->setValue(1);
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(first.lines, (Lines{"did value (1)"}));
    EXPECT_TRUE(second.lines.empty());
}

TEST(Observable, IsNotChangedAfterAnObserverEndedItBeforeTheChange) {
    auto model = std::make_unique<Model>();
    Recorder first, second;
    first.reaction = [&] { model.reset(); };
    model->addObserver(&first, "b", 1, true);
    model->addObserver(&second, "a", 2, true);
    bool isChanged = false;
    model->change({"a", "b", "c"}, [&] { isChanged = true; });
    EXPECT_EQ(model, nullptr);
    EXPECT_FALSE(isChanged);
    EXPECT_EQ(first.lines, (Lines{"will b (1)"}));
    EXPECT_EQ(second.lines, (Lines{"will a (2)"}));
}

TEST(Observable, AnnouncesNoMoreAfterAnObserverEndedItAfterTheChange) {
    auto model = std::make_unique<Model>();
    Recorder first, second;
    first.reaction = [&] { model.reset(); };
    model->addObserver(&first, "b", 1);
    model->addObserver(&second, "a", 2);
    bool isChanged = false;
    model->change({"a", "b"}, [&] { isChanged = true; });
    EXPECT_TRUE(isChanged);
    EXPECT_EQ(first.lines, (Lines{"did b (1)"}));
    EXPECT_TRUE(second.lines.empty());
}

TEST(Observable, IsNotChangedAfterItsOnlyObserverLeftAndEndedIt) {
    auto model = std::make_unique<Model>();
    Recorder only;
    only.reaction = [&] {
        model->removeObserver(&only, "a");
        model.reset();
    };
    model->addObserver(&only, "a", 1, true);
    bool isChanged = false;
    model->change({"a"}, [&] { isChanged = true; });
    EXPECT_FALSE(isChanged);
}

TEST(Observable, MayEndWithItsOwnChange) {
    auto model = std::make_unique<Model>();
    Recorder recorder;
    model->addObserver(&recorder, "a", 1);
    model->change({"a"}, [&] { model.reset(); });
    EXPECT_TRUE(recorder.lines.empty());
}

TEST(Observable, DropsAChangeOfAListWhenAnObserverEndsIt) {
    for (const bool prior : {true, false}) {
        auto model = std::make_unique<Model>();
        Recorder recorder;
        recorder.reaction = [&] { model.reset(); };
        model->addObserver(&recorder, "list", 1, prior);
        bool isChanged = false;
        model->changeList({2, 1}, [&] { isChanged = true; });
        EXPECT_EQ(model, nullptr);
        EXPECT_EQ(isChanged, !prior);
        const std::string time = prior ? "will" : "did";
        EXPECT_EQ(recorder.lines, (Lines{time + " list kind 2 at 2+1 (1)"}));
    }
}

TEST(Observable, MayEndTogetherWithTheObserverBeingNotified) {
    struct Pair {
        Model model;
        Recorder recorder;
    };
    auto pair = std::make_unique<Pair>();
    pair->recorder.reaction = [&] { pair.reset(); };
    pair->model.addObserver(&pair->recorder, "value", 1);
    pair->model.setValue(1);
    EXPECT_EQ(pair, nullptr);
}

TEST(Observable, MayEndBeforeItsObservers) {
    Recorder recorder;
    {
        Model model;
        model.addObserver(&recorder, "value", 1);
    }
    Model other;
    other.addObserver(&recorder, "value", 2);
    other.setValue(1);
    EXPECT_EQ(recorder.lines, (Lines{"did value (2)"}));
}

}  // namespace
}  // namespace mezalith::platform
