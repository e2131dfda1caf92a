// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/canvas.hpp>
#include <mezalith/platform/path_cutting.hpp>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <utility>

namespace mezalith::platform::detail {
namespace {

/// How far beyond the surface things are drawn, in device units. Cairo holds coordinates up to
/// 2^23, but its rasterizer multiplies them and is right up to 2^17 only; with the largest surface
/// this stays below, also after pens, shadows and finer masks add to it.
constexpr double drawnMargin = 1 << 14;
constexpr double largestWidth = 2 * drawnMargin;

/// Largest deviation of a line from a curve that had to be cut, in pixels.
constexpr double flatnessInPixels = 0.1;

/// Pictures are drawn this much larger or smaller at most.
constexpr double largestMagnification = 1e4;

[[maybe_unused]] bool isEnvironmental(cairo_status_t status) {
    return status == CAIRO_STATUS_NO_MEMORY || status == CAIRO_STATUS_WRITE_ERROR;
}

DeviceBox mappedBounds(const DeviceBox& box, const AffineTransform& transform) {
    DevicePath corners;
    corners.addLines(std::array{MzPoint{box.minX, box.minY}, MzPoint{box.maxX, box.minY},
                                MzPoint{box.maxX, box.maxY}, MzPoint{box.minX, box.maxY}},
                     transform);
    return corners.bounds();
}

void mapLines(std::vector<DevicePolyline>& lines, const AffineTransform& transform) {
    for (DevicePolyline& line : lines) {
        transform.transformPoints(line.points, line.points);
    }
}

/// Whether a picture so placed is of a size that can be drawn.
bool isDrawable(const AffineTransform& t) {
    const double determinant = std::abs(t.m11 * t.m22 - t.m12 * t.m21);
    const double largest =
        std::max({std::abs(t.m11), std::abs(t.m12), std::abs(t.m21), std::abs(t.m22)});
    return largest <= largestMagnification &&
           determinant >= 1 / (largestMagnification * largestMagnification) &&
           std::isfinite(t.tX) && std::isfinite(t.tY);
}

cairo_matrix_t cairoMatrix(const AffineTransform& t) {
    return {t.m11, t.m12, t.m21, t.m22, t.tX, t.tY};
}

/// How many pixels the sides of a unit square so placed have.
MzSize sizeInPixels(const AffineTransform& place, double resolution) {
    return {std::hypot(place.m11, place.m12) * resolution,
            std::hypot(place.m21, place.m22) * resolution};
}

bool isDrawable(const Bitmap& bitmap) {
    return !bitmap.isEmpty() && bitmap.width <= Image::largestSide &&
           bitmap.height <= Image::largestSide;
}

/// A surface of its own with the bitmap's pixels: recordings keep it longer than the bitmap lives.
SurfaceHandle surfaceOf(const Bitmap& bitmap) {
    SurfaceHandle surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, bitmap.width, bitmap.height));
    unsigned char* const data = cairo_image_surface_get_data(surface.get());
    if (data == nullptr) return surface;
    std::memcpy(data, bitmap.pixels.data(), bitmap.pixels.size() * sizeof(std::uint32_t));
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

/// Documents hold a picture as it is and leave its edge to those who show it.
PictureEdge edgeOn(cairo_surface_t* target) {
    return cairo_surface_get_type(target) == CAIRO_SURFACE_TYPE_IMAGE ? PictureEdge::Sharp
                                                                      : PictureEdge::Blended;
}

std::vector<unsigned> referencesOf(const std::vector<SurfaceHandle>& surfaces) {
    std::vector<unsigned> counts;
    counts.reserve(surfaces.size());
    for (const SurfaceHandle& surface : surfaces) {
        counts.push_back(cairo_surface_get_reference_count(surface.get()));
    }
    return counts;
}

/// Cairo 1.16 forgets a reference to each recording that an SVG document shows. What a document
/// that is gone has added to the counts from before its end is released here.
void releaseForgotten(const std::vector<SurfaceHandle>& surfaces,
                      const std::vector<unsigned>& before) {
    for (std::size_t i = 0; i < surfaces.size(); ++i) {
        while (cairo_surface_get_reference_count(surfaces[i].get()) > before[i]) {
            cairo_surface_destroy(surfaces[i].get());
        }
    }
}

}  // namespace

void Common::report(const std::string& text) {
    if (!error) {
        error = text;
    }
}

bool Common::check(cairo_status_t status) {
    assert(status == CAIRO_STATUS_SUCCESS || isEnvironmental(status));
    if (status != CAIRO_STATUS_SUCCESS) {
        report(cairo_status_to_string(status));
    }
    return !error;
}

Canvas::Canvas(SurfaceHandle surface, MzSize size, double resolution,
               std::shared_ptr<Common> common)
    : surface_(std::move(surface)),
      cr_(cairo_create(surface_.get())),
      bounds_{0, 0, size.width, size.height},
      drawn_(grownBox(bounds_, drawnMargin)),
      resolution_(resolution),
      common_(std::move(common)) {
    common_->check(cairo_status(cr_.get()));
}

void Canvas::save() {
    if (cr_) {
        cairo_save(cr_.get());
    }
}

