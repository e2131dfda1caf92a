// SPDX-License-Identifier: MIT
#include <mezalith/index/indexable.hpp>
#include <mezalith/index/tree_node.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

struct Lighthouse : MzIndexable {
    std::shared_ptr<MzGeometry> geometry() const override { return nullptr; }
};

TEST(Indexable, IsFoundAgainFromTheObjectOfALeaf) {
    Lighthouse lighthouse;
    const auto leaf = MzTreeLeafNode::initWithBounds(MzZeroRect, &lighthouse);
    const auto* found = dynamic_cast<MzIndexable*>(leaf->object());
    ASSERT_EQ(found, &lighthouse);
    EXPECT_EQ(found->geometry(), nullptr);
}

}  // namespace
}  // namespace mezalith
