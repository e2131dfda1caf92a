// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/canvas.hpp>
#include <mezalith/platform/cairo/output.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace mezalith::platform {
namespace {

using detail::Canvas;
using detail::Common;
using detail::Document;
using detail::Output;
using detail::Rgba;
using detail::Shadow;
using detail::StrokeStyle;
using detail::SurfaceHandle;

constexpr double largestLayerSide = 16384;
constexpr double defaultShadowAlpha = 1.0 / 3;

/// In device units: what casts shadows farther away is not drawn, and neither are they.
constexpr double farthestShadow = 1 << 14;
constexpr double widestSigma = 1 << 12;

/// All that `saveState` keeps but the clip, which Cairo keeps.
struct State {
    AffineTransform transform;  ///< from user space to the device
    StrokeStyle stroke;
    Rgba strokeColor;
    Rgba fillColor;
    std::optional<Shadow> shadow;
};

/// Turned over: y grows downwards on a surface.
AffineTransform deviceTransform(double height, double scale) {
    return {scale, 0, 0, -scale, 0, height};
}

/// From the unit square with y growing downwards.
AffineTransform topDownSquareOver(MzRect rect) {
    const MzSize size = rect.size;
    return {size.width, 0, 0, -size.height, rect.origin.x, rect.origin.y + size.height};
}

double fraction(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

Rgba rgba(double red, double green, double blue, double alpha) {
    return {fraction(red), fraction(green), fraction(blue), fraction(alpha)};
}

std::optional<Rgba> deviceColor(const Color* color) {
    const auto rgb = color ? color->colorUsingColorSpace(ColorSpace::DeviceRGB) : nullptr;
    if (!rgb) {
        return std::nullopt;
    }
    const auto& c = rgb->components();
    return rgba(c[0], c[1], c[2], rgb->alphaComponent());
}

bool isSide(double side, double largest) { return side > 0 && side <= largest; }

bool isSize(MzSize size, double largest) {
    return isSide(size.width, largest) && isSide(size.height, largest);
}

MzSize wholePixels(MzSize size, double ratio) {
    return {std::ceil(size.width * ratio), std::ceil(size.height * ratio)};
}

SurfaceHandle imageSurface(MzSize pixels) {
    return SurfaceHandle(cairo_image_surface_create(
        CAIRO_FORMAT_ARGB32, static_cast<int>(pixels.width), static_cast<int>(pixels.height)));
}

SurfaceHandle recordingSurface(MzSize size) {
    const cairo_rectangle_t extents{0, 0, size.width, size.height};
    return SurfaceHandle(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents));
}

bool isPage(MzSize size, double pixelRatio) {
    return isSize(size, CairoPort::largestDocumentSide) &&
           isSide(pixelRatio, CairoPort::largestDocumentPixelRatio);
}

}  // namespace

struct CairoPort::Impl {
    /// For pixels and layers.
    Impl(SurfaceHandle surface, MzSize deviceSize, double ratio, double deviceScale,
         std::shared_ptr<Common> common)
        : size(deviceSize),
          pixelRatio(ratio),
          unitsPerPoint(deviceScale),
          canvas(std::move(surface), deviceSize, ratio / deviceScale, std::move(common)) {
        state.transform = deviceTransform(deviceSize.height, deviceScale);
    }

    static std::unique_ptr<CairoPort> document(detail::MakeSurface makeSurface, Output output,
                                               MzSize pageSize, double ratio) {
        auto target = std::make_unique<Document>(Document{std::move(output), {}});
        auto impl = std::make_unique<Impl>(makeSurface(*target, pageSize), pageSize, ratio, 1,
                                           std::make_shared<Common>());
        impl->target = std::move(target);
        return std::unique_ptr<CairoPort>(new CairoPort(std::move(impl)));
    }

    MzSize size;                       ///< of the surface, in device units
    double pixelRatio;                 ///< backing pixels per view point
    double unitsPerPoint;              ///< device units per view point
    std::unique_ptr<Document> target;  ///< null but for documents
    Canvas canvas;
    State state;
    std::vector<State> savedStates;
    DevicePath path;

