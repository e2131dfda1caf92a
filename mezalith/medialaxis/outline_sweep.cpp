// SPDX-License-Identifier: MIT
#include <mezalith/medialaxis/outline_sweep.hpp>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory_resource>
#include <set>
#include <vector>

namespace mezalith::detail {
namespace {

using Index = std::uint32_t;

/// An end of a segment, in the order of the sweep; ends of segments before beginnings.
struct Event {
    std::uint64_t place;
    std::uint64_t segment;  ///< its index, with a higher bit for its beginning

    static constexpr std::uint64_t kBeginning = std::uint64_t{1} << 32;
    bool isBeginning() const { return segment >= kBeginning; }
    Index index() const { return static_cast<Index>(segment); }
    friend auto operator<=>(const Event&, const Event&) = default;
};

std::uint64_t placeOf(GridPoint p) {
    const auto shifted = [](std::int32_t value) {
        return static_cast<std::uint32_t>(value) ^ 0x80000000U;
    };
    return std::uint64_t{shifted(p.x)} << 32 | shifted(p.y);
}

/// A line that moves to the right and keeps the segments under it in order, upwards.
class Sweep {
  public:
    explicit Sweep(std::span<GridSegment> segments)
        : segments_(segments), status_(Below{segments}, &memory_), places_(segments.size()) {
        events_.reserve(2 * segments.size());
        for (std::size_t i = 0; i < segments.size(); ++i) {
            events_.push_back({placeOf(segments[i].low), Event::kBeginning | i});
            events_.push_back({placeOf(segments[i].high), i});
        }
        std::ranges::sort(events_);
    }

    Sides run() {
        for (auto event = events_.begin(); event != events_.end();) {
            const auto next = std::find_if(event, events_.end(),
                                           [&](const Event& e) { return e.place != event->place; });
            isTouching_ = isTouching_ || next - event > 2;
            if (!pass({event, next})) return {};
            event = next;
        }
        return {true, isTouching_};
    }

  private:
    /// A segment under the line, replaced by its successor where one ends and one begins.
    struct Item {
        mutable Index segment;
    };

    struct Below {
        using is_transparent = void;
        std::span<const GridSegment> segments;

        bool operator()(const Item& item, GridPoint p) const {
            const GridSegment& s = segments[item.segment];
            return turn(s.low, s.high, p) > 0;
        }
        bool operator()(const Item& a, const Item& b) const {
            const GridSegment& s = segments[a.segment];
            const GridSegment& t = segments[b.segment];
            if (s.low == t.low) return turn(s.low, s.high, t.high) > 0;
            if (s.low < t.low) return turn(s.low, s.high, t.low) > 0;
            return turn(t.low, t.high, s.low) < 0;
        }
    };

    using Status = std::pmr::set<Item, Below>;
    using Place = Status::iterator;
    using Events = std::span<const Event>;

    GridSegment& segmentAt(Place place) { return segments_[place->segment]; }

    bool areMeeting(Place a, Place b) { return isMeeting(segmentAt(a), segmentAt(b)); }

    /// Whether the place has a neighbour there that it meets.
    bool isMeetingBelow(Place place) {
        return place != status_.begin() && areMeeting(std::prev(place), place);
    }
    bool isMeetingAbove(Place place) {
        return std::next(place) != status_.end() && areMeeting(place, std::next(place));
    }

    /// Moves over one point; false where segments meet.
    bool pass(Events events) {
        if (events.size() == 2 && !events[0].isBeginning() && events[1].isBeginning()) {
            return goOn(events[0].index(), events[1].index());
        }
        const auto beginnings = std::ranges::find_if(events, &Event::isBeginning);
        const auto ends = static_cast<std::size_t>(beginnings - events.begin());
        auto above = status_.end();
        if (ends == 0) {
            const GridPoint p = segments_[events[0].index()].low;
            above = status_.lower_bound(p);
        } else if (!endAll(events.first(ends), above)) {
            return false;
        }
        if (ends == events.size()) {
            return above == status_.end() || !isMeetingBelow(above);
        }
        return beginAll(events.subspan(ends), above);
    }

    /// A segment that goes on where another one ends.
    bool goOn(Index ending, Index beginning) {
        const Place place = places_[ending];
        place->segment = beginning;
        places_[beginning] = place;
        segments_[beginning].isInteriorAbove = segments_[ending].isInteriorAbove;
        return !isMeetingBelow(place) && !isMeetingAbove(place);
    }

    /// Takes out segments that end in one point and finds what is above them. They are neighbours
    /// unless others meet there.
    bool endAll(Events events, Place& above) {
        const GridPoint p = segments_[events[0].index()].high;
        auto first = places_[events[0].index()];
        while (first != status_.begin() && segmentAt(std::prev(first)).high == p) --first;
        std::size_t count = 0;
        above = first;
        while (above != status_.end() && segmentAt(above).high == p) {
            ++above;
            ++count;
        }
        if (count != events.size()) return false;
        status_.erase(first, above);
        return true;
    }

    /// Puts in segments that begin in one point, under the one at `above`.
    bool beginAll(Events events, Place above) {
        begun_.assign(events.begin(), events.end());
        const auto item = [](const Event& e) { return Item{e.index()}; };
        if (begun_.size() > 1) std::ranges::sort(begun_, Below{segments_}, item);
        for (std::size_t i = 1; i < begun_.size(); ++i) {
            if (!Below{segments_}(item(begun_[i - 1]), item(begun_[i]))) return false;
        }
        bool isInside = above != status_.begin() && segmentAt(std::prev(above)).isInteriorAbove;
        for (const Event& event : begun_) {
            const Index index = event.index();
            isInside = !isInside;
            segments_[index].isInteriorAbove = isInside;
            places_[index] = status_.emplace_hint(above, Item{index});
            if (std::next(places_[index]) != above || isMeetingBelow(places_[index])) return false;
        }
        return !isMeetingAbove(places_[begun_.back().index()]);
    }

    std::span<GridSegment> segments_;
    std::pmr::monotonic_buffer_resource upstream_;
    std::pmr::unsynchronized_pool_resource memory_{&upstream_};
    Status status_;
    std::vector<Place> places_;  ///< of the segments under the line
    std::vector<Event> events_;
    std::vector<Event> begun_;
    bool isTouching_ = false;
};

}  // namespace

Sides findSides(std::span<GridSegment> segments) { return Sweep(segments).run(); }

}  // namespace mezalith::detail
