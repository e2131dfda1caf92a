// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/outline_noding.hpp>
#include <mezalith/medialaxis/outline_sweep.hpp>

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

GridSegment segment(GridPoint a, GridPoint b) { return {std::min(a, b), std::max(a, b), false}; }

TEST(OutlineNoding, PartsACrossingAtTheNearestGridPoint) {
    const GridSegments parted =
        partedSegments(GridSegments{segment({0, 0}, {10, 9}), segment({0, 9}, {10, 0})});
    // They cross at (5, 4.5).
    ASSERT_EQ(parted.size(), 4u);
    for (const GridSegment& s : parted) EXPECT_TRUE(s.low.x == 5 || s.high.x == 5);
}

TEST(OutlineNoding, LeavesOutWhatIsThereTwice) {
    EXPECT_TRUE(
        partedSegments(GridSegments{segment({0, 0}, {10, 0}), segment({0, 0}, {10, 0})}).empty());
    EXPECT_EQ(partedSegments(GridSegments(3, segment({0, 0}, {10, 0}))).size(), 1u);
    const auto rest =
        partedSegments(GridSegments{segment({0, 0}, {10, 0}), segment({4, 0}, {6, 0})});
    ASSERT_EQ(rest.size(), 2u);
    EXPECT_EQ(rest[0], segment({0, 0}, {4, 0}));
    EXPECT_EQ(rest[1], segment({6, 0}, {10, 0}));
}

TEST(OutlineNoding, PartsASegmentAtAnEndOnIt) {
    const auto parted =
        partedSegments(GridSegments{segment({0, 0}, {10, 0}), segment({4, 0}, {6, 5})});
    EXPECT_EQ(parted.size(), 3u);
}

TEST(OutlineNoding, LeavesOnlyCommonEnds) {
    test::Random random(20261121);
    for (const std::int32_t size : {6, 40, 2000000000}) {
        for (int i = 0; i < 400; ++i) {
            GridSegments segments;
            for (int k = 0; k < 12; ++k) {
                const auto at = [&] {
                    return static_cast<std::int32_t>(random() % static_cast<std::uint64_t>(size));
                };
                const GridPoint a{at(), at()}, b{at(), at()};
                if (a != b) segments.push_back(segment(a, b));
            }
            GridSegments parted = partedSegments(segments);
            ASSERT_TRUE(findSides(parted).areFound) << size << " " << i;
            // Every piece is close to where something was.
            for (const GridSegment& s : parted) {
                const MzPoint middle{(s.low.x + 0.0 + s.high.x) / 2,
                                     (s.low.y + 0.0 + s.high.y) / 2};
                double least = 1e300;
                for (const GridSegment& t : segments) {
                    least = std::min(least,
                                     test::distanceToSegment(middle, {t.low.x + 0.0, t.low.y + 0.0},
                                                             {t.high.x + 0.0, t.high.y + 0.0}));
                }
                ASSERT_LT(least, 0.72);
            }
        }
    }
}

}  // namespace
}  // namespace mezalith::detail
