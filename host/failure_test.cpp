// SPDX-License-Identifier: MIT
#include "host/failure.hpp"

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

TEST(Failure, SaysWhatAndWhy) {
    EXPECT_STREQ(Failure("sea.gpkg", "no such file").what(), "sea.gpkg: no such file");
}

TEST(Failure, IsOneLineWhateverItIsTold) {
    EXPECT_STREQ(Failure("a\nb", "first\r\n\tsecond \n").what(), "a b: first second");
}

TEST(Failure, CanBeToldAboutSomethingLarger) {
    const Failure inner("byte 5", "the count is missing");
    EXPECT_STREQ(inner.within("x.wkb").what(), "x.wkb: byte 5: the count is missing");
}

TEST(InOneLine, KeepsEverythingElse) {
    EXPECT_EQ(inOneLine("Lake\rLadoga  \x7f caf\xc3\xa9"), "Lake Ladoga caf\xc3\xa9");
    EXPECT_EQ(inOneLine(" \n"), "");
}

}  // namespace
}  // namespace mezalith::host