    bool hasPixels() const {
        return canvas.surface() != nullptr &&
               cairo_surface_get_type(canvas.surface()) == CAIRO_SURFACE_TYPE_IMAGE;
    }

    SurfaceHandle layerSurface(MzSize units) const {
        if (hasPixels()) {
            return imageSurface(units);
        }
        SurfaceHandle surface = recordingSurface(units);
        canvas.common()->recordings.emplace_back(cairo_surface_reference(surface.get()));
        return surface;
    }

    MzPoint device(double x, double y) const { return state.transform.transformPoint({x, y}); }

    void transform(const AffineTransform& first) {
        state.transform = state.transform.prepending(first);
    }

    void setShadow(MzSize offset, double blur, const std::optional<Rgba>& color) {
        const double scale = unitsPerPoint;
        const double dx = offset.width * scale;
        const double dy = -offset.height * scale;
        state.shadow.reset();
        if (color && color->alpha > 0 && std::abs(dx) <= farthestShadow &&
            std::abs(dy) <= farthestShadow && !std::isnan(blur)) {
            state.shadow = {{dx, dy}, std::clamp(blur / 2 * scale, 0.0, widestSigma), *color};
        }
    }

    bool writePNG(Output output) const;

    void fill(cairo_fill_rule_t rule) { canvas.fill(path, rule, state.fillColor, state.shadow); }

    void stroke() {
        canvas.stroke(path, state.stroke, state.transform, state.strokeColor, state.shadow);
    }
};

class CairoPort::CairoLayer final : public Layer {
  public:
    CairoLayer(MzSize size, std::unique_ptr<Impl> impl) : size_(size), port_(std::move(impl)) {}

    MzSize size() const override { return size_; }
    GraphicsPort* port() override { return &port_; }

    void stampOn(Canvas& canvas, const AffineTransform& transform,
                 const std::optional<Shadow>& shadow) const {
        const Impl& impl = *port_.impl_;
        const double scale = 1 / impl.unitsPerPoint;
        const AffineTransform toUser = deviceTransform(impl.size.height * scale, scale);
        canvas.stamp(impl.canvas.surface(), impl.size, transform.prepending(toUser), shadow);
    }

  private:
    MzSize size_;
    CairoPort port_;
};

