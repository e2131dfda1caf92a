// SPDX-License-Identifier: MIT
#include <mezalith/platform/log.hpp>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

// Collects the log's lines and restores the receiver that was there before.
class Log : public testing::Test {
  public:
    Log() : before_(setLogSink([this](std::string_view line) { lines_.emplace_back(line); })) {}
    ~Log() override { setLogSink(std::move(before_)); }

  protected:
    std::vector<std::string> lines_;

  private:
    LogSink before_;
};

TEST_F(Log, HandsEachLineToTheSink) {
    log("one");
    log("two, 100%");
    EXPECT_EQ(lines_, (std::vector<std::string>{"one", "two, 100%"}));
}

TEST_F(Log, GivesBackTheSinkBefore) {
    LogSink mine = setLogSink([](std::string_view) {});
    log("not mine");
    setLogSink(std::move(mine));
    log("mine again");
    EXPECT_EQ(lines_, std::vector<std::string>{"mine again"});
}

TEST_F(Log, WritesToStandardErrorWithoutASink) {
    LogSink mine = setLogSink({});
    testing::internal::CaptureStderr();
    log("a line");
    log("");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a line\n\n");
    setLogSink(std::move(mine));
}

TEST_F(Log, LetsASinkLog) {
    LogSink mine = setLogSink([this](std::string_view line) {
        lines_.emplace_back(line);
        if (line == "outer") log("inner");
    });
    log("outer");
    setLogSink(std::move(mine));
    EXPECT_EQ(lines_, (std::vector<std::string>{"outer", "inner"}));
}

TEST_F(Log, LetsASinkReplaceItself) {
    const std::string kept(64, 'k');  // a capture that a destroyed sink would have lost
    LogSink mine = setLogSink([this, kept](std::string_view) {
        setLogSink({});
        lines_.push_back(kept);
    });
    log("replace");
    EXPECT_FALSE(setLogSink(std::move(mine)));
    EXPECT_EQ(lines_, std::vector<std::string>{kept});
}

TEST_F(Log, TakesOneLineAtATimeFromSeveralThreads) {
    std::atomic<int> inside = 0;
    std::atomic<bool> together = false;
    LogSink mine = setLogSink([&](std::string_view line) {
        if (++inside > 1) together = true;
        std::this_thread::yield();
        lines_.emplace_back(line);
        --inside;
    });
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < 250; ++line) log("a whole line");
        });
    }
    for (auto& thread : threads) thread.join();
    setLogSink(std::move(mine));
    EXPECT_FALSE(together);
    EXPECT_EQ(lines_, std::vector<std::string>(1000, "a whole line"));
}

}  // namespace
}  // namespace mezalith::platform
