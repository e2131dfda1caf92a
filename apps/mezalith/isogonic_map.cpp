// SPDX-License-Identifier: MIT
#include "apps/mezalith/isogonic_map.hpp"

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>

namespace mezalith::app {
namespace {

using Line = std::vector<MzPoint>;

/// View points from a caption to the edge and to the next one, at scale factor 1.
constexpr double kEdge = 24;
constexpr double kGap = 8;
/// A shorter line carries no caption.
constexpr double kShortest = 70;
constexpr double kCaptionSize = 11;
constexpr double kShares[] = {0.5, 0.35, 0.65, 0.2, 0.8, 0.1, 0.9};

/// A line's pieces whose points lie within `edge` of the view's sides, in view points.
std::vector<Line> runsInView(const host::MapView& view, const Line& line, double edge) {
    const MzProjectionRegion region = view.mapProjection()->region();
    const MzRect bounds = view.projectedBounds();
    const MzSize size = view.frame().size;
    Line places(line.size());
    view.mapProjection()->projectCoordinates(line, places);
    std::vector<Line> runs(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        const MzPoint p{(places[i].x - bounds.origin.x) / view.projectedUnitsPerPixel(),
                        (places[i].y - bounds.origin.y) / view.projectedUnitsPerPixel()};
        if (region.holds(line[i]) && p.x >= edge && p.x <= size.width - edge && p.y >= edge &&
            p.y <= size.height - edge) {
            runs.back().push_back(p);
        } else if (!runs.back().empty()) {
            runs.emplace_back();
        }
    }
    if (runs.back().empty()) runs.pop_back();
    return runs;
}

double lengthOf(const Line& line) {
    double length = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        length += std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y);
    }
    return length;
}

/// The point of the line that has this much of its length behind it.
MzPoint pointAt(const Line& line, double length) {
    for (std::size_t i = 1; i < line.size(); ++i) {
        const double step = std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y);
        if (step >= length) return line[i];
        length -= step;
    }
    return line.back();
}

/// By their angles, whichever their sign.
std::vector<const Isogon*> sortedByAngle(std::span<const Isogon> isogons) {
    std::vector<const Isogon*> sorted;
    for (const Isogon& isogon : isogons) sorted.push_back(&isogon);
    std::ranges::stable_sort(sorted, {}, [](const Isogon* i) { return std::abs(i->level); });
    return sorted;
}

/// Captions that keep their distance.
class Placing {
  public:
    explicit Placing(double gap) : gap_(gap) {}

    /// Adds the caption on the first place along the run where it is free.
    bool place(Caption caption, const Line& run) {
        const double length = lengthOf(run);
        for (const double share : kShares) {
            caption.centre = pointAt(run, length * share);
            const MzRect box = captionBox(caption);
            if (!isFree(box)) continue;
            taken_.push_back(MzInsetRect(box, -gap_, -gap_));
            captions_.push_back(std::move(caption));
            return true;
        }
        return false;
    }

    std::vector<Caption> take() { return std::move(captions_); }

  private:
    bool isFree(MzRect box) const {
        return std::ranges::all_of(
            taken_, [box](MzRect other) { return MzIsEmptyRect(MzIntersectionRect(box, other)); });
    }

    double gap_;
    std::vector<MzRect> taken_;
    std::vector<Caption> captions_;
};

}  // namespace

std::vector<Isogon> isogonsInSight(const host::MapView& view, host::IsogonicLines& lines,
                                   std::span<const double> levels) {
    std::vector<Isogon> isogons;
    for (const double level : levels) {
        Isogon isogon{level, lines.linesOf(level)};
        std::erase_if(isogon.lines,
                      [&](const Line& line) { return runsInView(view, line, 0).empty(); });
        if (!isogon.lines.empty()) isogons.push_back(std::move(isogon));
    }
    return isogons;
}

void drawIsogons(host::MapView& view, std::span<const Isogon> isogons, const IsogonicStyle& style) {
    const auto record =
        std::make_shared<const host::FeatureRecord>(host::FeatureRecord{0, "isogons", {}});
    auto sorted = sortedByAngle(isogons);
    std::ranges::reverse(sorted);
    for (const Isogon* isogon : sorted) {
        for (Line line : isogon->lines) {
            const MzMultiPoint points{static_cast<std::uint32_t>(line.size()), line.data()};
            host::Feature feature(
                record, {host::Form::Line, MzMultiPointGeometry::initWithMultiPoint(points)});
            feature.setStyle(style.style(isogon->level));
            view.draw(feature);
        }
    }
}

std::vector<Caption> isogonCaptions(const host::MapView& view, std::span<const Isogon> isogons,
                                    const IsogonicStyle& style) {
    const double scale = view.frame().scaleFactor;
    Placing placing(kGap * scale);
    for (const Isogon* isogon : sortedByAngle(isogons)) {
        const Caption caption{.text = levelText(isogon->level) + "\u00b0",
                              .size = kCaptionSize * scale,
                              .color = style.color(isogon->level),
                              .halo = platform::Color::whiteColor(),
                              .bold = true};
        for (const Line& line : isogon->lines) {
            for (const Line& run : runsInView(view, line, kEdge * scale)) {
                if (lengthOf(run) >= kShortest * scale) placing.place(caption, run);
            }
        }
    }
    return placing.take();
}

std::string levelText(double level) {
    const std::string text = platform::generalText(level);
    return text.starts_with('-') ? "\u2212" + text.substr(1) : text;
}

}  // namespace mezalith::app
