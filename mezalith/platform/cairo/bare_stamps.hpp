// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/handles.hpp>

#include <algorithm>
#include <cstddef>
#include <span>

namespace mezalith::platform::detail {

/// What the benchmarks of stamping compare with: Cairo alone, which composites the pixels of a
/// layer of a pixel port at each place, with no port in between.
class BareStamps {
  public:
    /// A picture of `size` view points with `pixelRatio` pixels to each, and what is stamped on it:
    /// a copy of the pixels of `stamp`.
    BareStamps(MzSize size, double pixelRatio, const CairoPort& stamp)
        : ratio_(pixelRatio),
          target_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32,
                                             static_cast<int>(size.width * pixelRatio),
                                             static_cast<int>(size.height * pixelRatio))),
          stamp_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, stamp.pixelWidth(),
                                            stamp.pixelHeight())),
          context_(cairo_create(target_.get())) {
        unsigned char* row = cairo_image_surface_get_data(stamp_.get());
        for (int y = 0; y < stamp.pixelHeight(); ++y) {
            const auto pixels = std::as_bytes(stamp.pixelRow(y));
            std::ranges::copy(pixels, reinterpret_cast<std::byte*>(row));
            row += cairo_image_surface_get_stride(stamp_.get());
        }
        cairo_surface_mark_dirty(stamp_.get());
    }

    /// With the stamp's centre at each place, view points with y up.
    void draw(std::span<const MzPoint> places) {
        const double halfWidth = cairo_image_surface_get_width(stamp_.get()) / 2.0;
        const double halfHeight = cairo_image_surface_get_height(stamp_.get()) / 2.0;
        const double top = cairo_image_surface_get_height(target_.get());
        for (const MzPoint& place : places) {
            cairo_set_source_surface(context_.get(), stamp_.get(), place.x * ratio_ - halfWidth,
                                     top - place.y * ratio_ - halfHeight);
            cairo_paint(context_.get());
        }
    }

  private:
    double ratio_;
    SurfaceHandle target_;
    SurfaceHandle stamp_;
    ContextHandle context_;
};

}  // namespace mezalith::platform::detail
