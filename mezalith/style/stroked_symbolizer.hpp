// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/style/stroke.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace mezalith {

/// What the line, polygon and point symbolizers share: the properties of their stroke, their way
/// from clipped rings to the port's path, and that they can be archived. Lengths are view points,
/// multiplied by the scale factor when drawing.
class MEZALITH_EXPORT MzStrokedSymbolizer : public MzSymbolizer, public platform::Archivable {
  public:
    float strokeWidth() const { return stroke_.strokeWidth; }
    void setStrokeWidth(float width);

    /// 0 miter, 1 round, 2 bevel.
    std::uint64_t lineJoin() const { return stroke_.lineJoin; }
    void setLineJoin(std::uint64_t join);

    /// 0 butt, 1 round, 2 square.
    std::uint64_t lineCap() const { return stroke_.lineCap; }
    void setLineCap(std::uint64_t cap);

    /// Where in the dash pattern a line begins.
    double lineDashOffset() const { return stroke_.lineDashOffset; }
    void setLineDashOffset(double offset);

    /// How many entries of the pattern are used; entries that the pattern does not have are not.
    std::uint64_t lineDashCount() const { return stroke_.lineDashCount; }
    void setLineDashCount(std::uint64_t count);

    /// Alternating painted and unpainted lengths; empty when there are none. Valid until the next
    /// `setLineDash`.
    std::span<const double> lineDash() const { return stroke_.lineDash; }
    /// Replaces the pattern by a copy of the `count` entries at `lineDash`, which must be there,
    /// and sets `lineDashCount`, which alone is announced. Null or a count of 0 takes the pattern
    /// away.
    /// Settled: taking the pattern away leaves `lineDashCount` as it is and announces nothing, and
    /// so does another pattern of the same length.
    void setLineDash(const double* lineDash, std::uint64_t count);

    /// Whether the pattern is applied.
    bool isDashed() const { return stroke_.isDashed; }
    void setIsDashed(bool dashed);

    /// As far as the stroke reaches.
    double paintReach(double scaleFactor) const override { return stroke_.reach(scaleFactor); }

    /// Sets the port's state from the properties, with lengths multiplied by `scaleFactor`, and
    /// draws the port's current path; nothing for a null port. The state stays on the port.
    virtual void symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) = 0;

  protected:
    /// Draws the polygons of a polygon or multi-polygon geometry, each by a `symbolizeInContext` of
    /// its own: all its clipped rings of more than two points in one path. Nothing for geometries
    /// of other types and for polygons without such a ring.
    void drawPolygons(MzGeometry& geometry, const MzDrawContext& context,
                      platform::GraphicsPort& port);

    /// Draws the current path, filled by the even-odd rule, stroked, or both; with neither the path
    /// stays as it is.
    static void drawEvenOddPath(platform::GraphicsPort& port, bool fill, bool stroke);

    /// The colour with its alpha replaced by `opacity`; null for null.
    static std::shared_ptr<const platform::Color> colorWithOpacity(
        const std::shared_ptr<const platform::Color>& color, double opacity);

    /// The colour under `key`; null when there is none.
    static std::shared_ptr<const platform::Color> decodeColor(
        const platform::KeyedUnarchiver& coder, std::string_view key);

    MzStroke stroke_;
};

}  // namespace mezalith
