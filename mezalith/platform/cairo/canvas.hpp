// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/cairo/handles.hpp>
#include <mezalith/platform/cairo/ink.hpp>
#include <mezalith/platform/cairo/shadow.hpp>
#include <mezalith/platform/image.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mezalith::platform::detail {

/// What a port and its layers have in common.
struct Common {
    std::optional<std::string> error;  ///< what went wrong first
    /// Of a document's layers, to the end of the document.
    std::vector<SurfaceHandle> recordings;

    void report(const std::string& text);
    /// YES when all is well so far.
    bool check(cairo_status_t status);
};

/// A surface of device units and all drawing on it. What it is given is finite; it sees to it that
/// nothing else that Cairo cannot hold reaches it.
class Canvas {
  public:
    /// `size` in device units. `resolution` is the number of pixels per device unit that images
    /// get.
    Canvas(SurfaceHandle surface, MzSize size, double resolution, std::shared_ptr<Common> common);

    /// Null when finished.
    cairo_surface_t* surface() const { return surface_.get(); }
    const std::shared_ptr<Common>& common() const { return common_; }

    /// Keep the clip and go back to it.
    void save();
    void restore();
    void clipEvenOdd(const DevicePath& path);
    void fill(const DevicePath& path, cairo_fill_rule_t rule, const Rgba& color,
              const std::optional<Shadow>& shadow);
    /// Strokes with `style` under `transform`, as it is now.
    void stroke(const DevicePath& path, const StrokeStyle& style, const AffineTransform& transform,
                const Rgba& color, const std::optional<Shadow>& shadow);
    /// Draws a picture of `size` units that `placement` maps to the device.
    void stamp(cairo_surface_t* picture, MzSize size, const AffineTransform& placement,
               const std::optional<Shadow>& shadow);
    /// Draws an image over what `place` makes of the unit square, whose y grows downwards.
    void drawImage(const Image& image, const AffineTransform& place,
                   const std::optional<Shadow>& shadow);
    /// Ends drawing and lets the surface write what it holds back.
    void finish();

  private:
    SurfaceHandle surface_;
    ContextHandle cr_;  ///< null when finished
    DeviceBox bounds_;
    DeviceBox drawn_;  ///< the surface and all around it that is drawn
    double resolution_;
    std::shared_ptr<Common> common_;

    bool isUsable() const { return cr_ && !common_->error; }
    double flatness() const;
    const DevicePath& drawableArea(const DevicePath& path, std::optional<DevicePath>& cut) const;
    const DevicePath& drawableOutline(const DevicePath& path, Pen& pen,
                                      std::optional<DevicePath>& cut) const;
    DevicePath dashesInView(const DevicePath& path, const Pen& pen) const;
    void paint(const PictureInk& ink, const std::optional<Shadow>& shadow);
    void lay(const Ink& ink, const Rgba& color, const std::optional<Shadow>& shadow);
};

}  // namespace mezalith::platform::detail
