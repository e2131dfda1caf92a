// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/device_port.hpp>

#include <memory>

namespace mezalith::platform {

/// A port that paints nothing and answers whether drawing would have painted near a place.
///
/// A hit is what has any alpha within `tolerance` of the place, as far as clips let it show: the
/// insides of paths by their rule, lines with their width, joins, caps and dashes, images where
/// they are not transparent, and layers where what was drawn into them is so. Everything is decided
/// from the geometry, without a picture. What is painted over by something opaque is a hit all the
/// same: ask for one thing after the other, the topmost first. Shadows are no hits: a click on a
/// shadow is one on what it falls on.
///
/// Where a picture has pixels, a pixel that is painted is a hit for its centre with a tolerance of
/// half its diagonal; half a pixel more is wanted for layers and images, which are smoothed as they
/// are stamped. Clips and the sides of layers are kept to a quarter of a unit, or a sixteenth of
/// the tolerance where that is more. Other deviations are under a tenth: curves are taken within
/// 0.05, round joins and caps within a thousandth of the width, areas thinner than 1/256 may be
/// missed. Layers are whole units in size, as on a picture of one pixel per unit, and nest 32 deep
/// at most. Lines wider than 2^15 are as wide as that.
class MEZALITH_EXPORT HitPort final : public DevicePort {
  public:
    /// Asks about `place`, in the user space that the port begins with, and all within `tolerance`
    /// of it. Nothing is a hit unless both are finite and the tolerance not negative.
    HitPort(MzPoint place, double tolerance);
    ~HitPort() override;
    HitPort(const HitPort&) = delete;
    HitPort& operator=(const HitPort&) = delete;

    /// Whether anything that was drawn since the beginning, or since `clear`, was a hit.
    bool isHit() const { return isHit_; }
    /// Forgets hits; state and path stay.
    void clear() { isHit_ = false; }

    std::shared_ptr<Layer> createLayer(MzSize size) override;
    /// Layers of other kinds of ports are not drawn.
    void drawLayerAtPoint(const Layer* layer, MzPoint point) override;
    void drawImageInRect(const Image* image, MzRect rect) override;

  private:
    struct Clip;

    void saveClip() override;
    void restoreClip() override;
    void clipTo(const DevicePath& path) override;
    void fill(const DevicePath& path, FillRule rule) override;
    void stroke(const DevicePath& path) override;

    std::unique_ptr<Clip> clip_;
    bool isHit_ = false;
};

}  // namespace mezalith::platform
