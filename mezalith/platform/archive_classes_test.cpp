// SPDX-License-Identifier: MIT
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/shadow.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::KeyedStore;

TEST(ArchiveClasses, MakesAnObjectOfTheClassOfThisName) {
    const ArchiveClasses classes = ArchiveClasses::platformClasses();
    KeyedStore color;
    Color::cyanColor()->encodeWithCoder(color);
    const Shadow original;
    KeyedStore shadow;
    original.encodeWithCoder(shadow);
    EXPECT_NE(dynamic_cast<const Color*>(classes.make("Color", color).get()), nullptr);
    EXPECT_NE(dynamic_cast<const Shadow*>(classes.make("Shadow", shadow).get()), nullptr);
}

TEST(ArchiveClasses, MakesNothingOfOtherNames) {
    const ArchiveClasses classes = ArchiveClasses::platformClasses();
    EXPECT_TRUE(classes.contains("Color"));
    EXPECT_FALSE(classes.contains("color"));
    EXPECT_FALSE(ArchiveClasses().contains("Color"));
    EXPECT_EQ(classes.make("color", KeyedStore()), nullptr);
    EXPECT_EQ(classes.make("", KeyedStore()), nullptr);
}

TEST(ArchiveClasses, AnswersNullWhenTheClassDoes) {
    EXPECT_EQ(ArchiveClasses::platformClasses().make("Color", KeyedStore()), nullptr);
    ArchiveClasses classes;
    classes.add("Nothing", {});
    EXPECT_EQ(classes.make("Nothing", KeyedStore()), nullptr);
}

TEST(ArchiveClasses, ReplacesAClassOfTheSameName) {
    ArchiveClasses classes = ArchiveClasses::platformClasses();
    classes.add("Color", [](const KeyedUnarchiver&) { return Color::blackColor(); });
    const auto made = classes.make("Color", KeyedStore());
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(Color::blackColor()->isEqualToColor(dynamic_cast<const Color*>(made.get())));
}

}  // namespace
}  // namespace mezalith::platform
