// SPDX-License-Identifier: MIT
#include <mezalith/medialaxis/skeleton_branches.hpp>

#include <algorithm>
#include <queue>
#include <ranges>
#include <utility>

namespace mezalith::detail {
namespace {

/// Arcs by node: those of node i are from firsts[i] to firsts[i + 1].
void groupByNode(const MzPolygonSkeleton& skeleton, std::vector<std::uint32_t>& firsts,
                 std::vector<std::uint32_t>& arcs) {
    firsts.assign(skeleton.nodes().size() + 1, 0);
    for (const MzSkeletonArc& arc : skeleton.arcs()) {
        ++firsts[arc.start + 1];
        ++firsts[arc.end + 1];
    }
    for (std::size_t i = 1; i < firsts.size(); ++i) firsts[i] += firsts[i - 1];
    arcs.resize(2 * skeleton.arcs().size());
    std::vector<std::uint32_t> next = firsts;
    for (std::uint32_t i = 0; i < skeleton.arcs().size(); ++i) {
        arcs[next[skeleton.arcs()[i].start]++] = i;
        arcs[next[skeleton.arcs()[i].end]++] = i;
    }
}

}  // namespace

SkeletonBranches::SkeletonBranches(const MzPolygonSkeleton& skeleton) : skeleton_(skeleton) {
    groupByNode(skeleton, firstArcs_, arcs_);
    burn();
}

void SkeletonBranches::burn() {
    const auto& nodes = skeleton_.nodes();
    std::vector<std::uint32_t> left(nodes.size());
    std::vector<double> moments(nodes.size());
    std::vector<bool> isBurnt(skeleton_.arcs().size());
    using Fire = std::pair<double, std::uint32_t>;
    std::priority_queue<Fire, std::vector<Fire>, std::greater<>> fires;
    for (std::uint32_t i = 0; i < nodes.size(); ++i) {
        left[i] = firstArcs_[i + 1] - firstArcs_[i];
        moments[i] = nodes[i].clearance;
        if (left[i] == 1) fires.emplace(moments[i], i);
        if (left[i] == 0) middles_.push_back(i);
    }
    while (!fires.empty()) {
        const std::uint32_t node = fires.top().second;
        fires.pop();
        // The other end's fire may have been quicker.
        if (left[node] != 1) continue;
        const auto arc =
            *std::find_if(arcs_.begin() + firstArcs_[node], arcs_.begin() + firstArcs_[node + 1],
                          [&](std::uint32_t a) { return !isBurnt[a]; });
        const MzSkeletonArc& way = skeleton_.arcs()[arc];
        const std::uint32_t inner = way.start == node ? way.end : way.start;
        const double reach = moments[node] + skeleton_.lengthOfArc(way);
        burnings_.push_back({arc, inner, reach});
        isBurnt[arc] = true;
        left[node] = 0;
        moments[inner] = std::max(moments[inner], reach);
        if (--left[inner] == 1) fires.emplace(moments[inner], inner);
        if (left[inner] == 0) middles_.push_back(inner);
    }
}

std::vector<bool> SkeletonBranches::kept(
    const std::function<bool(double reach, double clearance)>& isKept) const {
    const auto& nodes = skeleton_.nodes();
    std::vector<bool> stays(skeleton_.arcs().size(), true);
    std::vector<bool> isNodeGone(nodes.size());
    for (const Burning& burning : std::views::reverse(burnings_)) {
        const std::uint32_t inner = burning.inner;
        const bool isFork = firstArcs_[inner + 1] - firstArcs_[inner] > 2;
        if (!isNodeGone[inner] && (!isFork || isKept(burning.reach, nodes[inner].clearance))) {
            continue;
        }
        const MzSkeletonArc& arc = skeleton_.arcs()[burning.arc];
        stays[burning.arc] = false;
        isNodeGone[arc.start == inner ? arc.end : arc.start] = true;
    }
    return stays;
}

}  // namespace mezalith::detail
