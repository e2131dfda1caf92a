// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/device_port.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace mezalith::platform {

/// A graphics port drawn by Cairo: to pixels in memory, or to an SVG or PDF document.
///
/// Pixels have `pixelRatio` backing pixels per view point. In documents one view point is one CSS
/// pixel (SVG) or 1/72 inch (PDF), and everything stays vector but shadows with a blur: these are
/// images of the smallest box they need, with `pixelRatio` pixels per view point or fewer where the
/// blur is wide. The same drawing gives the same bytes; documents carry no date.
///
/// Shadows are cast by each drawing operation on its own, the fill and the stroke of one
/// `drawPath` included: a stroke's shadow falls on the fill before it. A shadow is the Gaussian
/// blur of all that the operation draws, also of what the clip hides; the clip then applies to it.
///
/// Lines are drawn as far as 2^14 device units around the surface and cut there, slopes and dashes
/// kept. A line width is at most 2^15 device units; negative and NaN widths count as 0, which draws
/// nothing, and so does a stroke under a transform that flattens the plane. Dashes with a period
/// under 1/16 device unit are drawn solid. Shadows have a standard deviation of up to 2^12 device
/// units, and none is cast farther than 2^14. A layer is not drawn into itself. Documents hold
/// images as pixels: those that are drawn anew for every size at `pixelRatio`, others as they are.
///
/// When Cairo fails (no memory, output that cannot be written), the port and its layers stop
/// drawing and say so by `error`.
class MEZALITH_EXPORT CairoPort final : public DevicePort {
  public:
    /// Receives output bytes in order; answering NO ends the output. It must not throw.
    using Sink = std::function<bool(std::span<const std::byte>)>;

    /// Larger sides, in backing pixels or document units, are refused.
    static constexpr double largestPixelSide = 32767;
    static constexpr double largestDocumentSide = 14400;
    static constexpr double largestDocumentPixelRatio = 4;

    /// A transparent picture of `size` view points, rounded up to whole pixels. Null unless sides
    /// and ratio are positive and within bounds, or without memory for it.
    static std::unique_ptr<CairoPort> pixelPort(MzSize size, double pixelRatio = 1);

    /// A document of one page of `size` view points. Null unless sides and ratio are positive and
    /// within bounds. Bytes may come while drawing; the last ones come with `finish`.
    static std::unique_ptr<CairoPort> svgPort(MzSize size, Sink sink, double pixelRatio = 2);
    static std::unique_ptr<CairoPort> pdfPort(MzSize size, Sink sink, double pixelRatio = 2);

    /// The same into a file, which is made or emptied. When that fails, `error` says so at once.
    static std::unique_ptr<CairoPort> svgPort(MzSize size, const std::filesystem::path& file,
                                              double pixelRatio = 2);
    static std::unique_ptr<CairoPort> pdfPort(MzSize size, const std::filesystem::path& file,
                                              double pixelRatio = 2);

    /// Ends a document as `finish` does.
    ~CairoPort() override;
    CairoPort(const CairoPort&) = delete;
    CairoPort& operator=(const CairoPort&) = delete;

    /// The size in backing pixels; 0 for documents.
    int pixelWidth() const;
    int pixelHeight() const;
    /// Row `row` from the top: a pixel is 0xAARRGGBB with colours multiplied by alpha. Valid until
    /// the next drawing; empty outside the picture and for documents.
    std::span<const std::uint32_t> pixelRow(int row) const;

    /// Writes the picture as a PNG file. NO for documents and when writing fails, which `error`
    /// then tells.
    bool writePNG(const Sink& sink);
    bool writePNG(const std::filesystem::path& file);

    /// Ends the document and writes the rest of it; later drawing does nothing. YES when all of it
    /// was written. Does nothing for pixels and the second time.
    bool finish();

    /// What went wrong first, as one line such as "map.pdf: No space left on device"; none while
    /// all is well.
    std::optional<std::string> error() const;

    std::shared_ptr<Layer> createLayer(MzSize size) override;
    void drawLayerAtPoint(const Layer* layer, MzPoint point) override;
    void drawImageInRect(const Image* image, MzRect rect) override;

  private:
    struct Impl;
    class CairoLayer;
    explicit CairoPort(std::unique_ptr<Impl> impl);
    void saveClip() override;
    void restoreClip() override;
    /// Settled: an empty path hides everything.
    void clipTo(const DevicePath& path) override;
    void fill(const DevicePath& path, FillRule rule) override;
    void stroke(const DevicePath& path) override;

    std::unique_ptr<Impl> impl_;
};

}  // namespace mezalith::platform
