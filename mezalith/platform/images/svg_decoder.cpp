// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/decoders.hpp>
#include <mezalith/platform/images/svg_steps.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

#include <librsvg/rsvg.h>

namespace mezalith::platform::detail {
namespace {

/// Larger texts are maps or worse, not icons.
constexpr std::size_t mostBytes = 4 << 20;

struct Release {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

using Handle = std::unique_ptr<RsvgHandle, Release>;

constexpr double pixelsPerInch = 96;

/// Steps times pixels, and depth times pixels: what one drawing may cost in time and in memory.
constexpr double mostWork = 2e9;
constexpr double mostHeldPixels = 2.5e8;

/// In CSS pixels: what the document says, or else its view box; zeros without either.
MzSize naturalSize(RsvgHandle* handle) {
    MzSize size{};
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle, &size.width, &size.height) != FALSE) {
        return size;
    }
    gboolean hasBox = FALSE;
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(handle, nullptr, nullptr, nullptr, nullptr, &hasBox, &box);
    return hasBox != FALSE ? MzSize{box.width, box.height} : size;
}

/// Draws the document over all of the bitmap; what went wrong, if anything.
std::string draw(RsvgHandle* handle, Bitmap& bitmap) {
    const std::unique_ptr<cairo_surface_t, Release> surface(cairo_image_surface_create_for_data(
        bytesOf(bitmap.pixels), CAIRO_FORMAT_ARGB32, bitmap.width, bitmap.height,
        bitmap.width * static_cast<int>(sizeof(std::uint32_t))));
    const std::unique_ptr<cairo_t, Release> context(cairo_create(surface.get()));
    const RsvgRectangle viewport{0, 0, double(bitmap.width), double(bitmap.height)};
    GError* error = nullptr;
    if (rsvg_handle_render_document(handle, context.get(), &viewport, &error) == FALSE) {
        const std::unique_ptr<GError, Release> owned(error);
        return owned->message;
    }
    cairo_surface_flush(surface.get());
    return {};
}

/// Drawn anew for each size, within `mostPixels`.
class SvgImage final : public Image {
  public:
    SvgImage(Handle handle, MzSize size, double mostPixels)
        : handle_(std::move(handle)), size_(size), mostPixels_(mostPixels) {}

    MzSize size() const override { return size_; }

    std::shared_ptr<const Bitmap> bitmapForPixelSize(MzSize pixels) const override {
        Bitmap bitmap = bitmapWithin(pixels);
        return !bitmap.isEmpty() && draw(handle_.get(), bitmap).empty()
                   ? std::make_shared<const Bitmap>(std::move(bitmap))
                   : nullptr;
    }

    /// A transparent bitmap of that size, both sides alike reduced to what is allowed.
    Bitmap bitmapWithin(MzSize pixels) const {
        const double largest = std::max(pixels.width, pixels.height);
        const double scale = std::min(
            {1.0, largestSide / largest, std::sqrt(mostPixels_ / (pixels.width * pixels.height))});
        const std::int32_t height = side(pixels.height * scale, mostPixels_);
        return Bitmap::bitmapWithSize(side(pixels.width * scale, mostPixels_ / height), height);
    }

  private:
    Handle handle_;
    MzSize size_;
    double mostPixels_;

    /// Whole pixels, at least one; none for what is no length.
    static std::int32_t side(double length, double most) {
        return length > 0 ? static_cast<std::int32_t>(std::clamp(std::round(length), 1.0, most))
                          : 0;
    }
};

}  // namespace

Decoding decodeSVG(Bytes bytes, const ImageLimits& limits) {
    if (bytes.size() > mostBytes) {
        return Decoding::failure("more than " + std::to_string(mostBytes) + " bytes");
    }
    const SvgSteps steps = svgSteps({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (!steps.refusal.empty()) {
        return Decoding::failure(steps.refusal);
    }
    GError* error = nullptr;
    Handle handle(rsvg_handle_new_from_data(bytesOf(bytes), bytes.size(), &error));
    if (handle == nullptr) {
        const std::unique_ptr<GError, Release> owned(error);
        return Decoding::failure(owned->message);
    }
    rsvg_handle_set_dpi(handle.get(), pixelsPerInch);
    const MzSize size = naturalSize(handle.get());
    if (!(size.width > 0 && size.height > 0)) {
        return Decoding::failure("neither a size nor a view box");
    }
    if (std::string complaint = sizeComplaint(size.width, size.height, limits);
        !complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    const double mostPixels =
        std::min({double(limits.pixels), mostWork / std::max(1.0, steps.count),
                  mostHeldPixels / (1 + steps.depth)});
    return {std::make_shared<SvgImage>(std::move(handle), size, mostPixels), {}};
}

}  // namespace mezalith::platform::detail