CairoPort::CairoPort(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

CairoPort::~CairoPort() { finish(); }

std::unique_ptr<CairoPort> CairoPort::pixelPort(MzSize size, double pixelRatio) {
    const MzSize pixels = wholePixels(size, pixelRatio);
    if (!isSize(size, largestPixelSide) || !isSize(pixels, largestPixelSide)) {
        return nullptr;
    }
    auto impl = std::make_unique<Impl>(imageSurface(pixels), pixels, pixelRatio, pixelRatio,
                                       std::make_shared<Common>());
    if (impl->canvas.common()->error) {
        return nullptr;
    }
    return std::unique_ptr<CairoPort>(new CairoPort(std::move(impl)));
}

std::unique_ptr<CairoPort> CairoPort::svgPort(MzSize size, Sink sink, double pixelRatio) {
    return isPage(size, pixelRatio)
               ? Impl::document(detail::svgSurface, Output(std::move(sink)), size, pixelRatio)
               : nullptr;
}

std::unique_ptr<CairoPort> CairoPort::pdfPort(MzSize size, Sink sink, double pixelRatio) {
    return isPage(size, pixelRatio)
               ? Impl::document(detail::pdfSurface, Output(std::move(sink)), size, pixelRatio)
               : nullptr;
}

std::unique_ptr<CairoPort> CairoPort::svgPort(MzSize size, const std::filesystem::path& file,
                                              double pixelRatio) {
    return isPage(size, pixelRatio)
               ? Impl::document(detail::svgSurface, Output(file), size, pixelRatio)
               : nullptr;
}

std::unique_ptr<CairoPort> CairoPort::pdfPort(MzSize size, const std::filesystem::path& file,
                                              double pixelRatio) {
    return isPage(size, pixelRatio)
               ? Impl::document(detail::pdfSurface, Output(file), size, pixelRatio)
               : nullptr;
}

int CairoPort::pixelWidth() const {
    return impl_->hasPixels() ? cairo_image_surface_get_width(impl_->canvas.surface()) : 0;
}

int CairoPort::pixelHeight() const {
    return impl_->hasPixels() ? cairo_image_surface_get_height(impl_->canvas.surface()) : 0;
}

std::span<const std::uint32_t> CairoPort::pixelRow(int row) const {
    if (row < 0 || row >= pixelHeight()) {
        return {};
    }
    cairo_surface_t* surface = impl_->canvas.surface();
    cairo_surface_flush(surface);
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const unsigned char* bytes =
        cairo_image_surface_get_data(surface) + static_cast<std::size_t>(row) * stride;
    return {reinterpret_cast<const std::uint32_t*>(bytes), static_cast<std::size_t>(pixelWidth())};
}

bool CairoPort::Impl::writePNG(Output output) const {
    if (!hasPixels() || canvas.common()->error) {
        return false;
    }
    const cairo_status_t status =
        cairo_surface_write_to_png_stream(canvas.surface(), detail::writeToOutput, &output);
    output.close();
    if (const auto& error = output.error()) {
        canvas.common()->report(*error);
    }
    return canvas.common()->check(status);
}

bool CairoPort::writePNG(const Sink& sink) { return impl_->writePNG(Output(sink)); }

bool CairoPort::writePNG(const std::filesystem::path& file) {
    return impl_->writePNG(Output(file));
}

bool CairoPort::finish() {
    if (impl_->target) {
        impl_->canvas.finish();
        impl_->target->finish();
    }
    return !error();
}

std::optional<std::string> CairoPort::error() const {
    // The output knows better than Cairo why it could not be written.
    const auto& target = impl_->target;
    return target && target->output.error() ? target->output.error()
                                            : impl_->canvas.common()->error;
}

void CairoPort::saveState() {
    impl_->savedStates.push_back(impl_->state);
    impl_->canvas.save();
}

void CairoPort::restoreState() {
    if (impl_->savedStates.empty()) {
        return;
    }
    impl_->state = std::move(impl_->savedStates.back());
    impl_->savedStates.pop_back();
    impl_->canvas.restore();
}

void CairoPort::translate(double tx, double ty) { impl_->transform({1, 0, 0, 1, tx, ty}); }

void CairoPort::rotate(double radians) {
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    impl_->transform({cosine, sine, -sine, cosine, 0, 0});
}

void CairoPort::scale(double sx, double sy) { impl_->transform({sx, 0, 0, sy, 0, 0}); }

void CairoPort::concat(const AffineTransform& transform) { impl_->transform(transform); }

void CairoPort::setLineWidth(double width) { impl_->state.stroke.width = width; }

void CairoPort::setLineCap(LineCap cap) {
    if (cap <= LineCap::Square) {
        impl_->state.stroke.cap = cap;
    }
}

void CairoPort::setLineJoin(LineJoin join) {
    if (join <= LineJoin::Bevel) {
        impl_->state.stroke.join = join;
    }
}

void CairoPort::setLineDash(double phase, std::span<const double> lengths) {
    impl_->state.stroke.dashPhase = phase;
    impl_->state.stroke.dashLengths.assign(lengths.begin(), lengths.end());
}

void CairoPort::setStrokeColor(const Color* color) {
    impl_->state.strokeColor = deviceColor(color).value_or(impl_->state.strokeColor);
}

void CairoPort::setFillColor(const Color* color) {
    impl_->state.fillColor = deviceColor(color).value_or(impl_->state.fillColor);
}

void CairoPort::setRGBStrokeColor(double red, double green, double blue, double alpha) {
    impl_->state.strokeColor = rgba(red, green, blue, alpha);
}

void CairoPort::setRGBFillColor(double red, double green, double blue, double alpha) {
    impl_->state.fillColor = rgba(red, green, blue, alpha);
}

void CairoPort::setShadow(MzSize offset, double blur) {
    impl_->setShadow(offset, blur, Rgba{0, 0, 0, defaultShadowAlpha});
}

void CairoPort::setShadowWithColor(MzSize offset, double blur, const Color* color) {
    impl_->setShadow(offset, blur, deviceColor(color));
}

void CairoPort::beginPath() { impl_->path.clear(); }

void CairoPort::moveToPoint(double x, double y) { impl_->path.moveTo(impl_->device(x, y)); }

void CairoPort::addLineToPoint(double x, double y) { impl_->path.lineTo(impl_->device(x, y)); }

void CairoPort::addCurveToPoint(double cp1x, double cp1y, double cp2x, double cp2y, double x,
                                double y) {
    impl_->path.curveTo(impl_->device(cp1x, cp1y), impl_->device(cp2x, cp2y), impl_->device(x, y));
}

void CairoPort::addArcToPoint(double x1, double y1, double x2, double y2, double radius) {
    impl_->path.addArc({x1, y1}, {x2, y2}, radius, impl_->state.transform);
}

void CairoPort::addEllipseInRect(MzRect rect) {
    impl_->path.addEllipse(rect, impl_->state.transform);
}

void CairoPort::closeSubpath() { impl_->path.close(); }

void CairoPort::addLines(std::span<const MzPoint> points) {
    impl_->path.addLines(points, impl_->state.transform);
}

void CairoPort::clipEvenOdd() {
    impl_->canvas.clipEvenOdd(impl_->path);
    impl_->path.clear();
}

void CairoPort::drawPath(PathDrawingMode mode) {
    switch (mode) {
        case PathDrawingMode::Fill:
            impl_->fill(CAIRO_FILL_RULE_WINDING);
            break;
        case PathDrawingMode::EvenOddFill:
            impl_->fill(CAIRO_FILL_RULE_EVEN_ODD);
            break;
        case PathDrawingMode::Stroke:
            impl_->stroke();
            break;
        case PathDrawingMode::FillStroke:
            impl_->fill(CAIRO_FILL_RULE_WINDING);
            impl_->stroke();
            break;
        case PathDrawingMode::EvenOddFillStroke:
            impl_->fill(CAIRO_FILL_RULE_EVEN_ODD);
            impl_->stroke();
            break;
    }
    impl_->path.clear();
}

std::shared_ptr<Layer> CairoPort::createLayer(MzSize size) {
    const double ratio = impl_->pixelRatio;
    const MzSize pixels = wholePixels(size, ratio);
    if (!isSize(size, largestLayerSide / ratio) || !isSize(pixels, largestLayerSide)) {
        return nullptr;
    }
    const double scale = impl_->unitsPerPoint / ratio;
    const MzSize units{pixels.width * scale, pixels.height * scale};
    auto impl = std::make_unique<Impl>(impl_->layerSurface(units), units, ratio,
                                       impl_->unitsPerPoint, impl_->canvas.common());
    return std::make_shared<CairoLayer>(size, std::move(impl));
}

void CairoPort::drawImageInRect(const Image* image, MzRect rect) {
    if (image == nullptr || !isSize(rect.size, std::numeric_limits<double>::max())) {
        return;
    }
    const AffineTransform place = impl_->state.transform.prepending(topDownSquareOver(rect));
    impl_->canvas.drawImage(*image, place, impl_->state.shadow);
}

void CairoPort::drawLayerAtPoint(const Layer* layer, MzPoint point) {
    if (const auto* own = dynamic_cast<const CairoLayer*>(layer)) {
        own->stampOn(impl_->canvas,
                     impl_->state.transform.prepending({1, 0, 0, 1, point.x, point.y}),
                     impl_->state.shadow);
    }
}

}  // namespace mezalith::platform
