// SPDX-License-Identifier: MIT
#include "host/antimeridian.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

namespace mezalith::host {
namespace {

/// Degrees within which points are on the meridian, at the pole, or the same.
constexpr double kTolerance = 1e-9;
constexpr double kPole = 90;
/// Maps whose coordinates were rounded to a coarse grid stray from the meridian that cut them: of
/// the length of a side as much, and of degrees no more.
constexpr double kStray = 1e-3;
constexpr double kFarthestStray = 1e-4;

double distanceToAntimeridian(MzPoint p) {
    return std::abs(std::abs(std::remainder(p.x, 360)) - 180);
}

bool isAtPole(MzPoint p) { return std::abs(p.y) >= kPole - kTolerance; }

bool isAlongPole(MzPoint p, MzPoint q) { return isAtPole(p) && isAtPole(q) && p.y * q.y > 0; }

bool isArtificial(MzPoint p, MzPoint q) { return isAlongPole(p, q) || isAlongAntimeridian(p, q); }

bool touches(const GlobeRing& ring) {
    for (std::size_t i = 1; i < ring.size(); ++i) {
        if (isArtificial(ring[i - 1], ring[i])) return true;
    }
    return false;
}

/// Latitudes as numbers in order, those within the tolerance being one; the poles among them.
class Latitudes {
  public:
    void add(double latitude) { values_.push_back(latitude); }
    void finish() {
        values_.insert(values_.end(), {-kPole, kPole});
        std::ranges::sort(values_);
        const auto last = std::unique(values_.begin(), values_.end(),
                                      [](double a, double b) { return b - a <= kTolerance; });
        values_.erase(last, values_.end());
    }
    std::size_t count() const { return values_.size(); }
    double at(std::size_t i) const { return values_[i]; }
    std::size_t indexOf(double latitude) const {
        const auto at = std::ranges::lower_bound(values_, latitude - kTolerance);
        return std::min(static_cast<std::size_t>(at - values_.begin()), values_.size() - 1);
    }

  private:
    std::vector<double> values_;
};

/// What is left of rings without their artificial sides, and the sides that have no counterpart.
class Joiner {
  public:
    void add(const GlobeRings& polygon) {
        const std::size_t first = chains_.size();
        GlobeRings closed;
        for (const GlobeRing& ring : polygon) {
            if (ring.size() < 2) continue;
            if (touches(ring)) {
                addChains(ring);
            } else {
                closed.push_back(ring);
            }
        }
        for (GlobeRing& ring : closed) {
            closed_.push_back(std::move(ring));
            guides_.push_back(chains_.size() > first ? first : kNoChain);
        }
    }

    /// Nothing when ends are left over, as for rings that are none.
    std::optional<GlobeRings> finish() {
        addUnmatchedSides();
        for (std::size_t i = 0; i < chains_.size(); ++i) {
            ends_[nodeOf(chains_[i].front())].emplace_back(i, true);
            ends_[nodeOf(chains_[i].back())].emplace_back(i, false);
        }
        for (const auto& [node, ends] : ends_) {
            if (ends.size() % 2 != 0) return std::nullopt;
        }
        isUsed_.resize(chains_.size());
        turns_.resize(chains_.size());
        GlobeRings joined;
        for (std::size_t i = 0; i < chains_.size(); ++i) {
            if (!isUsed_[i]) joined.push_back(ringFrom(i));
        }
        moveClosedRings();
        GlobeRings rings = std::move(closed_);
        std::ranges::move(joined, std::back_inserter(rings));
        return rings;
    }

  private:
    using End = std::pair<std::size_t, bool>;  ///< a chain, and whether it is its start

    static constexpr std::size_t kNoChain = static_cast<std::size_t>(-1);

    void addChains(const GlobeRing& ring) {
        std::size_t start = 1;
        while (!isArtificial(ring[start - 1], ring[start])) ++start;
        // Once around, from behind an artificial side.
        const std::size_t sides = ring.size() - 1;
        GlobeRing chain;
        for (std::size_t i = 0; i < sides; ++i) {
            const MzPoint p = ring[(start + i) % sides], q = ring[(start + i + 1) % sides];
            if (isArtificial(p, q)) {
                endChain(chain);
                if (!isAlongPole(p, q)) sides_.emplace_back(p.y, q.y);
            } else {
                if (chain.empty()) chain.push_back(p);
                chain.push_back(q);
            }
        }
        endChain(chain);
    }

    void endChain(GlobeRing& chain) {
        if (chain.size() > 1) {
            snap(chain.front());
            snap(chain.back());
            chains_.push_back(chain);
        }
        chain.clear();
    }

    /// Moves a point that strays from the meridian onto it.
    static void snap(MzPoint& p) {
        if (distanceToAntimeridian(p) > kFarthestStray) return;
        p.x = std::round((p.x - 180) / 360) * 360 + 180;
    }

