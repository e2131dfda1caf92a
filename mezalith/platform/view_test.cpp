// SPDX-License-Identifier: MIT
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/platform/view.hpp>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::platform {
namespace {

using Lines = std::vector<std::string>;

/// Writes its name down when it is drawn, then reacts.
class NamedView : public View {
  public:
    NamedView(std::string name, MzRect frame, Lines* log)
        : View(frame), name_(std::move(name)), log_(log) {}

    std::function<void()> reaction;
    MzRect lastRect = MzZeroRect;

    void drawRect(MzRect rect) override {
        lastRect = rect;
        log_->push_back(name_);
        if (const std::function<void()> run = reaction) run();
    }

  private:
    std::string name_;
    Lines* log_;
};

class ViewTree : public ::testing::Test {
  protected:
    std::shared_ptr<NamedView> view(const std::string& name, MzRect frame = {{0, 0}, {10, 10}}) {
        return std::make_shared<NamedView>(name, frame, &log);
    }
    /// What is drawn, by name.
    Lines drawn(View& root) {
        RecordingPort port;
        const GraphicsContext context(&port);
        log.clear();
        root.display();
        return log;
    }

    Lines log;
};

TEST_F(ViewTree, StandsAtTheZeroRectangleWithoutParentAndChildren) {
    const View alone;
    EXPECT_TRUE(MzEqualRects(alone.frame(), MzZeroRect));
    EXPECT_EQ(alone.superview(), nullptr);
    EXPECT_TRUE(alone.subviews().empty());
}

TEST_F(ViewTree, HasBoundsFromZeroInTheSizeOfItsFrame) {
    View alone({{3, 4}, {50, 60}});
    EXPECT_TRUE(MzEqualRects(alone.bounds(), {{0, 0}, {50, 60}}));
    alone.setFrameOrigin({-1, -2});
    alone.setFrameSize({7, 8});
    EXPECT_TRUE(MzEqualRects(alone.frame(), {{-1, -2}, {7, 8}}));
    alone.setFrame({{1, 2}, {3, 4}});
    EXPECT_TRUE(MzEqualRects(alone.bounds(), {{0, 0}, {3, 4}}));
}

// --- the tree --------------------------------------------------------------------------------

TEST_F(ViewTree, KeepsChildrenInTheOrderOfAdding) {
    View parent;
    const auto a = view("a"), b = view("b");
    EXPECT_TRUE(parent.addSubview(a));
    EXPECT_TRUE(parent.addSubview(b));
    EXPECT_EQ(parent.subviews(), (View::Views{a, b}));
    EXPECT_EQ(a->superview(), &parent);
}

TEST_F(ViewTree, MovesAChildThatIsAddedAgainToTheTop) {
    View parent;
    const auto a = view("a"), b = view("b");
    for (const auto& added : {a, b, a}) EXPECT_TRUE(parent.addSubview(added));
    EXPECT_EQ(parent.subviews(), (View::Views{b, a}));
}

TEST_F(ViewTree, TakesAViewFromItsFormerParent) {
    View former, later;
    const auto child = view("child");
    former.addSubview(child);
    EXPECT_TRUE(later.addSubview(child));
    EXPECT_TRUE(former.subviews().empty());
    EXPECT_EQ(later.subviews(), (View::Views{child}));
    EXPECT_EQ(child->superview(), &later);
}

TEST_F(ViewTree, RemovesAViewFromItsParent) {
    View parent;
    const auto a = view("a"), b = view("b");
    parent.addSubview(a);
    parent.addSubview(b);
    a->removeFromSuperview();
    EXPECT_EQ(a->superview(), nullptr);
    EXPECT_EQ(parent.subviews(), (View::Views{b}));
    a->removeFromSuperview();
    EXPECT_EQ(parent.subviews(), (View::Views{b}));
}

TEST_F(ViewTree, EndsAViewThatOnlyItsParentOwnedWhenItIsRemoved) {
    View parent;
    parent.addSubview(view("a"));
    const std::weak_ptr<View> child = parent.subviews()[0];
    child.lock()->removeFromSuperview();
    EXPECT_TRUE(child.expired());
    parent.addSubview(view("b"));
    parent.subviews()[0]->removeFromSuperview();
    EXPECT_TRUE(parent.subviews().empty());
}

TEST_F(ViewTree, RefusesNullItselfAndItsAncestors) {
    const auto top = view("top"), middle = view("middle"), bottom = view("bottom");
    top->addSubview(middle);
    middle->addSubview(bottom);
    for (const auto& refused : {std::shared_ptr<NamedView>(), bottom, middle, top}) {
        EXPECT_FALSE(bottom->addSubview(refused));
    }
    EXPECT_TRUE(bottom->subviews().empty());
    EXPECT_EQ(middle->superview(), top.get());
    EXPECT_EQ(top->superview(), nullptr);
}

TEST_F(ViewTree, KnowsWhoStandsBelowWhom) {
    const auto top = view("top"), middle = view("middle"), bottom = view("bottom");
    top->addSubview(middle);
    middle->addSubview(bottom);
    EXPECT_TRUE(bottom->isDescendantOf(top.get()));
    EXPECT_TRUE(bottom->isDescendantOf(bottom.get()));
    EXPECT_FALSE(top->isDescendantOf(bottom.get()));
    EXPECT_FALSE(top->isDescendantOf(nullptr));
}

TEST_F(ViewTree, LeavesChildrenWithoutAParentWhenItEnds) {
    const auto child = view("child");
    {
        View parent;
        parent.addSubview(child);
    }
    EXPECT_EQ(child->superview(), nullptr);
    child->removeFromSuperview();
    EXPECT_EQ(drawn(*child), (Lines{"child"}));
}

TEST_F(ViewTree, OwnsNobodyInACircle) {
    const auto parent = view("parent");
    parent->addSubview(view("child"));
    EXPECT_EQ(parent.use_count(), 1);
    EXPECT_EQ(parent->subviews()[0].use_count(), 1);
}

TEST_F(ViewTree, StandsNoDeeperThanItsLimit) {
    const auto outermost = view("outermost");
    std::shared_ptr<View> innermost = outermost;
    for (int depth = 1; depth < View::kDeepest; ++depth) {
        const auto next = view("next");
        ASSERT_TRUE(innermost->addSubview(next));
        innermost = next;
    }
    EXPECT_FALSE(innermost->addSubview(view("too deep")));
    EXPECT_FALSE(view("above")->addSubview(outermost));
    EXPECT_EQ(drawn(*outermost).size(), std::size_t{View::kDeepest});
}

TEST_F(ViewTree, StaysATreeWhateverIsAddedAndRemoved) {
    EXPECT_TRUE(rc::check("parents and children agree, and nothing is its own ancestor", [this] {
        std::vector<std::shared_ptr<NamedView>> views;
        for (int i = 0; i < 6; ++i) views.push_back(view(std::to_string(i)));
        const auto any = [&] { return *rc::gen::elementOf(views); };
        for (int step = *rc::gen::inRange(0, 30); step > 0; --step) {
            const auto one = any(), other = any();
            if (*rc::gen::arbitrary<bool>()) {
                const bool fits = !one->isDescendantOf(other.get());
                RC_ASSERT(one->addSubview(other) == fits);
            } else {
                one->removeFromSuperview();
            }
        }
        std::size_t children = 0, withParent = 0;
        for (const auto& one : views) {
            children += one->subviews().size();
            for (const auto& child : one->subviews()) RC_ASSERT(child->superview() == one.get());
            withParent += one->superview() != nullptr;
            RC_ASSERT(!(one->superview() && one->superview()->isDescendantOf(one.get())));
        }
        RC_ASSERT(children == withParent);
    }));
}

// --- hits ------------------------------------------------------------------------------------

TEST_F(ViewTree, IsHitWhereTheInnermostViewOnTopIs) {
    const auto root = view("root", {{100, 100}, {50, 50}});
    const auto low = view("low", {{10, 10}, {20, 20}}), high = view("high", {{20, 20}, {20, 20}});
    const auto inner = view("inner", {{5, 5}, {5, 5}});
    root->addSubview(low);
    root->addSubview(high);
    high->addSubview(inner);
    EXPECT_EQ(root->hitTest({99, 120}), nullptr);
    EXPECT_EQ(root->hitTest({101, 101}), root.get());
    EXPECT_EQ(root->hitTest({110, 110}), low.get());
    EXPECT_EQ(root->hitTest({122, 122}), high.get());
    EXPECT_EQ(root->hitTest({125, 129}), inner.get());
    EXPECT_EQ(root->hitTest({130, 130}), high.get());
    EXPECT_EQ(root->hitTest({std::nan(""), 120}), nullptr);
}

TEST_F(ViewTree, DoesNothingOnAButtonByItself) {
    View alone({{0, 0}, {10, 10}});
    alone.mouseDown({});
    EXPECT_TRUE(alone.subviews().empty());
}

// --- drawing ---------------------------------------------------------------------------------

TEST_F(ViewTree, DrawsParentsBeforeChildrenAndChildrenInOrder) {
    const auto root = view("root");
    const auto a = view("a"), b = view("b");
    root->addSubview(a);
    root->addSubview(b);
    a->addSubview(view("a1"));
    EXPECT_EQ(drawn(*root), (Lines{"root", "a", "a1", "b"}));
    EXPECT_TRUE(MzEqualRects(a->lastRect, {{0, 0}, {10, 10}}));
}

TEST_F(ViewTree, DrawsEachViewAtItsOwnOriginAndWithinItsOwnClip) {
    const auto root = view("root", {{1, 2}, {30, 40}});
    root->addSubview(view("child", {{5, 6}, {7, 8}}));
    RecordingPort port;
    const GraphicsContext context(&port);
    root->display();
    const Lines expected{"saveState",           "setShadowWithColor 0 0 0 none",
                         "saveState",           "translate 1 2",
                         "beginPath",           "moveToPoint 0 0",
                         "addLineToPoint 30 0", "addLineToPoint 30 40",
                         "addLineToPoint 0 40", "closeSubpath",
                         "clipEvenOdd",         "saveState",
                         "restoreState",        "saveState",
                         "translate 5 6",       "beginPath",
                         "moveToPoint 0 0",     "addLineToPoint 7 0",
                         "addLineToPoint 7 8",  "addLineToPoint 0 8",
                         "closeSubpath",        "clipEvenOdd",
                         "saveState",           "restoreState",
                         "restoreState",        "restoreState",
                         "restoreState"};
    EXPECT_EQ(port.lines(), expected);
}

TEST_F(ViewTree, DrawsNothingOfWhatIsEmptyOrNotFinite) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const MzRect frame :
         {MzRect{{0, 0}, {0, 10}}, MzRect{{0, 0}, {10, -1}}, MzRect{{std::nan(""), 0}, {10, 10}},
          MzRect{{0, infinity}, {10, 10}}, MzRect{{0, 0}, {infinity, 10}},
          MzRect{{0, 0}, {10, std::nan("")}}}) {
        const auto root = view("root"), hidden = view("hidden", frame);
        root->addSubview(hidden);
        hidden->addSubview(view("below"));
        EXPECT_EQ(drawn(*root), (Lines{"root"}));
    }
}

