// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/json/archive_probe.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::documentOf;

/// An object that holds others.
class Node final : public Archivable {
  public:
    std::string name;
    std::vector<std::shared_ptr<const Node>> nodes;
    std::shared_ptr<const Color> color;
    const Node* borrowed = nullptr;  ///< in place of the nodes

    std::string_view archiveClassName() const override { return "Node"; }

    void encodeWithCoder(KeyedArchiver& coder) const override {
        std::vector<const Archivable*> members;
        for (const auto& node : nodes) members.push_back(node.get());
        if (borrowed != nullptr) members.push_back(borrowed);
        coder.encodeString(name, "name");
        coder.encodeObjects(members, "nodes");
        coder.encodeObject(color.get(), "color");
    }

    static std::shared_ptr<const Archivable> initWithCoder(const KeyedUnarchiver& coder) {
        auto node = std::make_shared<Node>();
        node->name = coder.decodeString("name");
        for (const auto& member : coder.decodeObjects("nodes")) {
            node->nodes.push_back(std::dynamic_pointer_cast<const Node>(member));
        }
        node->color = decodedObject<Color>(coder, "Color", "color").value_or(nullptr);
        return node;
    }
};

const ArchiveClasses& classes() {
    static const ArchiveClasses kClasses = [] {
        ArchiveClasses all = ArchiveClasses::platformClasses();
        all.add("Node", Node::initWithCoder, {"name", "nodes", "color"});
        return all;
    }();
    return kClasses;
}

std::shared_ptr<const Node> read(const std::string& text) {
    const auto result = unarchivedText(text, classes());
    EXPECT_EQ(result.error, "");
    return std::dynamic_pointer_cast<const Node>(result.object);
}

std::string errorOf(const std::string& root) {
    const auto result = unarchivedText(documentOf(root), classes());
    EXPECT_EQ(result.object, nullptr);
    return result.error;
}

/// A node that holds `nodes` of this name.
std::shared_ptr<Node> node(const std::string& name,
                           std::vector<std::shared_ptr<const Node>> nodes) {
    auto result = std::make_shared<Node>();
    result->name = name;
    result->nodes = std::move(nodes);
    return result;
}

TEST(KeyedArchiveSharing, WritesAnObjectOnceAndRefersToIt) {
    const auto leaf = node("leaf", {});
    const auto root = node("root", {leaf, node("other", {leaf}), leaf});
    EXPECT_EQ(archivedText(root.get()), R"({
 "format": "mezalith archive",
 "version": 1,
 "root": {
  "class": "Node",
  "name": "root",
  "nodes": [
   {
    "class": "Node",
    "id": 1,
    "name": "leaf",
    "nodes": [],
    "color": null
   },
   {
    "class": "Node",
    "name": "other",
    "nodes": [
     {
      "ref": 1
     }
    ],
    "color": null
   },
   {
    "ref": 1
   }
  ],
  "color": null
 }
}
)");
}

TEST(KeyedArchiveSharing, ReadsOneObjectAgain) {
    const auto leaf = node("leaf", {});
    const auto twin = node("leaf", {});
    const auto root = node("root", {leaf, node("other", {twin, leaf}), leaf});
    for (const bool asText : {true, false}) {
        const auto result = asText ? unarchivedText(archivedText(root.get()), classes())
                                   : unarchivedBytes(archivedBytes(root.get()), classes());
        const auto* back = dynamic_cast<const Node*>(result.object.get());
        ASSERT_NE(back, nullptr) << result.error;
        EXPECT_EQ(back->nodes[0], back->nodes[2]);
        EXPECT_EQ(back->nodes[0], back->nodes[1]->nodes[1]);
        EXPECT_NE(back->nodes[0], back->nodes[1]->nodes[0]);
        EXPECT_EQ(archivedText(back), archivedText(root.get()));
    }
}

TEST(KeyedArchiveSharing, NumbersObjectsInTheOrderWritten) {
    const auto a = node("a", {});
    const auto b = node("b", {a});
    const auto root = node("root", {b, a, b});
    const auto back = read(archivedText(root.get()));
    EXPECT_EQ(back->nodes[0], back->nodes[2]);
    EXPECT_EQ(back->nodes[0]->nodes[0], back->nodes[1]);
    EXPECT_LT(archivedText(root.get()).find(R"("id": 1)"),
              archivedText(root.get()).find(R"("id": 2)"));
}

TEST(KeyedArchiveSharing, GivesNoNumberToWhatIsText) {
    const auto color = Color::cyanColor();
    const auto root = node("root", {});
    const auto child = node("child", {});
    root->color = child->color = color;
    root->nodes = {child};
    EXPECT_EQ(archivedText(root.get()).find("\"id\""), std::string::npos);
}

