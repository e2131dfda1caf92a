// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace mezalith::detail {

/// Sets of the numbers from 0 on, each of which is at first a set of its own.
/// Source: Tarjan & van Leeuwen (1984), Worst-case analysis of set union algorithms, Journal of
/// the ACM 31; path halving.
class DisjointSets {
  public:
    explicit DisjointSets(std::size_t count) : parents_(count) {
        std::iota(parents_.begin(), parents_.end(), std::uint32_t{0});
    }

    std::uint32_t find(std::uint32_t member) {
        while (parents_[member] != member) {
            parents_[member] = parents_[parents_[member]];
            member = parents_[member];
        }
        return member;
    }

    /// Makes the sets of both one; false when they are already.
    bool join(std::uint32_t a, std::uint32_t b) {
        a = find(a);
        b = find(b);
        if (a == b) return false;
        // The lesser number stands for the set.
        (a < b ? parents_[b] : parents_[a]) = a < b ? a : b;
        return true;
    }

  private:
    std::vector<std::uint32_t> parents_;
};

}  // namespace mezalith::detail
