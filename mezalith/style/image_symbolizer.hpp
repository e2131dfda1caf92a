// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/image.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <cstdint>
#include <memory>

namespace mezalith {

/// Stamps a picture such as an icon on points, anchored at a hot spot and turned about it. Other
/// geometries draw nothing.
///
/// The picture is drawn into a layer once, at the size of that moment and for the port of that
/// moment. It cannot be archived, and a selected object looks like any other.
/// Settled: the layer stays as it is when the picture or the size changes. A new symbolizer, or
/// `setLayer(nullptr)`, draws the new picture.
class MEZALITH_EXPORT MzImageSymbolizer : public MzSymbolizer {
  public:
    /// Without a picture and of no size: draws nothing.
    MzImageSymbolizer() = default;

    /// `hotSpot` and `rotation` as below, `destinationSize` in view points.
    static std::shared_ptr<MzImageSymbolizer> initWithImage(
        std::shared_ptr<const platform::Image> image, MzPoint hotSpot, double rotation,
        MzSize destinationSize);
    /// The same without a size.
    /// Settled: the size is (0, 0) until `setSize`, not the picture's. Pass `image->size()` to the
    /// other form for that.
    static std::shared_ptr<MzImageSymbolizer> initWithImage(
        std::shared_ptr<const platform::Image> image, MzPoint hotSpot, double rotation);

    /// The picture, or null.
    const std::shared_ptr<const platform::Image>& image() const { return image_; }
    void setImage(std::shared_ptr<const platform::Image> image);

    /// What of the picture is at the point, as a fraction of the size: (0, 0) the lower-left
    /// corner, (0.5, 0.5) the centre.
    MzPoint hotSpot() const { return hotSpot_; }
    void setHotSpot(MzPoint hotSpot);

    /// Radians about the hot spot, counter-clockwise.
    double rotation() const { return rotation_; }
    void setRotation(double radians);

    /// View points.
    MzSize size() const { return size_; }
    void setSize(MzSize size);

    /// The drawn picture; null until the first drawing makes it.
    const std::shared_ptr<platform::Layer>& layer() const { return layer_; }
    void setLayer(std::shared_ptr<platform::Layer> layer);

    /// The layer, made for this port when there is none yet. Null when it cannot be made: for a
    /// null port and without a positive size.
    std::shared_ptr<platform::Layer> layerForContext(platform::GraphicsPort* port);

    std::uint32_t symbolizerType() const override { return 14561; }
    /// With the same picture and the same layer.
    std::shared_ptr<MzImageSymbolizer> copy() const;
    /// YES when both hold the very same picture, whatever else differs.
    bool isEqualToSymbolizer(const MzSymbolizer* other) const override;

    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool selected) override;
    /// Whether `point` lies in the picture's rectangle (half-open); NO for other geometries than
    /// points.
    /// Settled: the rectangle is not turned with the picture.
    bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                         MzDrawContext* context, bool selected) override;
    /// As a picture that is drawn anew: one that was drawn before with another image or size, and
    /// is kept, is hit as if it were not.
    bool paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point, double tolerance,
                       MzDrawContext* context, bool selected) override;
    /// As far as the corner that is farthest from the hot spot.
    double paintReach(double scaleFactor) const override;

  protected:
    std::shared_ptr<MzSymbolizer> newInstance() const override;
    void copyPropertiesTo(MzSymbolizer& copy) const override;

  private:
    /// From the hot spot to the picture's origin.
    MzPoint originFrom(MzPoint hotSpot) const;

    std::shared_ptr<const platform::Image> image_;
    MzPoint hotSpot_{};
    double rotation_ = 0;
    MzSize size_{};
    std::shared_ptr<platform::Layer> layer_;
};

}  // namespace mezalith
