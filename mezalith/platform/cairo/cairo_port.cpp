// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/canvas.hpp>
#include <mezalith/platform/cairo/output.hpp>
#include <mezalith/platform/cairo/png_writer.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace mezalith::platform {
namespace {

using detail::Canvas;
using detail::Common;
using detail::Document;
using detail::Output;
using detail::Shadow;
using detail::SurfaceHandle;

constexpr double largestLayerSide = 16384;

/// In device units: what casts shadows farther away is not drawn, and neither are they.
constexpr double farthestShadow = 1 << 14;
constexpr double widestSigma = 1 << 12;

/// Turned over: y grows downwards on a surface.
AffineTransform deviceTransform(double height, double scale) {
    return {scale, 0, 0, -scale, 0, height};
}

cairo_fill_rule_t cairoRule(FillRule rule) {
    return rule == FillRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING;
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
    return isSizeUpTo(size, CairoPort::largestDocumentSide) && pixelRatio > 0 &&
           pixelRatio <= CairoPort::largestDocumentPixelRatio;
}

}  // namespace

struct CairoPort::Impl {
    /// For pixels and layers.
    Impl(SurfaceHandle surface, MzSize deviceSize, double ratio, double deviceScale,
         std::shared_ptr<Common> common)
        : size(deviceSize),
          pixelRatio(ratio),
          unitsPerPoint(deviceScale),
          canvas(std::move(surface), deviceSize, ratio / deviceScale, std::move(common)) {}

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

    /// What is cast on the surface; none for what is too far away.
    std::optional<Shadow> castBy(const std::optional<ShadowStyle>& style) const {
        if (!style) {
            return std::nullopt;
        }
        const MzSize offset{style->offset.width * unitsPerPoint,
                            -style->offset.height * unitsPerPoint};
        if (std::abs(offset.width) > farthestShadow || std::abs(offset.height) > farthestShadow) {
            return std::nullopt;
        }
        const double sigma = std::clamp(style->blur / 2 * unitsPerPoint, 0.0, widestSigma);
        return Shadow{offset, sigma, style->color};
    }

    /// What lies on an image surface.
    detail::PixelView pixels() const {
        cairo_surface_t* surface = canvas.surface();
        cairo_surface_flush(surface);
        const auto sizeOf = [](int count) { return static_cast<std::size_t>(count); };
        return {reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface)),
                sizeOf(cairo_image_surface_get_width(surface)),
                sizeOf(cairo_image_surface_get_height(surface)),
                sizeOf(cairo_image_surface_get_stride(surface)) / sizeof(std::uint32_t)};
    }

    bool writePNG(Output output) const;
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

CairoPort::CairoPort(std::unique_ptr<Impl> impl)
    : DevicePort(deviceTransform(impl->size.height, impl->unitsPerPoint)), impl_(std::move(impl)) {}

CairoPort::~CairoPort() { finish(); }

std::unique_ptr<CairoPort> CairoPort::pixelPort(MzSize size, double pixelRatio) {
    const MzSize pixels = wholePixels(size, pixelRatio);
    if (!isSizeUpTo(size, largestPixelSide) || !isSizeUpTo(pixels, largestPixelSide)) {
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
    return impl_->pixels().row(static_cast<std::size_t>(row));
}

bool CairoPort::Impl::writePNG(Output output) const {
    if (!hasPixels() || canvas.common()->error) {
        return false;
    }
    const bool isWritten = detail::writePNG(
        pixels(), [&](std::span<const std::byte> bytes) { return output.write(bytes); });
    output.close();
    if (const auto& error = output.error()) {
        canvas.common()->report(*error);
    } else if (!isWritten) {
        canvas.common()->check(CAIRO_STATUS_NO_MEMORY);
    }
    return !canvas.common()->error;
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

void CairoPort::saveClip() { impl_->canvas.save(); }

void CairoPort::restoreClip() { impl_->canvas.restore(); }

void CairoPort::clipTo(const DevicePath& path) { impl_->canvas.clipEvenOdd(path); }

void CairoPort::fill(const DevicePath& path, FillRule rule) {
    impl_->canvas.fill(path, cairoRule(rule), state().fillColor, impl_->castBy(state().shadow));
}

void CairoPort::stroke(const DevicePath& path) {
    impl_->canvas.stroke(path, state().stroke, state().transform, state().strokeColor,
                         impl_->castBy(state().shadow));
}

std::shared_ptr<Layer> CairoPort::createLayer(MzSize size) {
    const double ratio = impl_->pixelRatio;
    const MzSize pixels = wholePixels(size, ratio);
    if (!isSizeUpTo(size, largestLayerSide / ratio) || !isSizeUpTo(pixels, largestLayerSide)) {
        return nullptr;
    }
    const double scale = impl_->unitsPerPoint / ratio;
    const MzSize units{pixels.width * scale, pixels.height * scale};
    auto impl = std::make_unique<Impl>(impl_->layerSurface(units), units, ratio,
                                       impl_->unitsPerPoint, impl_->canvas.common());
    return std::make_shared<CairoLayer>(size, std::move(impl));
}

void CairoPort::drawImageInRect(const Image* image, MzRect rect) {
    if (image == nullptr || !isSizeUpTo(rect.size, std::numeric_limits<double>::max())) {
        return;
    }
    const AffineTransform place = state().transform.prepending(topDownSquareOver(rect));
    impl_->canvas.drawImage(*image, place, impl_->castBy(state().shadow));
}

void CairoPort::drawLayerAtPoint(const Layer* layer, MzPoint point) {
    if (const auto* own = dynamic_cast<const CairoLayer*>(layer)) {
        own->stampOn(impl_->canvas, state().transform.prepending({1, 0, 0, 1, point.x, point.y}),
                     impl_->castBy(state().shadow));
    }
}

}  // namespace mezalith::platform
