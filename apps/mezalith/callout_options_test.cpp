// SPDX-License-Identifier: MIT
#include "apps/mezalith/callout_options.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"
#include <tests/support/temporary_folder.hpp>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

template <typename Exception>
std::string errorOf(const CalloutTexts& texts) {
    try {
        calloutsOf(texts);
    } catch (const Exception& error) {
        return error.what();
    }
    return {};
}

TEST(CalloutOptions, AskForNoCalloutsAtFirst) { EXPECT_FALSE(calloutsOf({}).has_value()); }

TEST(CalloutOptions, TakeAConditionAndACard) {
    const testing::TemporaryFolder folder;
    const auto card = folder.put("card.json", R"({"format": "mezalith interface", "version": 1,
                                                  "content": {"label": "{name}"}})");
    EXPECT_EQ(calloutsOf({.condition = "name == 'Oslo'"})->count(), 0U);
    EXPECT_TRUE(calloutsOf({.condition = "name == 'Oslo'", .card = card}).has_value());
}

TEST(CalloutOptions, SayWhereAConditionIsWrong) {
    EXPECT_TRUE(errorOf<UsageError>({.condition = "name =="}).starts_with("--callout: line 1, "));
}

TEST(CalloutOptions, SayWhereACardIsWrong) {
    const testing::TemporaryFolder folder;
    const auto card = folder.put("card.json", "{}");
    EXPECT_EQ(errorOf<host::Failure>({.condition = "TRUEPREDICATE", .card = card}),
              card + ": line 1, column 1: no mezalith interface");
}

}  // namespace
}  // namespace mezalith::app