void Canvas::restore() {
    if (cr_) {
        cairo_restore(cr_.get());
    }
}

double Canvas::flatness() const { return flatnessInPixels / resolution_; }

const DevicePath& Canvas::drawableArea(const DevicePath& path,
                                       std::optional<DevicePath>& cut) const {
    if (path.isEmpty() || drawn_.contains(path.bounds())) {
        return path;
    }
    return cut.emplace(cutArea(path, drawn_, flatness()));
}

/// `path` itself, or in `cut` what can be drawn of it. Dashes that Cairo would walk one by one
/// outside the surface are made here.
const DevicePath& Canvas::drawableOutline(const DevicePath& path, Pen& pen,
                                          std::optional<DevicePath>& cut) const {
    if (path.isEmpty() || drawn_.contains(path.bounds())) {
        return path;
    }
    if (pen.dash.isSolid()) {
        return cut.emplace(cutOutline(path, drawn_, flatness()));
    }
    cut = dashesInView(path, pen);
    pen.dash = {};
    return *cut;
}

void Canvas::clipEvenOdd(const DevicePath& path) {
    if (!isUsable()) {
        return;
    }
    std::optional<DevicePath> cut;
    addPath(cr_.get(), drawableArea(path, cut));
    cairo_set_fill_rule(cr_.get(), CAIRO_FILL_RULE_EVEN_ODD);
    cairo_clip(cr_.get());
    common_->check(cairo_status(cr_.get()));
}

void Canvas::lay(const Ink& ink, const Rgba& color, const std::optional<Shadow>& shadow) {
    if (shadow) {
        common_->check(castShadow(cr_.get(), ink, *shadow, resolution_));
    }
    ink.lay(cr_.get(), color);
    common_->check(cairo_status(cr_.get()));
}

void Canvas::fill(const DevicePath& path, cairo_fill_rule_t rule, const Rgba& color,
                  const std::optional<Shadow>& shadow) {
    if (!isUsable() || path.isEmpty()) {
        return;
    }
    std::optional<DevicePath> cut;
    const Rgba opaque{color.red, color.green, color.blue, 1};
    lay(FillInk(drawableArea(path, cut), rule, color.alpha), opaque, shadow);
}

DevicePath Canvas::dashesInView(const DevicePath& path, const Pen& pen) const {
    const auto toPen = pen.shape.inverse();
    if (!toPen) {
        return {};
    }
    std::vector<DevicePolyline> lines = flattenedPath(path, flatness(), drawn_);
    mapLines(lines, *toPen);
    DevicePath dashes = dashedPath(lines, pen.dash, mappedBounds(drawn_, *toPen));
    dashes.transform(pen.shape);
    return dashes;
}

void Canvas::stroke(const DevicePath& path, const StrokeStyle& style,
                    const AffineTransform& transform, const Rgba& color,
                    const std::optional<Shadow>& shadow) {
    auto pen = makePen(style, transform, largestWidth);
    if (!isUsable() || path.isEmpty() || !pen) {
        return;
    }
    std::optional<DevicePath> cut;
    const DevicePath& outline = drawableOutline(path, *pen, cut);
    const Rgba opaque{color.red, color.green, color.blue, 1};
    lay(StrokeInk(outline, *pen, color.alpha), opaque, shadow);
}

void Canvas::stamp(cairo_surface_t* picture, MzSize size, const AffineTransform& placement,
                   const std::optional<Shadow>& shadow) {
    if (!isUsable() || picture == surface() || !isDrawable(placement)) {
        return;
    }
    paint(PictureInk(picture, size, cairoMatrix(placement)), shadow);
}

void Canvas::drawImage(const Image& image, const AffineTransform& place,
                       const std::optional<Shadow>& shadow) {
    const MzSize pixels = sizeInPixels(place, resolution_);
    if (!isUsable() || !std::isfinite(pixels.width) || !std::isfinite(pixels.height)) {
        return;
    }
    const auto bitmap = image.bitmapForPixelSize(pixels);
    if (!bitmap || !isDrawable(*bitmap)) {
        return;
    }
    const MzSize size{double(bitmap->width), double(bitmap->height)};
    const auto placement = place.prepending({1 / size.width, 0, 0, 1 / size.height, 0, 0});
    if (isDrawable(placement)) {
        const SurfaceHandle picture = surfaceOf(*bitmap);
        paint(PictureInk(picture.get(), size, cairoMatrix(placement), edgeOn(surface())), shadow);
    }
}

void Canvas::paint(const PictureInk& ink, const std::optional<Shadow>& shadow) {
    if (shadow) {
        common_->check(castShadow(cr_.get(), ink, *shadow, resolution_));
    }
    if (!commonBox(ink.extents(cr_.get()), bounds_).isEmpty()) {
        ink.paint(cr_.get());
    }
    common_->check(cairo_status(cr_.get()));
}

void Canvas::finish() {
    if (!cr_) {
        return;
    }
    cr_.reset();
    const std::vector<unsigned> references = referencesOf(common_->recordings);
    cairo_surface_finish(surface_.get());
    common_->check(cairo_surface_status(surface_.get()));
    surface_.reset();
    releaseForgotten(common_->recordings, references);
    common_->recordings.clear();
}

}  // namespace mezalith::platform::detail
