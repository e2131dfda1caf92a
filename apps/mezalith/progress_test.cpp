// SPDX-License-Identifier: MIT
#include "apps/mezalith/progress.hpp"

#include <array>
#include <memory>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

using namespace std::chrono_literals;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string textOf(const File& file) {
    std::fflush(file.get());
    std::rewind(file.get());
    std::array<char, 1024> text{};
    const std::size_t count = std::fread(text.data(), 1, text.size(), file.get());
    return {text.data(), count};
}

TEST(Progress, WaitsBeforeItShowsAndClearsUp) {
    const File file(std::tmpfile());
    const auto start = Progress::Clock::now();
    {
        Progress progress(true, file.get());
        progress.show("reading", 0.1, start);
        EXPECT_EQ(textOf(file), "");
        progress.show("reading", 0.5, start + 1h);
        EXPECT_EQ(textOf(file), "\r\x1b[Kreading [###############...............]  50 %");
        progress.show("reading", 0.6, start + 1h + 1ms);
        EXPECT_EQ(textOf(file).size(), 50u);
    }
    EXPECT_TRUE(textOf(file).ends_with("%\r\x1b[K"));
}

TEST(Progress, KeepsTheShareWithinTheBar) {
    const File file(std::tmpfile());
    Progress progress(true, file.get());
    progress.show("drawing", 7, Progress::Clock::now() + 1h);
    EXPECT_EQ(textOf(file), "\r\x1b[Kdrawing [##############################] 100 %");
}

TEST(Progress, StaysAwayWhenNotWanted) {
    const File file(std::tmpfile());
    {
        Progress progress(false, file.get());
        progress.show("reading", 0.5, Progress::Clock::now() + 1h);
    }
    EXPECT_EQ(textOf(file), "");
    EXPECT_FALSE(Progress::isWanted(true));
}

}  // namespace
}  // namespace mezalith::app
