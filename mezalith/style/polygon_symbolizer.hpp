// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/style/stroked_symbolizer.hpp>

namespace mezalith {

/// Fills and strokes polygons and multi-polygons, each polygon with its holes as one path by the
/// even-odd rule, so that holes stay open whatever their orientation. Other geometries are not
/// drawn, and polygons are never hit.
class MEZALITH_EXPORT MzPolygonSymbolizer : public MzStrokedSymbolizer {
  public:
    /// An outline without a fill: cyan, opaque, two points wide, round, solid.
    MzPolygonSymbolizer();
    static std::shared_ptr<MzPolygonSymbolizer> initWithCoder(
        const platform::KeyedUnarchiver& coder);

    bool shouldFill() const { return shouldFill_; }
    void setShouldFill(bool fill);

    /// The fill's colour; its own alpha does not count. Null fills in the port's colour.
    const std::shared_ptr<const platform::Color>& fillColor() const { return fillColor_; }
    void setFillColor(std::shared_ptr<const platform::Color> color);

    /// The alpha of the fill.
    float fillOpacity() const { return fillOpacity_; }
    void setFillOpacity(float opacity);

    bool shouldStroke() const { return shouldStroke_; }
    void setShouldStroke(bool stroke);

    /// The outline's colour; its own alpha does not count. Null strokes in the port's colour.
    const std::shared_ptr<const platform::Color>& strokeColor() const { return strokeColor_; }
    void setStrokeColor(std::shared_ptr<const platform::Color> color);

    /// The alpha of the outline.
    float strokeOpacity() const { return strokeOpacity_; }
    void setStrokeOpacity(float opacity);

    std::vector<std::string> drawPropertyKeyPaths() const override;
    std::uint32_t symbolizerType() const override { return 2; }
    /// All properties, with the same colours.
    std::shared_ptr<MzPolygonSymbolizer> copy() const;

    /// Equal fill and stroke flags, width, join, cap, dash offset, dash count, opacities and
    /// colours; NO for null.
    /// Settled: `isDashed` and the pattern are not compared.
    bool isEqualToPolygonSymbolizer(const MzPolygonSymbolizer* other) const;

    /// A selected object is drawn like any other.
    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override;

    /// Sets cap, join, width, dash and the colours in use; then fills, strokes or does both. With
    /// neither asked for it leaves the path as it is.
    void symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) override;

    std::string_view archiveClassName() const override { return "MzPolygonSymbolizer"; }
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

  protected:
    std::shared_ptr<MzSymbolizer> newInstance() const override;
    void copyPropertiesTo(MzSymbolizer& copy) const override;
    bool hasEqualProperties(const MzSymbolizer& other) const override;

  private:
    void decodeWithCoder(const platform::KeyedUnarchiver& coder);

    bool shouldFill_ = false;
    bool shouldStroke_ = true;
    std::shared_ptr<const platform::Color> fillColor_;
    std::shared_ptr<const platform::Color> strokeColor_;
    float fillOpacity_ = 1.0F;
    float strokeOpacity_ = 1.0F;
};

}  // namespace mezalith