TEST(KeyedArchiveSharing, ReadsReferencesInAnyOrder) {
    const auto root = read(documentOf(
        R"({"class":"Node","nodes":[{"ref":2},{"ref":1},{"class":"Node","id":2,"name":"two",)"
        R"("nodes":[{"ref":1}]},{"id":1,"class":"Node","name":"one"}]})"));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->nodes[0]->name, "two");
    EXPECT_EQ(root->nodes[0], root->nodes[2]);
    EXPECT_EQ(root->nodes[1], root->nodes[3]);
    EXPECT_EQ(root->nodes[1], root->nodes[0]->nodes[0]);
}

TEST(KeyedArchiveSharing, RefusesReferencesThatLeadNowhere) {
    EXPECT_EQ(errorOf(R"({"class":"Node","nodes":[{"ref":1}]})"),
              "line 1, column 74: /root/nodes/0: no object has the id 1");
    EXPECT_EQ(errorOf(R"({"class":"Node","nodes":[{"ref":"1"}]})"),
              "line 1, column 81: /root/nodes/0: a text, not a whole number");
    EXPECT_EQ(errorOf(R"({"class":"Node","nodes":[{"ref":1,"class":"Node"}]})"),
              "line 1, column 74: /root/nodes/0: \"ref\" beside other keys");
    EXPECT_EQ(errorOf(R"({"class":"Node","id":1.5})"),
              "line 1, column 70: /root: the number 1.5, not a whole number");
    EXPECT_EQ(errorOf(R"({"class":"Node","id":7,"nodes":[{"class":"Node","id":7}]})"),
              "line 1, column 70: a second object with the id 7");
}

TEST(KeyedArchiveSharing, RefusesCircles) {
    EXPECT_EQ(errorOf(R"({"class":"Node","id":1,"nodes":[{"ref":1}]})"),
              "line 1, column 81: /root/nodes/0: an object that it stands in");
    EXPECT_EQ(errorOf(R"({"class":"Node","nodes":[{"class":"Node","id":1,"nodes":[{"ref":2}]},)"
                      R"({"class":"Node","id":2,"nodes":[{"ref":1}]}]})"),
              "line 1, column 150: /root/nodes/0/nodes/0/nodes/0: an object that it stands in");
}

TEST(KeyedArchiveSharing, WritesNullWhereAnObjectStandsWithinItself) {
    Node a;
    Node b;
    a.borrowed = &b;
    b.borrowed = &a;
    const auto back = read(archivedText(&a));
    ASSERT_NE(back, nullptr);
    ASSERT_EQ(back->nodes.size(), 1);
    EXPECT_EQ(back->nodes[0]->nodes[0], nullptr);
}

// --- depth

std::size_t depthOf(const Node* root) {
    std::size_t depth = 0;
    for (; root != nullptr; ++depth) {
        root = root->nodes.empty() ? nullptr : root->nodes[0].get();
    }
    return depth;
}

TEST(KeyedArchiveSharing, WritesWhatCanBeReadAgain) {
    auto chain = node("", {});
    for (int i = 0; i < 1000; ++i) chain = node("", {chain});
    // A root at level 2, two levels a node, three for the last: levels 2 to 128.
    EXPECT_EQ(depthOf(read(archivedText(chain.get())).get()), 63);
    while (depthOf(chain.get()) > 1) {
        // The chain goes from the front, so that releasing it does not nest.
        chain = std::const_pointer_cast<Node>(chain->nodes[0]);
    }
}

/// A list of objects in which each but the last refers to the next.
std::string chainOfReferences(int count, bool forwards) {
    std::string text = R"({"class":"Node","nodes":[)";
    for (int i = 1; i <= count; ++i) {
        const int next = forwards ? i + 1 : i - 1;
        const bool isLast = next == 0 || next > count;
        text += R"({"class":"Node","id":)" + std::to_string(i) + R"(,"nodes":[)" +
                (isLast ? std::string() : R"({"ref":)" + std::to_string(next) + "}") + "]},";
    }
    text.back() = ']';
    return text + "}";
}

TEST(KeyedArchiveSharing, CountsTheDepthOfReferences) {
    for (const bool forwards : {true, false}) {
        EXPECT_NE(read(documentOf(chainOfReferences(62, forwards))), nullptr);
        const std::string error = errorOf(chainOfReferences(63, forwards));
        EXPECT_TRUE(error.ends_with("nested deeper than 128")) << error;
        const std::string far = errorOf(chainOfReferences(20000, forwards));
        EXPECT_TRUE(far.ends_with("nested deeper than 128")) << far;
    }
}

TEST(KeyedArchiveSharing, ReadsASharedObjectOnceHoweverOftenItStandsThere) {
    // Each holds the one before twice: two to the power of forty ways to the first.
    auto twice = node("", {});
    for (int i = 0; i < 40; ++i) twice = node("", {twice, twice});
    const std::string text = archivedText(twice.get());
    EXPECT_LT(text.size(), 30000);
    EXPECT_EQ(archivedText(read(text).get()), text);
}

}  // namespace
}  // namespace mezalith::platform
