// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/handles.hpp>
#include <mezalith/platform/cairo/shadow.hpp>
#include <mezalith/platform/gaussian_blur.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace mezalith::platform::detail {
namespace {

/// A blur this wide (in pixels) may be made of half as many of them: interpolated back, the error
/// is under one part in a thousand.
constexpr double finestSigma = 16;

/// The pixels of a mask: `scale` of them per device unit, from a whole pixel on.
struct MaskGrid {
    double scale;
    int left;
    int top;
    int width;
    int height;

    /// From device space to the mask.
    cairo_matrix_t matrix() const {
        return {scale, 0, 0, scale, -static_cast<double>(left), -static_cast<double>(top)};
    }
};

/// The whole pixels around a box.
MaskGrid gridAround(const DeviceBox& box, double scale) {
    const double left = std::floor(box.minX * scale);
    const double top = std::floor(box.minY * scale);
    return {scale, static_cast<int>(left), static_cast<int>(top),
            static_cast<int>(std::ceil(box.maxX * scale) - left),
            static_cast<int>(std::ceil(box.maxY * scale) - top)};
}

double maskScale(double sigma, double resolution) {
    double scale = resolution;
    while (sigma * scale >= finestSigma) {
        scale /= 2;
    }
    return scale;
}

SurfaceHandle makeMask(const MaskGrid& grid) {
    return SurfaceHandle(cairo_image_surface_create(CAIRO_FORMAT_A8, grid.width, grid.height));
}

std::span<std::uint8_t> bytesOf(cairo_surface_t* mask) {
    const auto size = static_cast<std::size_t>(cairo_image_surface_get_stride(mask)) *
                      static_cast<std::size_t>(cairo_image_surface_get_height(mask));
    return {cairo_image_surface_get_data(mask), size};
}

void layShape(cairo_surface_t* mask, const MaskGrid& grid, const Ink& ink, MzSize offset) {
    const ContextHandle cr(cairo_create(mask));
    const cairo_matrix_t matrix = grid.matrix();
    cairo_set_matrix(cr.get(), &matrix);
    cairo_translate(cr.get(), offset.width, offset.height);
    ink.lay(cr.get(), {});
}

void blur(cairo_surface_t* mask, double sigma) {
    cairo_surface_flush(mask);
    gaussianBlur(bytesOf(mask), cairo_image_surface_get_width(mask),
                 cairo_image_surface_get_height(mask),
                 static_cast<std::size_t>(cairo_image_surface_get_stride(mask)), sigma);
    cairo_surface_mark_dirty(mask);
}

PatternHandle patternOf(cairo_surface_t* image, const MaskGrid& grid) {
    PatternHandle pattern(cairo_pattern_create_for_surface(image));
    const cairo_matrix_t matrix = grid.matrix();
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    return pattern;
}

void setColor(cairo_t* cr, const Rgba& color) {
    cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
}

void paintMask(cairo_t* cr, cairo_surface_t* mask, const MaskGrid& grid, const Rgba& color) {
    setColor(cr, color);
    cairo_mask(cr, patternOf(mask, grid).get());
}

/// For documents: a picture in the colour, of the part that `shown` covers. Viewers show that
/// faster, and alike, where a mask would cover the whole page.
cairo_status_t paintPicture(cairo_t* cr, cairo_surface_t* mask, const MaskGrid& grid,
                            const MaskGrid& shown, const Rgba& color) {
    const SurfaceHandle picture(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, shown.width, shown.height));
    const ContextHandle tint(cairo_create(picture.get()));
    setColor(tint.get(), color);
    cairo_mask_surface(tint.get(), mask, grid.left - shown.left, grid.top - shown.top);
    cairo_set_source(cr, patternOf(picture.get(), shown).get());
    cairo_paint(cr);
    return cairo_status(tint.get());
}

DeviceBox clipBox(cairo_t* cr) {
    DeviceBox box{};
    cairo_clip_extents(cr, &box.minX, &box.minY, &box.maxX, &box.maxY);
    return box;
}

DeviceBox movedBox(const DeviceBox& box, MzSize by) {
    return {box.minX + by.width, box.minY + by.height, box.maxX + by.width, box.maxY + by.height};
}

void castSharpShadow(cairo_t* cr, const Ink& ink, const Shadow& shadow) {
    cairo_translate(cr, shadow.offset.width, shadow.offset.height);
    ink.lay(cr, shadow.color);
    cairo_identity_matrix(cr);
}

}  // namespace

cairo_status_t castShadow(cairo_t* cr, const Ink& ink, const Shadow& shadow, double resolution) {
    const double scale = maskScale(shadow.sigma, resolution);
    const int reach = gaussianReach(shadow.sigma * scale);
    // One pixel more on every side, for the interpolation of a mask that is not the device's grid.
    const double pixel = 1 / scale;
    const double margin = (reach + 1) * pixel;
    const DeviceBox clip = clipBox(cr);
    const DeviceBox covered = grownBox(movedBox(ink.extents(cr), shadow.offset), margin);
    if (commonBox(covered, clip).isEmpty()) {
        return CAIRO_STATUS_SUCCESS;
    }
    if (reach == 0) {
        castSharpShadow(cr, ink, shadow);
        return CAIRO_STATUS_SUCCESS;
    }
    const MaskGrid shown = gridAround(commonBox(covered, grownBox(clip, pixel)), scale);
    const MaskGrid needed = gridAround(commonBox(covered, grownBox(clip, margin)), scale);
    const SurfaceHandle mask = makeMask(needed);
    layShape(mask.get(), needed, ink, shadow.offset);
    if (const cairo_status_t status = cairo_surface_status(mask.get())) {
        return status;
    }
    blur(mask.get(), shadow.sigma * scale);
    if (cairo_surface_get_type(cairo_get_target(cr)) != CAIRO_SURFACE_TYPE_IMAGE) {
        return paintPicture(cr, mask.get(), needed, shown, shadow.color);
    }
    paintMask(cr, mask.get(), needed, shadow.color);
    return CAIRO_STATUS_SUCCESS;
}

}  // namespace mezalith::platform::detail
