// SPDX-License-Identifier: MIT
#include "tests/support/counted_blocks.hpp"
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using mezalith::test::blocks;

/// How many blocks an evaluation takes from the heap, once it has been asked before.
std::size_t blocksTaken(const char* format) {
    const testing::Subject subject(
        {{"kind", std::string("a kind whose name is too long to lie within a string")},
         {"name", std::string("Saint-Pierre-et-Miquelon, Île de la Réunion")},
         {"population", std::int64_t{709037}},
         {"height", 23.5}});
    const auto made = testing::predicate(format);
    made->evaluateWithObject(&subject);
    const std::size_t before = blocks;
    for (int i = 0; i < 10; ++i) made->evaluateWithObject(&subject);
    return blocks - before;
}

TEST(PredicateMemory, IsNotAllocatedToEvaluate) {
    for (const char* format :
         {"kind == 'city' AND table.population > 1000000",
          "kind BEGINSWITH 'a kind' AND kind ENDSWITH 'string' AND kind CONTAINS 'too'",
          "kind LIKE '*long*' AND kind ==[c] 'A KIND' OR kind LIKE[c] 'A KIND*'",
          "name CONTAINS[cd] 'ile de la reunion' AND 'REUNION' IN[cd] name",
          "name IN[cd] {'x', 'oslo', kind, {1, 2}} OR ANY table ==[cd] 'ÉTÉ'",
          "kind MATCHES 'a kind .* string' AND name MATCHES[d] 'Saint.*'",
          "(population + 1) * 2 / 3 ** 2 - -height BETWEEN {0, 1e9} AND nothing == NULL",
          "ALL {population, height, 5} > 0 AND NOT NONE {height} == 2"}) {
        EXPECT_EQ(blocksTaken(format), 0u) << format;
    }
}

TEST(PredicateMemory, IsCounted) {
    const std::size_t before = blocks;
    EXPECT_NE(testing::predicate("a == 1"), nullptr);
    EXPECT_GT(blocks, before);
}

}  // namespace
}  // namespace mezalith::platform
