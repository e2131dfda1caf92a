// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/output_file.hpp"
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace mezalith::app {

enum class PictureFormat { PNG, SVG, PDF };

/// The format that a file's ending asks for, in letters of either case. Throws a UsageError for any
/// other ending.
PictureFormat pictureFormatOf(const std::string& path);

/// A picture that is being drawn into a file. Failures to make or to write it are thrown as a
/// host::Failure with the file's path.
class Picture {
  public:
    /// Backing pixels per view point where nobody says: the port's detail in documents, and what
    /// the spacing of vertices is counted in. A quarter of a point is a dot of a printer of 300 to
    /// the inch.
    static double defaultPixelRatio(PictureFormat format);
    /// The spacing of vertices, backing pixels: that of views, or in documents, which are printed
    /// and magnified, half as much: by default half a dot of a printer of 600 to the inch.
    static double spacingOf(PictureFormat format);

    /// `size` is in view points. The file at `path` appears with `finish`.
    Picture(const std::string& path, bool overwrite, MzSize size, std::optional<double> pixelRatio);

    /// To draw into. A failure to write is told by `finish`.
    platform::GraphicsPort& port() { return *port_; }
    double pixelRatio() const { return pixelRatio_; }
    double spacing() const { return spacingOf(format_); }

    void finish();

  private:
    bool write(std::span<const std::byte> bytes) noexcept;
    std::unique_ptr<platform::CairoPort> makePort(MzSize size);

    std::string path_;
    PictureFormat format_;
    double pixelRatio_;
    OutputFile file_;
    std::exception_ptr error_;  ///< the file's first failure; null while all is well
    std::unique_ptr<platform::CairoPort> port_;
};

/// Closed lines, view points.
using Outlines = std::vector<std::vector<MzPoint>>;

/// Of the whole of a view.
Outlines outlineOf(MzSize size);

/// Fills what an odd number of the outlines surround.
void fillOutlines(platform::GraphicsPort& port, const Outlines& outlines,
                  const platform::Color& color);

/// Lets nothing be drawn outside of it any more, in the port's current state.
void clipToOutlines(platform::GraphicsPort& port, const Outlines& outlines);

/// Fills the whole of a port of `size` view points.
void fillBackground(platform::GraphicsPort& port, MzSize size, const platform::Color& color);

}  // namespace mezalith::app
