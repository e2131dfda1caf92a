// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_dashing.hpp>
#include <mezalith/platform/path_pieces.hpp>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace mezalith::platform {
namespace {

bool isLength(double value) { return std::isfinite(value) && value >= 0; }

/// `phase` within one period.
double reducedPhase(double phase, double period) {
    const double reduced = std::fmod(phase, period);
    if (!std::isfinite(reduced)) {
        return 0;
    }
    return reduced < 0 ? reduced + period : reduced;
}

/// A place in a pattern: the entry, and what is left of it.
struct Place {
    std::size_t index;
    double remaining;
};

Place placeAt(double phase, std::span<const double> lengths) {
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        if (phase < lengths[i] || phase == 0) {
            return {i, lengths[i] - phase};
        }
        phase -= lengths[i];
    }
    return {0, lengths[0]};
}

double sum(std::span<const double> lengths) {
    return std::accumulate(lengths.begin(), lengths.end(), 0.0);
}

/// Walks one polyline and collects its painted pieces.
class Dasher {
  public:
    Dasher(const DashPattern& pattern, const DeviceBox& box)
        : pattern_(pattern), box_(box), period_(dashPeriod(pattern)) {}

    void run(const DevicePolyline& line, DevicePath& path) {
        const std::vector<MzPoint>& points = line.points;
        place_ = placeAt(pattern_.phase, pattern_.lengths);
        const bool beginsPainted = isPainted();
        for (std::size_t i = 1; i < points.size(); ++i) {
            walk(points[i - 1], points[i]);
        }
        if (!line.isClosed) {
            pieces_.addOpen(path);
            return;
        }
        walk(points.back(), points.front());
        if (beginsPainted) {
            pieces_.addRing(path, points.front());
        } else {
            pieces_.addOpen(path);
        }
    }

  private:
    const DashPattern& pattern_;
    DeviceBox box_;
    double period_;
    Place place_{};
    detail::PathPieces pieces_;

    bool isPainted() const { return place_.index % 2 == 0; }

    void skip(double distance) {
        const double begun = pattern_.lengths[place_.index] - place_.remaining;
        const double before = sum(std::span(pattern_.lengths).first(place_.index));
        place_ = placeAt(reducedPhase(before + begun + distance, period_), pattern_.lengths);
        pieces_.interrupt();
    }

    /// Goes on by at most `distance` within the current entry; how far it went.
    double step(double distance) {
        const double length = std::min(distance, place_.remaining);
        place_.remaining -= length;
        return length;
    }

    void nextEntry() {
        if (place_.remaining > 0) {
            return;
        }
        place_.index = (place_.index + 1) % pattern_.lengths.size();
        place_.remaining = pattern_.lengths[place_.index];
        pieces_.interrupt();
    }

    void walk(MzPoint a, MzPoint b) {
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        const SegmentPart part = segmentWithin(a, b, box_);
        if (part.isEmpty() || !(length > 0)) {
            skip(length);
            return;
        }
        if (part.from > 0) {
            skip(part.from * length);
        }
        walkWithin(pointOnSegment(a, b, part.from), pointOnSegment(a, b, part.to));
        if (part.to < 1) {
            skip((1 - part.to) * length);
        }
    }

    void walkWithin(MzPoint a, MzPoint b) {
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        MzPoint from = a;
        for (double done = 0; done < length;) {
            done += step(length - done);
            const MzPoint to = pointOnSegment(a, b, std::min(done / length, 1.0));
            if (isPainted()) {
                pieces_.draw(from, to);
            }
            nextEntry();
            from = to;
        }
    }
};

}  // namespace

double dashPeriod(const DashPattern& pattern) { return sum(pattern.lengths); }

DashPattern makeDashPattern(double phase, std::span<const double> lengths, double scale) {
    if (!std::ranges::all_of(lengths, isLength)) {
        return {};
    }
    DashPattern pattern{0, {lengths.begin(), lengths.end()}};
    if (lengths.size() % 2 != 0) {
        pattern.lengths.insert(pattern.lengths.end(), lengths.begin(), lengths.end());
    }
    for (double& length : pattern.lengths) {
        length *= scale;
    }
    const double period = sum(pattern.lengths);
    if (!(period > 0)) {
        return {};
    }
    const Place place = placeAt(reducedPhase(phase * scale, period), pattern.lengths);
    for (double& length : pattern.lengths) {
        length = std::min(length, longestDash);
    }
    pattern.phase = sum(std::span(pattern.lengths).first(place.index + 1)) -
                    std::min(place.remaining, pattern.lengths[place.index]);
    return pattern;
}

DevicePath dashedPath(std::span<const DevicePolyline> lines, const DashPattern& pattern,
                      const DeviceBox& box) {
    DevicePath path;
    Dasher dasher(pattern, box);
    for (const DevicePolyline& line : lines) {
        dasher.run(line, path);
    }
    return path;
}

}  // namespace mezalith::platform
