// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/shadow.hpp>
#include <mezalith/style/stroked_symbolizer.hpp>

namespace mezalith {

/// Stamps a small marker on points and on every point of multi-points, and draws it at the centroid
/// of polygons. Markers on points can be hit.
///
/// The marker is drawn into a layer once, and again after any property that affects drawing was
/// set. A selected object has a dark halo with a shadow beneath its marker.
class MEZALITH_EXPORT MzPointSymbolizer : public MzStrokedSymbolizer, private platform::Observer {
  public:
    /// A cyan circle four points wide with a black outline of half a point.
    MzPointSymbolizer();
    static std::shared_ptr<MzPointSymbolizer> initWithCoder(const platform::KeyedUnarchiver& coder);

    bool shouldStroke() const { return shouldStroke_; }
    void setShouldStroke(bool stroke);

    /// The outline's colour, alpha included. Null draws a transparent outline.
    const std::shared_ptr<const platform::Color>& strokeColor() const { return strokeColor_; }
    void setStrokeColor(std::shared_ptr<const platform::Color> color);

    /// The alpha of `strokeColor`; 0 without a colour. Setting it replaces the colour.
    double strokeOpacity() const;
    void setStrokeOpacity(double opacity);

    bool shouldFill() const { return shouldFill_; }
    void setShouldFill(bool fill);

    /// The fill's colour, alpha included. Null fills transparently.
    const std::shared_ptr<const platform::Color>& fillColor() const { return fillColor_; }
    void setFillColor(std::shared_ptr<const platform::Color> color);

    /// The alpha of `fillColor`; 0 without a colour. Setting it replaces the colour.
    double fillOpacity() const;
    void setFillOpacity(double opacity);

    /// 0 square, 1 circle, 2 triangle, 3 cross, 4 star; nothing is drawn for any other value.
    std::int32_t symbolType() const { return symbolType_; }
    void setSymbolType(std::int32_t type);

    /// Diameter of the circle through the marker's outer vertices, view points.
    float symbolSize() const { return symbolSize_; }
    void setSymbolSize(float size);

    /// Degrees, clockwise; a circle does not turn.
    float symbolRotation() const { return symbolRotation_; }
    void setSymbolRotation(float degrees);

    /// Settled: kept, archived and compared, but used by no drawing.
    float symbolOpacity() const { return symbolOpacity_; }
    void setSymbolOpacity(float opacity);

    bool shouldShadow() const { return shouldShadow_; }
    void setShouldShadow(bool shadow);

    /// The marker's shadow; null casts none.
    const std::shared_ptr<const platform::Shadow>& shadow() const { return shadow_; }
    /// Keeps a copy.
    void setShadow(const std::shared_ptr<const platform::Shadow>& shadow);

    // The parts of the shadow: 0 and null without one, and then not set.
    double shadowOffsetWidth() const;
    void setShadowOffsetWidth(double width);
    double shadowOffsetHeight() const;
    void setShadowOffsetHeight(double height);
    double shadowBlurRadius() const;
    void setShadowBlurRadius(double radius);
    std::shared_ptr<const platform::Color> shadowColor() const;
    void setShadowColor(std::shared_ptr<const platform::Color> color);

    /// The drawn marker; null until the next drawing makes it.
    const std::shared_ptr<platform::Layer>& theLayer() const { return theLayer_; }
    void setTheLayer(std::shared_ptr<platform::Layer> layer);

    std::vector<std::string> drawPropertyKeyPaths() const override;
    std::uint32_t symbolizerType() const override { return 0; }
    /// Settled: without the shadow, which is the default one, switched off.
    std::shared_ptr<MzPointSymbolizer> copy() const;

    /// Compares everything but the dash pattern and the shadow, opacities as the alpha of their
    /// colours; NO for null.
    bool isEqualToPointSymbolizer(const MzPointSymbolizer* other) const;

    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override;

    /// For points and multi-points: whether the Manhattan distance from `point` is under
    /// `symbolSize` + `strokeWidth` / 2, whatever the scale factor. NO for polygons.
    bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                         MzDrawContext* context, bool selected) override;
    /// As a marker that is drawn anew, whatever layer is kept.
    bool paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point, double tolerance,
                       MzDrawContext* context, bool selected) override;
    /// As far as the layer of a selected marker, or a marker without a layer.
    double paintReach(double scaleFactor) const override;

    /// Sets the state from the properties and draws the marker around the origin.
    /// Settled: a shadow is set on the port of the current graphics context, whichever port the
    /// marker is drawn into; only its removal goes to `port`.
    void symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) override;

    /// Adds the outline of the marker around the origin to the port's current path; its radius is
    /// half of `symbolSize` times `scaleFactor`. Nothing for a null port, here and below.
    ///
    /// Vertices lie at (q sin a, q cos a): angle 0 points up, angles grow clockwise.
    /// Settled: all angles but a shape's first are rounded to single precision.
    void drawSymbolInContext(platform::GraphicsPort* port, double scaleFactor) const;
    /// Four vertices, corners on the diagonals.
    void drawSquareInContext(platform::GraphicsPort* port, double scaleFactor) const;
    void drawCircleInContext(platform::GraphicsPort* port, double scaleFactor) const;
    /// Three vertices, one at the top.
    void drawTriangleInContext(platform::GraphicsPort* port, double scaleFactor) const;
    /// Two crossing segments, not closed.
    void drawCrossInContext(platform::GraphicsPort* port, double scaleFactor) const;
    /// Ten vertices, the inner ones at 0.35 of the radius.
    void drawStarInContext(platform::GraphicsPort* port, double scaleFactor) const;

    std::string_view archiveClassName() const override { return "MzPointSymbolizer"; }
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

  protected:
    std::shared_ptr<MzSymbolizer> newInstance() const override;
    void copyPropertiesTo(MzSymbolizer& copy) const override;
    bool hasEqualProperties(const MzSymbolizer& other) const override;

  private:
    void decodeWithCoder(const platform::KeyedUnarchiver& coder);
    /// A draw property of its own changed: drops the layer.
    void observeValueForKey(const std::string& key, platform::Observable* object,
                            const platform::Change& change, std::int64_t context) override;

    /// Announces a change of `key` and of the shadow around `edit` on a copy of the shadow.
    template <typename Edit>
    void changeShadow(std::string_view key, Edit edit);

    bool drawsNothing() const { return !shouldFill_ && !shouldStroke_; }
    double radius(double scaleFactor) const;
    double rotation() const;
    double layerSide() const;
    std::shared_ptr<MzPointSymbolizer> halo() const;
    void makeLayer(platform::GraphicsPort& port, double scaleFactor);
    void applyShadow(platform::GraphicsPort& port) const;
    void stamp(platform::GraphicsPort& port, MzPoint point) const;
    void stampAll(platform::GraphicsPort& port, std::span<const MzPoint> points) const;
    void stampOne(platform::GraphicsPort& port, const MzPoint* point) const;
    void drawAt(platform::GraphicsPort& port, const MzPoint* point, double scaleFactor);

    bool shouldStroke_ = true;
    bool shouldFill_ = true;
    std::shared_ptr<const platform::Color> strokeColor_;
    std::shared_ptr<const platform::Color> fillColor_;
    std::int32_t symbolType_ = 1;
    float symbolSize_ = 4.0F;
    float symbolRotation_ = 0.0F;
    float symbolOpacity_ = 1.0F;
    bool shouldShadow_ = false;
    std::shared_ptr<const platform::Shadow> shadow_;
    std::shared_ptr<platform::Layer> theLayer_;
};

}  // namespace mezalith
