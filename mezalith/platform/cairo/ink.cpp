// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/ink.hpp>

#include <algorithm>
#include <array>
#include <limits>

namespace mezalith::platform::detail {
namespace {

constexpr std::array<cairo_line_cap_t, 3> caps{CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_ROUND,
                                               CAIRO_LINE_CAP_SQUARE};
constexpr std::array<cairo_line_join_t, 3> joins{CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_ROUND,
                                                 CAIRO_LINE_JOIN_BEVEL};

void setColor(cairo_t* cr, const Rgba& color, double alpha) {
    cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha * alpha);
}

/// The box around a box of user space, in the space that `matrix` maps it to.
DeviceBox mappedBox(const DeviceBox& box, const cairo_matrix_t& matrix) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    DeviceBox result{infinity, infinity, -infinity, -infinity};
    for (const MzPoint corner : {MzPoint{box.minX, box.minY}, MzPoint{box.maxX, box.minY},
                                 MzPoint{box.minX, box.maxY}, MzPoint{box.maxX, box.maxY}}) {
        MzPoint p = corner;
        cairo_matrix_transform_point(&matrix, &p.x, &p.y);
        result = {std::min(result.minX, p.x), std::min(result.minY, p.y),
                  std::max(result.maxX, p.x), std::max(result.maxY, p.y)};
    }
    return result;
}

/// Keeps Cairo's matrix for the length of a scope.
class MatrixScope {
  public:
    explicit MatrixScope(cairo_t* cr) : cr_(cr) { cairo_get_matrix(cr, &matrix_); }
    ~MatrixScope() { cairo_set_matrix(cr_, &matrix_); }
    MatrixScope(const MatrixScope&) = delete;
    MatrixScope& operator=(const MatrixScope&) = delete;

  private:
    cairo_t* cr_;
    cairo_matrix_t matrix_{};
};

}  // namespace

void addPath(cairo_t* cr, const DevicePath& path) {
    const MzPoint* p = path.points().data();
    for (const DevicePath::Verb verb : path.verbs()) {
        switch (verb) {
            case DevicePath::Verb::Move:
                cairo_move_to(cr, p->x, p->y);
                ++p;
                break;
            case DevicePath::Verb::Line:
                cairo_line_to(cr, p->x, p->y);
                ++p;
                break;
            case DevicePath::Verb::Curve:
                cairo_curve_to(cr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
                p += 3;
                break;
            case DevicePath::Verb::Close:
                cairo_close_path(cr);
                break;
        }
    }
}

void FillInk::lay(cairo_t* cr, const Rgba& color) const {
    addPath(cr, path_);
    cairo_set_fill_rule(cr, rule_);
    setColor(cr, color, alpha_);
    cairo_fill(cr);
}

DeviceBox FillInk::extents(cairo_t* cr) const {
    DeviceBox box{};
    addPath(cr, path_);
    cairo_set_fill_rule(cr, rule_);
    cairo_fill_extents(cr, &box.minX, &box.minY, &box.maxX, &box.maxY);
    cairo_new_path(cr);
    return box;
}

/// Adds the path and makes the pen current; the matrix maps pen units afterwards.
void StrokeInk::prepare(cairo_t* cr) const {
    addPath(cr, path_);
    cairo_set_line_width(cr, pen_.width);
    cairo_set_line_cap(cr, caps[static_cast<std::size_t>(pen_.cap)]);
    cairo_set_line_join(cr, joins[static_cast<std::size_t>(pen_.join)]);
    cairo_set_miter_limit(cr, Pen::kMiterLimit);
    cairo_set_dash(cr, pen_.dash.lengths.data(), static_cast<int>(pen_.dash.lengths.size()),
                   pen_.dash.phase);
    const AffineTransform& shape = pen_.shape;
    if (shape != AffineTransform{}) {
        const cairo_matrix_t matrix{shape.m11, shape.m12, shape.m21, shape.m22, 0, 0};
        cairo_transform(cr, &matrix);
    }
}

void StrokeInk::lay(cairo_t* cr, const Rgba& color) const {
    const MatrixScope scope(cr);
    prepare(cr);
    setColor(cr, color, alpha_);
    cairo_stroke(cr);
}

DeviceBox StrokeInk::extents(cairo_t* cr) const {
    const MatrixScope scope(cr);
    DeviceBox box{};
    prepare(cr);
    cairo_stroke_extents(cr, &box.minX, &box.minY, &box.maxX, &box.maxY);
    cairo_new_path(cr);
    const AffineTransform& shape = pen_.shape;
    return mappedBox(box, {shape.m11, shape.m12, shape.m21, shape.m22, 0, 0});
}

void PictureInk::lay(cairo_t* cr, const Rgba& color) const {
    const MatrixScope scope(cr);
    cairo_transform(cr, &placement_);
    setColor(cr, color, 1);
    if (edge_ == PictureEdge::Blended) {
        cairo_mask_surface(cr, picture_, 0, 0);
        return;
    }
    const PatternHandle pattern(cairo_pattern_create_for_surface(picture_));
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
    cairo_save(cr);
    cairo_rectangle(cr, 0, 0, size_.width, size_.height);
    cairo_clip(cr);
    cairo_mask(cr, pattern.get());
    cairo_restore(cr);
}

void PictureInk::paint(cairo_t* cr) const {
    const MatrixScope scope(cr);
    cairo_transform(cr, &placement_);
    cairo_set_source_surface(cr, picture_, 0, 0);
    if (edge_ == PictureEdge::Blended) {
        cairo_paint(cr);
        return;
    }
    cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
    cairo_rectangle(cr, 0, 0, size_.width, size_.height);
    cairo_fill(cr);
}

DeviceBox PictureInk::extents(cairo_t*) const {
    return mappedBox({0, 0, size_.width, size_.height}, placement_);
}

}  // namespace mezalith::platform::detail
