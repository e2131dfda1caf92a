// SPDX-License-Identifier: MIT
#include <mezalith/platform/area_touch.hpp>
#include <mezalith/platform/bitmap_touch.hpp>
#include <mezalith/platform/hit_picture.hpp>
#include <mezalith/platform/stroke_touch.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace mezalith::platform::detail {
namespace {

constexpr double smallestGrain = 0.25;
constexpr double grainsPerRadius = 16;

/// As wide as ports draw, device units.
constexpr double largestWidth = 1 << 15;

DevicePath mapped(DevicePath path, const AffineTransform& transform) {
    path.transform(transform);
    return path;
}

/// What of the spot is within all clips, each mapped to the device.
Spot withinClips(const Spot& spot, const Clips& clips, const AffineTransform& placement) {
    Spot rest = spot;
    for (const auto& clip : clips) {
        rest = rest.within(mapped(*clip, placement));
    }
    return rest;
}

/// Tries a mark of a picture that is placed on the device.
struct MarkAtSpot {
    const AffineTransform& placement;
    const Spot& spot;

    bool operator()(const AreaMark& mark) const {
        return spot.touchesArea(mapped(mark.path, placement), mark.rule);
    }
    bool operator()(const StrokeMark& mark) const {
        return spot.touchesStroke(mapped(mark.path, placement), mark.style,
                                  placement.prepending(mark.transform));
    }
    bool operator()(const BitmapMark& mark) const {
        return spot.touchesBitmap(*mark.bitmap, placement.prepending(mark.placement));
    }
    bool operator()(const PictureMark& mark) const {
        return touchesPicture(*mark.picture, placement.prepending(mark.placement), spot);
    }
};

}  // namespace

Spot::Spot(MzPoint place, double radius)
    : grain_(std::max(radius / grainsPerRadius, smallestGrain)) {
    if (std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(radius) && radius >= 0) {
        discs_.push_back({place, radius});
    }
}

Spot Spot::within(const DevicePath& path) const {
    Spot rest = *this;
    rest.discs_.clear();
    for (const Disc& disc : discs_) {
        const Touch touch = touchOfArea(path, FillRule::EvenOdd, disc);
        if (touch == Touch::Wholly || (touch == Touch::Partly && disc.radius <= grain_)) {
            rest.discs_.push_back(disc);
        } else if (touch == Touch::Partly) {
            rest.addParts(disc, path);
        }
    }
    return rest;
}

/// Small discs that cover `disc`, those that touch the area of `path`.
void Spot::addParts(const Disc& disc, const DevicePath& path) {
    const double step = grain_ * std::numbers::sqrt2;
    const int count = static_cast<int>(std::ceil(disc.radius / step));
    for (int row = -count; row <= count; ++row) {
        for (int column = -count; column <= count; ++column) {
            const MzPoint away{column * step, row * step};
            const Disc part{{disc.center.x + away.x, disc.center.y + away.y}, grain_};
            if (std::hypot(away.x, away.y) <= disc.radius + grain_ &&
                touchOfArea(path, FillRule::EvenOdd, part) != Touch::Apart) {
                discs_.push_back(part);
            }
        }
    }
}

bool Spot::touchesArea(const DevicePath& path, FillRule rule) const {
    return std::ranges::any_of(
        discs_, [&](const Disc& disc) { return touchOfArea(path, rule, disc) != Touch::Apart; });
}

bool Spot::touchesStroke(const DevicePath& path, const StrokeStyle& style,
                         const AffineTransform& transform) const {
    const auto pen = makePen(style, transform, largestWidth);
    return pen && std::ranges::any_of(discs_, [&](const Disc& disc) {
               return platform::touchesStroke(path, *pen, disc);
           });
}

bool Spot::touchesBitmap(const Bitmap& bitmap, const AffineTransform& placement) const {
    return std::ranges::any_of(
        discs_, [&](const Disc& disc) { return platform::touchesBitmap(bitmap, placement, disc); });
}

bool Spot::touchesConvex(std::span<const MzPoint> corners) const {
    return std::ranges::any_of(
        discs_, [&](const Disc& disc) { return platform::touchesConvex(corners, disc); });
}

void Picture::add(Mark mark) {
    if (const auto* inner = std::get_if<PictureMark>(&mark.shape)) {
        if (inner->picture->depth >= kDeepest) {
            return;
        }
        depth = std::max(depth, inner->picture->depth + 1);
    }
    marks.push_back(std::move(mark));
}

std::array<MzPoint, 4> cornersOf(const AffineTransform& place) {
    std::array corners{MzPoint{0, 0}, MzPoint{1, 0}, MzPoint{1, 1}, MzPoint{0, 1}};
    place.transformPoints(corners, corners);
    return corners;
}

std::shared_ptr<const Bitmap> bitmapOver(const Image& image, const AffineTransform& place,
                                         AffineTransform& placement) {
    const MzSize pixels{std::hypot(place.m11, place.m12), std::hypot(place.m21, place.m22)};
    if (!std::isfinite(pixels.width) || !std::isfinite(pixels.height)) {
        return nullptr;
    }
    auto bitmap = image.bitmapForPixelSize(pixels);
    if (bitmap == nullptr || bitmap->isEmpty()) {
        return nullptr;
    }
    placement = place.prepending({1.0 / bitmap->width, 0, 0, 1.0 / bitmap->height, 0, 0});
    return bitmap;
}

bool touchesPicture(const Picture& picture, const AffineTransform& placement, const Spot& spot) {
    const auto corners =
        cornersOf(placement.prepending({picture.size.width, 0, 0, picture.size.height, 0, 0}));
    if (!spot.touchesConvex(corners)) {
        return false;
    }
    DevicePath frame;
    frame.addLines(corners, {});
    const Spot shown = spot.within(frame);
    return std::ranges::any_of(picture.marks, [&](const Mark& mark) {
        if (mark.clips == nullptr) {
            return std::visit(MarkAtSpot{placement, shown}, mark.shape);
        }
        const Spot clipped = withinClips(shown, *mark.clips, placement);
        return std::visit(MarkAtSpot{placement, clipped}, mark.shape);
    });
}

}  // namespace mezalith::platform::detail
