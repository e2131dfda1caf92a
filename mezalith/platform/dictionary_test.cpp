// SPDX-License-Identifier: MIT
#include <mezalith/platform/dictionary.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Names = Dictionary::Names;

std::string namesOf(const Dictionary& table) {
    std::string names;
    for (const auto& [name, value] : table) names += name;
    return names;
}

TEST(Value, IsNullUntilSet) {
    Value value;
    EXPECT_TRUE(std::holds_alternative<std::monostate>(value));
    value = std::int64_t{7};
    EXPECT_EQ(std::get<std::int64_t>(value), 7);
    EXPECT_NE(value, Value{7.0});
}

TEST(Dictionary, OrdersNamesByTheirBytes) {
    const Dictionary table{{"b", true}, {"\xC3\xA4", 1.5}, {"B", std::string("text")}};
    EXPECT_EQ(namesOf(table), "Bb\xC3\xA4");
    EXPECT_EQ(table.size(), 3u);
    EXPECT_TRUE(table.contains("b"));
    EXPECT_FALSE(table.contains("c"));
    EXPECT_FALSE(table.contains("\xC3\xA4\xC3\xA4"));
}

TEST(Dictionary, KeepsTheLastOfSeveralOfOneName) {
    const Dictionary table{{"a", true}, {"a", 1.5}};
    EXPECT_EQ(table.size(), 1u);
    EXPECT_EQ(*table.find("a"), Value(1.5));
}

TEST(Dictionary, MakesRoomForANewName) {
    Dictionary table;
    EXPECT_TRUE(table.empty());
    EXPECT_EQ(table.find("a"), nullptr);
    table["b"] = 1.0;
    table["a"] = 2.0;
    table["c"];
    table["b"] = 3.0;
    EXPECT_EQ(table, (Dictionary{{"a", 2.0}, {"b", 3.0}, {"c", std::monostate{}}}));
}

TEST(Dictionary, SharesItsNamesUntilItNeedsOthers) {
    const auto names = std::make_shared<const Names>(Names{"a", "b"});
    const Dictionary first(names, {1.0, 2.0});
    Dictionary second(names, {3.0, 4.0});
    EXPECT_EQ(&(*first.begin()).name, &(*second.begin()).name);
    second["ab"] = 5.0;
    EXPECT_EQ(namesOf(second), "aabb");
    EXPECT_EQ(namesOf(first), "ab");
    EXPECT_EQ(*second.find("b"), Value(4.0));
}

TEST(Dictionary, TakesAsManyEntriesAsThereAreNamesAndValues) {
    const auto names = std::make_shared<const Names>(Names{"a", "b"});
    EXPECT_EQ(Dictionary(names, {1.0}), (Dictionary{{"a", 1.0}}));
    EXPECT_EQ(Dictionary(names, {1.0, 2.0, 3.0}), (Dictionary{{"a", 1.0}, {"b", 2.0}}));
    EXPECT_TRUE(Dictionary(nullptr, {1.0}).empty());
}

TEST(Dictionary, IsEqualByWhatItHolds) {
    const auto names = std::make_shared<const Names>(Names{"a"});
    EXPECT_EQ(Dictionary(names, {1.0}), (Dictionary{{"a", 1.0}}));
    EXPECT_FALSE(Dictionary(names, {1.0}) == (Dictionary{{"a", 2.0}}));
    EXPECT_FALSE(Dictionary(names, {1.0}) == (Dictionary{{"b", 1.0}}));
}

}  // namespace
}  // namespace mezalith::platform
