// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/style/stroked_symbolizer.hpp>

namespace mezalith {

/// Strokes multi-points as polylines and polygons as outlines; other geometries, line strings
/// among them, are not drawn. Lines are never hit.
///
/// Settled: copies and archives carry no shadow. A copy has the defaults, a decoded symbolizer has
/// `shouldShadow` NO and zeros.
class MEZALITH_EXPORT MzLineSymbolizer : public MzStrokedSymbolizer {
  public:
    /// Cyan, opaque, two points wide, round, solid, no shadow.
    MzLineSymbolizer();
    static std::shared_ptr<MzLineSymbolizer> initWithCoder(const platform::KeyedUnarchiver& coder);

    /// The line's colour; its own alpha does not count. Null strokes in the port's colour.
    const std::shared_ptr<const platform::Color>& strokeColor() const { return strokeColor_; }
    void setStrokeColor(std::shared_ptr<const platform::Color> color);

    /// The alpha of the stroke.
    float strokeOpacity() const { return strokeOpacity_; }
    void setStrokeOpacity(float opacity);

    bool shouldShadow() const { return shouldShadow_; }
    void setShouldShadow(bool shadow);

    /// View points to the right, multiplied by the scale factor.
    float xShadowOffset() const { return xShadowOffset_; }
    void setXShadowOffset(float offset);

    /// View points upwards, multiplied by the scale factor.
    float yShadowOffset() const { return yShadowOffset_; }
    void setYShadowOffset(float offset);

    /// View points.
    /// Settled: not multiplied by the scale factor, though the offsets are.
    float shadowBlur() const { return shadowBlur_; }
    void setShadowBlur(float blur);

    std::vector<std::string> drawPropertyKeyPaths() const override;
    std::uint32_t symbolizerType() const override { return 1; }
    std::shared_ptr<MzLineSymbolizer> copy() const;

    /// Equal width, join, cap, dash offset, dash count, opacity and colour; NO for null.
    /// Settled: `isDashed`, the pattern and the shadow are not compared.
    bool isEqualToLineSymbolizer(const MzLineSymbolizer* other) const;

    /// A selected object is drawn like any other.
    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override;

    /// As far as the stroke reaches, and its shadow.
    double paintReach(double scaleFactor) const override;

    /// Sets cap, join, width, dash, stroke colour and, when asked for, the shadow; then strokes.
    void symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) override;

    std::string_view archiveClassName() const override { return "MzLineSymbolizer"; }
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

  protected:
    std::shared_ptr<MzSymbolizer> newInstance() const override;
    void copyPropertiesTo(MzSymbolizer& copy) const override;
    bool hasEqualProperties(const MzSymbolizer& other) const override;

  private:
    void decodeWithCoder(const platform::KeyedUnarchiver& coder);

    std::shared_ptr<const platform::Color> strokeColor_;
    float strokeOpacity_ = 1.0F;
    MzSize shadowOffset(double scaleFactor) const {
        return {double{xShadowOffset_} * scaleFactor, double{yShadowOffset_} * scaleFactor};
    }

    bool shouldShadow_ = false;
    float xShadowOffset_ = 1.5F;
    float yShadowOffset_ = 1.5F;
    float shadowBlur_ = 0.5F;
};

}  // namespace mezalith
