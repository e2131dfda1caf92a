// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/affine_transform.hpp>
#include <mezalith/platform/device_path.hpp>
#include <mezalith/platform/image.hpp>
#include <mezalith/platform/pen.hpp>
#include <mezalith/platform/touch.hpp>

#include <array>
#include <memory>
#include <span>
#include <variant>
#include <vector>

namespace mezalith::platform::detail {

/// Where is asked what is painted, as far as clips leave it: discs of the device.
class Spot {
  public:
    /// Nowhere unless the place is finite and the radius finite and not negative.
    Spot(MzPoint place, double radius);

    bool isEmpty() const { return discs_.empty(); }

    /// What of it is in the area of `path` by the even-odd rule. A disc that is partly there
    /// becomes small discs, which stand out from it by a quarter or a sixteenth of the asked
    /// radius.
    Spot within(const DevicePath& path) const;

    bool touchesArea(const DevicePath& path, FillRule rule) const;
    bool touchesStroke(const DevicePath& path, const StrokeStyle& style,
                       const AffineTransform& transform) const;
    bool touchesBitmap(const Bitmap& bitmap, const AffineTransform& placement) const;
    bool touchesConvex(std::span<const MzPoint> corners) const;

  private:
    std::vector<Disc> discs_;
    double grain_;  ///< discs are not cut smaller than this radius

    void addParts(const Disc& disc, const DevicePath& path);
};

struct Picture;

/// The paths that it was clipped to, all of them; null for none.
using Clips = std::vector<std::shared_ptr<const DevicePath>>;

struct AreaMark {
    DevicePath path;
    FillRule rule;
};

struct StrokeMark {
    DevicePath path;
    StrokeStyle style;
    AffineTransform transform;
};

struct BitmapMark {
    std::shared_ptr<const Bitmap> bitmap;
    AffineTransform placement;
};

struct PictureMark {
    std::shared_ptr<const Picture> picture;
    AffineTransform placement;
};

/// One thing that was painted, and the clips that it was painted in.
struct Mark {
    std::variant<AreaMark, StrokeMark, BitmapMark, PictureMark> shape;
    std::shared_ptr<const Clips> clips;
};

/// All that was painted in a layer, in its user space.
struct Picture {
    /// Pictures in pictures that would stand deeper are left out.
    static constexpr int kDeepest = 32;

    MzSize size{};  ///< nothing shows outside, from (0, 0)
    std::vector<Mark> marks;
    int depth = 1;

    void add(Mark mark);
};

/// Whether the picture, placed on the device, is painted at the spot.
bool touchesPicture(const Picture& picture, const AffineTransform& placement, const Spot& spot);

/// The pixels of an image that is drawn over what `place` makes of the unit square, whose y grows
/// downwards, and in `placement` where they go; null when there are none.
std::shared_ptr<const Bitmap> bitmapOver(const Image& image, const AffineTransform& place,
                                         AffineTransform& placement);

/// The corners of what `place` makes of the unit square.
std::array<MzPoint, 4> cornersOf(const AffineTransform& place);

}  // namespace mezalith::platform::detail
