// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/cairo/handles.hpp>
#include <mezalith/platform/device_path.hpp>
#include <mezalith/platform/device_port.hpp>
#include <mezalith/platform/pen.hpp>

#include <cairo.h>

namespace mezalith::platform::detail {

/// Something to draw: a shape that can be laid down in any colour. Cairo's current matrix maps
/// device space to the surface and is the same afterwards; the current path is gone.
class Ink {
  public:
    virtual ~Ink() = default;
    /// Draws the shape in `color`, its own alpha applied on top.
    virtual void lay(cairo_t* cr, const Rgba& color) const = 0;
    /// A box around the shape, in device space.
    virtual DeviceBox extents(cairo_t* cr) const = 0;

  protected:
    Ink() = default;
    Ink(const Ink&) = default;
    Ink& operator=(const Ink&) = default;
};

/// The inside of a path.
class FillInk final : public Ink {
  public:
    FillInk(const DevicePath& path, cairo_fill_rule_t rule, double alpha)
        : path_(path), rule_(rule), alpha_(alpha) {}
    void lay(cairo_t* cr, const Rgba& color) const override;
    DeviceBox extents(cairo_t* cr) const override;

  private:
    const DevicePath& path_;
    cairo_fill_rule_t rule_;
    double alpha_;
};

/// The outline of a path.
class StrokeInk final : public Ink {
  public:
    StrokeInk(const DevicePath& path, const Pen& pen, double alpha)
        : path_(path), pen_(pen), alpha_(alpha) {}
    void lay(cairo_t* cr, const Rgba& color) const override;
    DeviceBox extents(cairo_t* cr) const override;

  private:
    const DevicePath& path_;
    const Pen& pen_;
    double alpha_;

    void prepare(cairo_t* cr) const;
};

/// Where a picture that is scaled ends: in half a pixel that fades out, or where it should.
enum class PictureEdge { Blended, Sharp };

/// The coverage of a picture of `size` surface units that `placement` maps to the device.
class PictureInk final : public Ink {
  public:
    PictureInk(cairo_surface_t* picture, MzSize size, const cairo_matrix_t& placement,
               PictureEdge edge = PictureEdge::Blended)
        : picture_(picture), size_(size), placement_(placement), edge_(edge) {}
    void lay(cairo_t* cr, const Rgba& color) const override;
    DeviceBox extents(cairo_t* cr) const override;
    /// Draws the picture in its own colours.
    void paint(cairo_t* cr) const;

  private:
    cairo_surface_t* picture_;
    MzSize size_;
    cairo_matrix_t placement_;
    PictureEdge edge_;
};

/// Appends the elements of `path` to Cairo's current path.
void addPath(cairo_t* cr, const DevicePath& path);

}  // namespace mezalith::platform::detail
