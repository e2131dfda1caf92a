// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/json_node.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform::detail {
namespace {

using Kind = JsonNode::Kind;

JsonNode read(std::string_view text) {
    std::string error;
    const auto node = readJson(text, error);
    EXPECT_TRUE(node.has_value()) << error;
    return node.value_or(JsonNode());
}

std::string errorOf(std::string_view text) {
    std::string error;
    EXPECT_FALSE(readJson(text, error).has_value()) << text;
    return error;
}

TEST(JsonNode, HoldsEachKindOfValue) {
    const JsonNode node = read(R"([null, true, -1, 2, 0.5, "a\u00e9", [], {"k": 1}])");
    ASSERT_EQ(node.list.size(), 8U);
    const Kind kinds[] = {Kind::Null,   Kind::Boolean, Kind::Number, Kind::Number,
                          Kind::Number, Kind::Text,    Kind::List,   Kind::Table};
    for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(node.list[i].kind, kinds[i]) << i;
    EXPECT_TRUE(node.list[1].boolean);
    EXPECT_EQ(node.list[2].number, -1);
    EXPECT_EQ(node.list[3].number, 2);
    EXPECT_EQ(node.list[4].number, 0.5);
    EXPECT_EQ(node.list[5].text, "a\u00e9");
    EXPECT_EQ(node.list[7].find("k")->number, 1);
    EXPECT_EQ(node.list[7].find("none"), nullptr);
    EXPECT_EQ(node.list[0].find("k"), nullptr);
}

TEST(JsonNode, KnowsWhereEachValueBegins) {
    const std::string text = "{ \"a\" : [10 ,\n  \"b,:\", {\"c\":12}, 3],\n\"d\":null}";
    const JsonNode node = read(text);
    const auto begins = [&](const JsonNode& value, const char* with) {
        return text.substr(value.position).starts_with(with);
    };
    EXPECT_EQ(node.position, 0U);
    EXPECT_EQ(text.substr(node.table[0].position, 3), "\"a\"");
    EXPECT_EQ(text.substr(node.table[1].position, 3), "\"d\"");
    const JsonNode& list = *node.find("a");
    EXPECT_TRUE(begins(list, "[10"));
    EXPECT_TRUE(begins(list.list[0], "10"));
    EXPECT_TRUE(begins(list.list[1], "\"b"));
    EXPECT_TRUE(begins(list.list[2], "{\"c"));
    EXPECT_TRUE(begins(*list.list[2].find("c"), "12"));
    EXPECT_TRUE(begins(list.list[3], "3]"));
    EXPECT_TRUE(begins(*node.find("d"), "null"));
    EXPECT_EQ(placeOf(text, list.list[1].position), "line 2, column 3");
}

TEST(JsonNode, SaysWhereATextIsWrong) {
    EXPECT_TRUE(errorOf("").starts_with("line 1, column 1: syntax error"));
    EXPECT_TRUE(errorOf("[1,\n  2,,]").starts_with("line 2, column 5: syntax error"));
    EXPECT_TRUE(errorOf("{\"a\": tru}").starts_with("line 1, column 10: syntax error"));
    EXPECT_TRUE(errorOf("[1] x").starts_with("line 1, column 5: syntax error"));
    EXPECT_EQ(errorOf("{\"a\": 1,\n \"a\": 2}"),
              "line 2, column 2: the key \"a\" stands here already");
}

TEST(JsonNode, RefusesNestingThatIsTooDeep) {
    const std::string deep(deepestNode, '['), closing(deepestNode, ']');
    read(deep + closing);
    EXPECT_EQ(errorOf("[" + deep), "line 1, column 65: nested deeper than 64");
}

TEST(JsonNode, RefusesNumbersBeyondTheRangeAndTextThatIsNoUtf8) {
    EXPECT_NE(errorOf("[1e999]"), "");
    EXPECT_NE(errorOf("[NaN]"), "");
    EXPECT_NE(errorOf("[\"\xff\"]"), "");
    EXPECT_NE(errorOf("[\"\\ud800\"]"), "");
}

}  // namespace
}  // namespace mezalith::platform::detail
