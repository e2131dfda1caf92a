// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/output.hpp>

#include <cerrno>
#include <system_error>

#include <cairo-pdf.h>
#include <cairo-svg.h>

namespace mezalith::platform::detail {
namespace {

cairo_status_t statusOf(bool isWritten) {
    return isWritten ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

cairo_status_t writeToDocument(void* closure, const unsigned char* data, unsigned int length) {
    auto& document = *static_cast<Document*>(closure);
    const std::string_view text(reinterpret_cast<const char*>(data), length);
    return statusOf(document.identifiers ? document.write(document.identifiers->rewritten(text))
                                         : document.write(text));
}

}  // namespace

Output::Output(const std::filesystem::path& file)
    : name_(file.string()), file_(std::fopen(name_.c_str(), "wb")) {
    if (!file_) {
        fail();
    }
}

void Output::fail() {
    if (!error_) {
        error_ = name_.empty() ? "the output cannot be written"
                               : name_ + ": " + std::generic_category().message(errno);
    }
}

bool Output::write(std::span<const std::byte> bytes) {
    if (error_) {
        return false;
    }
    const bool isWritten =
        file_ ? std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size()
              : sink_ && sink_(bytes);
    if (!isWritten) {
        fail();
    }
    return isWritten;
}

bool Output::close() {
    if (file_ && std::fclose(file_.release()) != 0) {
        fail();
    }
    return !error_;
}

bool Document::write(std::string_view text) { return output.write(std::as_bytes(std::span(text))); }

void Document::finish() {
    if (identifiers) {
        write(identifiers->rest());
    }
    output.close();
}

SurfaceHandle svgSurface(Document& document, MzSize size) {
    document.identifiers.emplace();
    SurfaceHandle surface(
        cairo_svg_surface_create_for_stream(writeToDocument, &document, size.width, size.height));
    cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
    return surface;
}

SurfaceHandle pdfSurface(Document& document, MzSize size) {
    SurfaceHandle surface(
        cairo_pdf_surface_create_for_stream(writeToDocument, &document, size.width, size.height));
    // What is no date leaves the entry out.
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "none");
    return surface;
}

}  // namespace mezalith::platform::detail