    /// Sides of both edges cancel each other; what is left bounds the area on one of them.
    void addUnmatchedSides() {
        for (const auto& [from, to] : sides_) {
            latitudes_.add(from);
            latitudes_.add(to);
        }
        for (const GlobeRing& chain : chains_) {
            latitudes_.add(chain.front().y);
            latitudes_.add(chain.back().y);
        }
        latitudes_.finish();
        std::vector<bool> odd(latitudes_.count());
        for (const auto& [from, to] : sides_) {
            const auto [low, high] =
                std::minmax({latitudes_.indexOf(from), latitudes_.indexOf(to)});
            for (std::size_t i = low; i < high; ++i) odd[i] = !odd[i];
        }
        for (std::size_t i = 0; i + 1 < odd.size(); ++i) {
            if (odd[i]) chains_.push_back({{180, latitudes_.at(i)}, {180, latitudes_.at(i + 1)}});
        }
    }

    /// All ends are on the antimeridian or at a pole.
    std::size_t nodeOf(MzPoint p) const { return latitudes_.indexOf(p.y); }

    /// Follows chains through the nodes where they meet, back to the first one's start.
    GlobeRing ringFrom(std::size_t first) {
        GlobeRing ring;
        std::vector<std::size_t> members;
        const std::size_t home = nodeOf(chains_[first].front());
        End end{first, true};
        take(end);
        for (;;) {
            GlobeRing chain = chains_[end.first];
            if (!end.second) std::ranges::reverse(chain);
            members.push_back(end.first);
            isUsed_[end.first] = true;
            turns_[end.first] = append(ring, chain);
            const std::size_t node = nodeOf(ring.back());
            take({end.first, !end.second});
            if (node == home) break;
            end = ends_.at(node).back();
            take(end);
        }
        const double turns = turnsFromHome(ring);
        move(ring, -turns);
        for (const std::size_t member : members) turns_[member] -= turns;
        return ring;
    }

    /// How many turns to the east the middle of a ring lies; none for one around a pole, which is
    /// in all of them.
    static double turnsFromHome(const GlobeRing& ring) {
        if (std::abs(ring.back().x - ring.front().x) > 180) return 0;
        const auto [west, east] = std::ranges::minmax(ring, {}, &MzPoint::x);
        return std::round((west.x + east.x) / 2 / 360);
    }

    static void move(GlobeRing& ring, double turns) {
        for (MzPoint& p : ring) p.x += turns * 360;
    }

    /// Adds the chain in the turn of the globe where the ring ends, by as many turns to the east.
    static double append(GlobeRing& ring, const GlobeRing& chain) {
        const bool isFirst = ring.empty() || isAtPole(chain.front());
        const double turns = isFirst ? 0 : std::round((ring.back().x - chain.front().x) / 360);
        // Its first point is there already.
        if (!isFirst) ring.pop_back();
        for (const MzPoint p : chain) ring.push_back({p.x + turns * 360, p.y});
        return turns;
    }

    /// Holes and islands follow the outline that they came with.
    void moveClosedRings() {
        for (std::size_t i = 0; i < closed_.size(); ++i) {
            if (guides_[i] != kNoChain) move(closed_[i], turns_[guides_[i]]);
        }
    }

    void take(End end) {
        const GlobeRing& chain = chains_[end.first];
        std::erase(ends_[nodeOf(end.second ? chain.front() : chain.back())], end);
    }

    GlobeRings closed_;
    std::vector<std::size_t> guides_;  ///< of each of them, a chain of its polygon or kNoChain
    std::vector<GlobeRing> chains_;
    std::vector<bool> isUsed_;   ///< of the chains
    std::vector<double> turns_;  ///< by which each of the chains was moved to the east
    std::vector<std::pair<double, double>> sides_;  ///< latitudes
    Latitudes latitudes_;
    std::map<std::size_t, std::vector<End>> ends_;
};

}  // namespace

bool isAlongAntimeridian(MzPoint p, MzPoint q) {
    const double stray = std::clamp(kStray * std::abs(p.y - q.y), kTolerance, kFarthestStray);
    return std::abs(p.x - q.x) <= stray && distanceToAntimeridian(p) <= stray &&
           distanceToAntimeridian(q) <= stray;
}

bool touchesAntimeridian(const GlobeRings& polygon) {
    return std::ranges::any_of(polygon, touches);
}

JoinedPolygons joinedAcrossAntimeridian(const std::vector<GlobeRings>& polygons) {
    JoinedPolygons result;
    Joiner joiner;
    for (const GlobeRings& polygon : polygons) {
        if (!touchesAntimeridian(polygon)) {
            result.apart.push_back(polygon);
            continue;
        }
        joiner.add(polygon);
        result.joinedFrom.insert(result.joinedFrom.end(), polygon.begin(), polygon.end());
    }
    if (result.joinedFrom.empty()) return result;
    std::optional<GlobeRings> joined = joiner.finish();
    if (!joined) return {polygons, {}, {}};
    result.joined = std::move(*joined);
    return result;
}

}  // namespace mezalith::host
