// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/text_outline.hpp>

#include <algorithm>
#include <cmath>
#include <memory>
#include <type_traits>

#include <pango/pangocairo.h>

namespace mezalith::platform {
namespace {

/// The outlines are taken this much larger: Cairo keeps them in 1/256 of its unit.
constexpr double kMagnification = 64;

template <auto release>
using Releasing = std::integral_constant<decltype(release), release>;

template <typename T, auto release>
using Handle = std::unique_ptr<T, Releasing<release>>;

using ObjectHandle = Handle<void, g_object_unref>;
using DescriptionHandle = Handle<PangoFontDescription, pango_font_description_free>;
using OptionsHandle = Handle<cairo_font_options_t, cairo_font_options_destroy>;
using SurfaceHandle = Handle<cairo_surface_t, cairo_surface_destroy>;
using CairoHandle = Handle<cairo_t, cairo_destroy>;
using PathHandle = Handle<cairo_path_t, cairo_path_destroy>;
using TextHandle = Handle<char, g_free>;

/// Owns a context and a layout that uses it.
struct Layout {
    ObjectHandle context;
    ObjectHandle layout;

    PangoLayout* get() const { return static_cast<PangoLayout*>(layout.get()); }
};

bool isLength(double length) { return length > 0 && std::isfinite(length); }

int pangoUnits(double length) {
    constexpr double largest = 1 << 20;
    return static_cast<int>(std::min(length, largest) * PANGO_SCALE);
}

/// At most `longestText` bytes, cut between characters.
std::string_view cutText(std::string_view text) {
    if (text.size() <= longestText) return text;
    std::size_t end = longestText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return text.substr(0, end);
}

DescriptionHandle fontOf(const TextStyle& style) {
    DescriptionHandle font(pango_font_description_new());
    pango_font_description_set_family(font.get(), style.family.c_str());
    pango_font_description_set_absolute_size(font.get(), pangoUnits(style.size));
    if (style.bold) pango_font_description_set_weight(font.get(), PANGO_WEIGHT_BOLD);
    if (style.italic) pango_font_description_set_style(font.get(), PANGO_STYLE_ITALIC);
    return font;
}

PangoAlignment alignmentOf(const TextStyle& style) {
    switch (style.alignment) {
        case Alignment::Center:
            return PANGO_ALIGN_CENTER;
        case Alignment::End:
            return PANGO_ALIGN_RIGHT;
        default:
            return PANGO_ALIGN_LEFT;
    }
}

ObjectHandle unhintedContext() {
    PangoContext* const context = pango_font_map_create_context(pango_cairo_font_map_get_default());
    const OptionsHandle options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context, options.get());
    pango_cairo_context_set_resolution(context, 72);
    pango_context_set_round_glyph_positions(context, FALSE);
    return ObjectHandle(context);
}

Layout layoutOf(std::string_view text, const TextStyle& style) {
    Layout made{unhintedContext(), nullptr};
    made.layout.reset(pango_layout_new(static_cast<PangoContext*>(made.context.get())));
    PangoLayout* const layout = made.get();
    pango_layout_set_font_description(layout, fontOf(style).get());
    pango_layout_set_width(layout, pangoUnits(style.maxWidth));
    pango_layout_set_height(layout, -style.maxLines);
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    pango_layout_set_alignment(layout, alignmentOf(style));
    const TextHandle valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    pango_layout_set_text(layout, valid.get(), -1);
    return made;
}

/// Turns Cairo's coordinates, y down, into those of a box, y up.
class BoxOutline {
  public:
    BoxOutline(double left, double bottom) : left_(left), bottom_(bottom) {}

    BezierPath take(const cairo_path_t& path) {
        BezierPath result;
        for (int i = 0; i < path.num_data; i += path.data[i].header.length) {
            add(result, path.data + i);
        }
        return result;
    }

  private:
    MzPoint point(const cairo_path_data_t& data) const {
        return {data.point.x - left_, bottom_ - data.point.y};
    }

    void add(BezierPath& path, const cairo_path_data_t* element) const {
        switch (element->header.type) {
            case CAIRO_PATH_MOVE_TO:
                return path.moveToPoint(point(element[1]));
            case CAIRO_PATH_LINE_TO:
                return path.lineToPoint(point(element[1]));
            case CAIRO_PATH_CURVE_TO:
                return path.curveToPoint(point(element[3]), point(element[1]), point(element[2]));
            case CAIRO_PATH_CLOSE_PATH:
                return path.closePath();
        }
    }

    double left_;
    double bottom_;
};

PathHandle outlineOf(PangoLayout* layout) {
    // Without bounds: Cairo leaves glyphs out that lie far from those of the surface.
    const SurfaceHandle surface(cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr));
    const CairoHandle cr(cairo_create(surface.get()));
    cairo_scale(cr.get(), kMagnification, kMagnification);
    pango_cairo_layout_path(cr.get(), layout);
    return PathHandle(cairo_copy_path(cr.get()));
}

}  // namespace

TextOutline textOutline(std::string_view text, const TextStyle& style) {
    const bool isPossible = isLength(style.size) && isLength(style.maxWidth) && style.maxLines > 0;
    if (text.empty() || !isPossible) return {};
    const Layout layout = layoutOf(cutText(text), style);
    PangoRectangle lines;
    pango_layout_get_extents(layout.get(), nullptr, &lines);
    const auto length = [](int units) { return static_cast<double>(units) / PANGO_SCALE; };
    const PathHandle path = outlineOf(layout.get());
    BoxOutline box(length(lines.x), length(lines.y + lines.height));
    return {{length(lines.width), length(lines.height)}, box.take(*path)};
}

}  // namespace mezalith::platform