TEST_F(ViewTree, DrawsNothingWithoutAPort) {
    const auto root = view("root");
    root->display();
    const GraphicsContext nowhere(nullptr);
    root->display();
    EXPECT_TRUE(log.empty());
}

TEST_F(ViewTree, DoesNotDrawAViewThatWasRemovedBeforeItsTurn) {
    const auto root = view("root"), first = view("first");
    root->addSubview(first);
    root->addSubview(view("second"));
    root->addSubview(view("third"));
    first->reaction = [&] { root->subviews()[1]->removeFromSuperview(); };
    EXPECT_EQ(drawn(*root), (Lines{"root", "first", "third"}));
}

TEST_F(ViewTree, OutlivesItsOwnRemovalWhileItIsDrawn) {
    const auto root = view("root");
    root->addSubview(view("leaving"));
    root->addSubview(view("staying"));
    auto& leaving = dynamic_cast<NamedView&>(*root->subviews()[0]);
    leaving.addSubview(view("inner"));
    leaving.reaction = [&] { leaving.removeFromSuperview(); };
    EXPECT_EQ(drawn(*root), (Lines{"root", "leaving", "inner", "staying"}));
    EXPECT_EQ(drawn(*root), (Lines{"root", "staying"}));
}

TEST_F(ViewTree, DrawsAViewThatMovedToAnotherParentOnceAtMost) {
    const auto root = view("root"), first = view("first"), moving = view("moving");
    root->addSubview(first);
    root->addSubview(moving);
    first->reaction = [&] { first->addSubview(moving); };
    EXPECT_EQ(drawn(*root), (Lines{"root", "first"}));
    EXPECT_EQ(drawn(*root), (Lines{"root", "first", "moving"}));
}

}  // namespace
}  // namespace mezalith::platform
