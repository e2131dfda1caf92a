// SPDX-License-Identifier: MIT
#include "apps/mezalith/picture.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"
#include "host/letter_case.hpp"
#include "host/map_view.hpp"

#include <filesystem>

namespace mezalith::app {

PictureFormat pictureFormatOf(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    for (const auto& [name, format] :
         {std::pair{".png", PictureFormat::PNG}, std::pair{".svg", PictureFormat::SVG},
          std::pair{".pdf", PictureFormat::PDF}}) {
        if (host::isEqualIgnoringCase(ending, name)) return format;
    }
    throw UsageError(path, "the name of a picture ends in .png, .svg or .pdf");
}

double Picture::defaultPixelRatio(PictureFormat format) {
    return format == PictureFormat::PNG ? 1 : 4;
}

double Picture::spacingOf(PictureFormat format) {
    const double ofViews = host::ViewFrame().spacing;
    return format == PictureFormat::PNG ? ofViews : ofViews / 2;
}

Picture::Picture(const std::string& path, bool overwrite, MzSize size,
                 std::optional<double> pixelRatio)
    : path_(path),
      format_(pictureFormatOf(path)),
      pixelRatio_(pixelRatio.value_or(defaultPixelRatio(format_))),
      file_(path, overwrite),
      port_(makePort(size)) {
    if (port_ == nullptr) throw host::Failure(path_, "a picture of this size cannot be made");
}

std::unique_ptr<platform::CairoPort> Picture::makePort(MzSize size) {
    using platform::CairoPort;
    const auto sink = [this](std::span<const std::byte> bytes) { return write(bytes); };
    switch (format_) {
        case PictureFormat::PNG:
            return CairoPort::pixelPort(size, pixelRatio_);
        case PictureFormat::SVG:
            return CairoPort::svgPort(size, sink, pixelRatio_);
        case PictureFormat::PDF:
            return CairoPort::pdfPort(size, sink, pixelRatio_);
    }
    return nullptr;
}

bool Picture::write(std::span<const std::byte> bytes) noexcept {
    try {
        file_.write(bytes);
        return true;
    } catch (...) {
        if (error_ == nullptr) error_ = std::current_exception();
        return false;
    }
}

void Picture::finish() {
    const auto sink = [this](std::span<const std::byte> bytes) { return write(bytes); };
    const bool done = format_ == PictureFormat::PNG ? port_->writePNG(sink) : port_->finish();
    if (error_ != nullptr) std::rethrow_exception(error_);
    if (!done) throw host::Failure(path_, port_->error().value_or("it cannot be written"));
    file_.commit();
}

namespace {

void addOutlines(platform::GraphicsPort& port, const Outlines& outlines) {
    port.beginPath();
    for (const std::vector<MzPoint>& outline : outlines) {
        port.addLines(outline);
        port.closeSubpath();
    }
}

}  // namespace

void fillOutlines(platform::GraphicsPort& port, const Outlines& outlines,
                  const platform::Color& color) {
    port.setFillColor(&color);
    addOutlines(port, outlines);
    port.drawPath(platform::PathDrawingMode::EvenOddFill);
}

void clipToOutlines(platform::GraphicsPort& port, const Outlines& outlines) {
    addOutlines(port, outlines);
    port.clipEvenOdd();
}

Outlines outlineOf(MzSize size) {
    return {{{0, 0}, {size.width, 0}, {size.width, size.height}, {0, size.height}}};
}

void fillBackground(platform::GraphicsPort& port, MzSize size, const platform::Color& color) {
    fillOutlines(port, outlineOf(size), color);
}

}  // namespace mezalith::app
