// SPDX-License-Identifier: MIT
#include <mezalith/style/draw_context.hpp>
#include <mezalith/style/testing.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

TEST(DrawContext, MakesTheClippingRegionOfItsView) {
    const testing::TestDrawContext context;
    const MzDrawContext& view = context;
    const auto region = MzClippingRegion::initWithDrawContext(&view);
    EXPECT_TRUE(MzEqualRects(region->clippingRect(), {{-1050, -1050}, {2100, 2100}}));
    EXPECT_EQ(region->minSpacing(), 2);
    EXPECT_EQ(region->transform().get(), context.transform.get());
}

TEST(DrawContext, HoldsNoViewsUnlessTheHostSaysHow) {
    class Plain : public testing::TestDrawContext {
      public:
        void addSubview(const std::shared_ptr<platform::View>& child) override {
            MzDrawContext::addSubview(child);
        }
    } context;
    const auto child = std::make_shared<platform::View>();
    context.addSubview(child);
    context.addSubview(nullptr);
    EXPECT_EQ(child->superview(), nullptr);
}

}  // namespace
}  // namespace mezalith
