// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <thread>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

TEST(GraphicsContext, IsNullWhereNoneWasMadeCurrent) {
    EXPECT_EQ(GraphicsContext::current(), nullptr);
}

TEST(GraphicsContext, IsCurrentUntilItsScopeEnds) {
    RecordingPort port;
    {
        GraphicsContext context(&port);
        ASSERT_EQ(GraphicsContext::current(), &context);
        EXPECT_EQ(GraphicsContext::current()->graphicsPort(), &port);
    }
    EXPECT_EQ(GraphicsContext::current(), nullptr);
}

TEST(GraphicsContext, NestsAndReturnsToTheOuterOne) {
    RecordingPort outerPort;
    RecordingPort innerPort;
    GraphicsContext outer(&outerPort);
    {
        GraphicsContext inner(&innerPort);
        EXPECT_EQ(GraphicsContext::current()->graphicsPort(), &innerPort);
    }
    EXPECT_EQ(GraphicsContext::current(), &outer);
}

TEST(GraphicsContext, MayHaveNoPort) {
    GraphicsContext context(nullptr);
    ASSERT_EQ(GraphicsContext::current(), &context);
    EXPECT_EQ(GraphicsContext::current()->graphicsPort(), nullptr);
}

TEST(GraphicsContext, BelongsToItsThread) {
    RecordingPort port;
    GraphicsContext context(&port);
    GraphicsContext* seen = &context;
    bool ownIsSeen = false;
    std::thread([&] {
        seen = GraphicsContext::current();
        GraphicsContext own(nullptr);
        ownIsSeen = GraphicsContext::current() == &own;
    }).join();
    EXPECT_EQ(seen, nullptr);
    EXPECT_TRUE(ownIsSeen);
    EXPECT_EQ(GraphicsContext::current(), &context);
}

TEST(PathDrawingMode, HasTheModeNumbersOfTheSymbolizers) {
    EXPECT_EQ(static_cast<int>(PathDrawingMode::Fill), 0);
    EXPECT_EQ(static_cast<int>(PathDrawingMode::EvenOddFill), 1);
    EXPECT_EQ(static_cast<int>(PathDrawingMode::Stroke), 2);
    EXPECT_EQ(static_cast<int>(PathDrawingMode::FillStroke), 3);
    EXPECT_EQ(static_cast<int>(PathDrawingMode::EvenOddFillStroke), 4);
}

}  // namespace
}  // namespace mezalith::platform
