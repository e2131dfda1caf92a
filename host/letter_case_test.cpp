// SPDX-License-Identifier: MIT
#include "host/letter_case.hpp"

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

TEST(IsEqualIgnoringCase, ComparesLettersInEitherCase) {
    EXPECT_TRUE(isEqualIgnoringCase(".PnG", ".png"));
    EXPECT_TRUE(isEqualIgnoringCase("", ""));
    EXPECT_FALSE(isEqualIgnoringCase(".png", ".pn"));
    EXPECT_FALSE(isEqualIgnoringCase("{", "["));
    EXPECT_FALSE(isEqualIgnoringCase("@", "`"));
}

}  // namespace
}  // namespace mezalith::host
