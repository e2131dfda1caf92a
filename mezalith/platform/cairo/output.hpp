// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/handles.hpp>
#include <mezalith/platform/cairo/svg_identifiers.hpp>

#include <cstdio>
#include <string_view>
#include <utility>

namespace mezalith::platform::detail {

/// Where bytes go: to a sink or into a file. Remembers what went wrong first.
class Output {
  public:
    explicit Output(CairoPort::Sink sink) : sink_(std::move(sink)) {}
    /// Makes or empties the file.
    explicit Output(const std::filesystem::path& file);

    /// NO once anything has failed.
    bool write(std::span<const std::byte> bytes);
    /// Writes out what a file still holds back. YES when nothing has failed.
    bool close();
    const std::optional<std::string>& error() const { return error_; }

  private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    CairoPort::Sink sink_;
    std::string name_;
    std::unique_ptr<std::FILE, CloseFile> file_;
    std::optional<std::string> error_;

    void fail();
};

/// Where a document goes, with what must be done to its bytes on the way.
struct Document {
    Output output;
    std::optional<SvgIdentifiers> identifiers;  ///< for SVG

    bool write(std::string_view text);
    /// Writes what is held back. To be called when the surface is finished.
    void finish();
};

/// Surfaces of `size` units that write into `document`, which must outlive them.
using MakeSurface = SurfaceHandle (*)(Document& document, MzSize size);
SurfaceHandle svgSurface(Document& document, MzSize size);
SurfaceHandle pdfSurface(Document& document, MzSize size);

}  // namespace mezalith::platform::detail
