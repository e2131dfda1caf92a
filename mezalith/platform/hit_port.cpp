// SPDX-License-Identifier: MIT
#include <mezalith/platform/hit_picture.hpp>
#include <mezalith/platform/hit_port.hpp>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace mezalith::platform {
namespace {

using detail::AreaMark;
using detail::BitmapMark;
using detail::Clips;
using detail::Picture;
using detail::PictureMark;
using detail::Spot;
using detail::StrokeMark;

constexpr double largestLayerSide = 16384;

AffineTransform stampPlace(const AffineTransform& transform, MzPoint point) {
    return transform.prepending({1, 0, 0, 1, point.x, point.y});
}

bool isImageRect(const Image* image, MzRect rect) {
    return image != nullptr && isSizeUpTo(rect.size, std::numeric_limits<double>::max());
}

std::shared_ptr<Layer> makeLayer(MzSize size);
std::shared_ptr<const Picture> pictureOf(const Layer* layer);

/// Draws into a layer: writes marks down.
class LayerPort final : public DevicePort {
  public:
    explicit LayerPort(MzSize size) : DevicePort({}), picture_(std::make_shared<Picture>()) {
        picture_->size = size;
    }

    /// What has been drawn so far; it does not change any more.
    const std::shared_ptr<Picture>& picture() const { return picture_; }

    std::shared_ptr<Layer> createLayer(MzSize size) override { return makeLayer(size); }

    void drawLayerAtPoint(const Layer* layer, MzPoint point) override {
        const auto picture = pictureOf(layer);
        if (picture != nullptr && picture != picture_) {
            add(PictureMark{picture, stampPlace(state().transform, point)});
        }
    }

    void drawImageInRect(const Image* image, MzRect rect) override {
        if (!isImageRect(image, rect)) {
            return;
        }
        BitmapMark mark;
        mark.bitmap = detail::bitmapOver(
            *image, state().transform.prepending(topDownSquareOver(rect)), mark.placement);
        if (mark.bitmap != nullptr) {
            add(std::move(mark));
        }
    }

  private:
    std::shared_ptr<Picture> picture_;
    std::shared_ptr<const Clips> clips_;
    std::vector<std::shared_ptr<const Clips>> savedClips_;

    template <typename Shape>
    void add(Shape shape) {
        if (picture_.use_count() > 1) {
            picture_ = std::make_shared<Picture>(*picture_);
        }
        picture_->add({std::move(shape), clips_});
    }

    void saveClip() override { savedClips_.push_back(clips_); }

    void restoreClip() override {
        clips_ = std::move(savedClips_.back());
        savedClips_.pop_back();
    }

    void clipTo(const DevicePath& path) override {
        auto clips = clips_ ? std::make_shared<Clips>(*clips_) : std::make_shared<Clips>();
        clips->push_back(std::make_shared<const DevicePath>(path));
        clips_ = std::move(clips);
    }

    void fill(const DevicePath& path, FillRule rule) override {
        if (state().fillColor.alpha > 0) {
            add(AreaMark{path, rule});
        }
    }

    void stroke(const DevicePath& path) override {
        if (state().strokeColor.alpha > 0) {
            add(StrokeMark{path, state().stroke, state().transform});
        }
    }
};

class HitLayer final : public Layer {
  public:
    explicit HitLayer(MzSize size)
        : size_(size), port_({std::ceil(size.width), std::ceil(size.height)}) {}

    MzSize size() const override { return size_; }
    GraphicsPort* port() override { return &port_; }
    const std::shared_ptr<Picture>& picture() const { return port_.picture(); }

  private:
    MzSize size_;
    LayerPort port_;
};

std::shared_ptr<Layer> makeLayer(MzSize size) {
    return isSizeUpTo(size, largestLayerSide) ? std::make_shared<HitLayer>(size) : nullptr;
}

std::shared_ptr<const Picture> pictureOf(const Layer* layer) {
    const auto* own = dynamic_cast<const HitLayer*>(layer);
    return own != nullptr ? own->picture() : nullptr;
}

}  // namespace

/// Where it is asked, as far as the clip leaves it.
struct HitPort::Clip {
    std::shared_ptr<const Spot> spot;
    std::vector<std::shared_ptr<const Spot>> saved;
};

HitPort::HitPort(MzPoint place, double tolerance)
    : DevicePort({}),
      clip_(std::make_unique<Clip>(Clip{std::make_shared<const Spot>(place, tolerance), {}})) {}

HitPort::~HitPort() = default;

void HitPort::saveClip() { clip_->saved.push_back(clip_->spot); }

void HitPort::restoreClip() {
    clip_->spot = std::move(clip_->saved.back());
    clip_->saved.pop_back();
}

void HitPort::clipTo(const DevicePath& path) {
    clip_->spot = std::make_shared<const Spot>(clip_->spot->within(path));
}

void HitPort::fill(const DevicePath& path, FillRule rule) {
    isHit_ = isHit_ || (state().fillColor.alpha > 0 && clip_->spot->touchesArea(path, rule));
}

void HitPort::stroke(const DevicePath& path) {
    isHit_ = isHit_ || (state().strokeColor.alpha > 0 &&
                        clip_->spot->touchesStroke(path, state().stroke, state().transform));
}

std::shared_ptr<Layer> HitPort::createLayer(MzSize size) { return makeLayer(size); }

void HitPort::drawLayerAtPoint(const Layer* layer, MzPoint point) {
    const auto picture = pictureOf(layer);
    isHit_ = isHit_ ||
             (picture != nullptr &&
              detail::touchesPicture(*picture, stampPlace(state().transform, point), *clip_->spot));
}

void HitPort::drawImageInRect(const Image* image, MzRect rect) {
    if (isHit_ || !isImageRect(image, rect)) {
        return;
    }
    const AffineTransform place = state().transform.prepending(topDownSquareOver(rect));
    if (!clip_->spot->touchesConvex(detail::cornersOf(place))) {
        return;
    }
    AffineTransform placement;
    const auto bitmap = detail::bitmapOver(*image, place, placement);
    isHit_ = bitmap != nullptr && clip_->spot->touchesBitmap(*bitmap, placement);
}

}  // namespace mezalith::platform
