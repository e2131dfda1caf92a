// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include "host/feature.hpp"
#include "host/view_cutter.hpp"
#include <mezalith/platform/view.hpp>
#include <mezalith/style/draw_context.hpp>
#include <mezalith/style/style.hpp>

#include <memory>
#include <optional>
#include <vector>

namespace mezalith::host {

/// What a map view shows, and on what.
struct ViewFrame {
    std::shared_ptr<MzMapProjection> projection;
    BoundingBox area;        ///< to be in sight: longitudes and latitudes, degrees
    MzSize size{1200, 800};  ///< view points
    double pixelRatio = 1;   ///< backing pixels per view point
    double scaleFactor = 1;  ///< by which widths, dashes and symbols are multiplied
    /// How close two points of an outline may come before one of them is dropped, in backing
    /// pixels. Half a pixel cannot be seen in any one outline; where a picture is magnified, it
    /// can.
    double spacing = 0.5;
    /// How far (view points) what is drawn reaches beyond its place: what lies farther outside of
    /// the view is not drawn. Unless it is known, 50 points times the scale factor. Lines are cut
    /// off so far outside at the least.
    std::optional<double> reach{};
};

/// A map view: the draw context of everything that is drawn in one frame. It fits the frame's area
/// into its size, keeping the proportions of the projection's plane, the area in the middle. y
/// grows upwards, as in every view.
class MapView final : public MzDrawContext {
  public:
    /// Metres to a pixel, for the scale denominator.
    /// Source: OGC 05-077r4, Symbology Encoding, clause 10.2: the standardised rendering pixel.
    static constexpr double kPixelSize = 0.00028;

    /// Throws a Failure when the area is empty, not finite, or out of the projection's reach.
    explicit MapView(ViewFrame frame);

    std::shared_ptr<MzAffineTransform> projectedToPixelTransform() const override;
    MzRect projectedBounds() const override { return bounds_; }
    double projectedUnitsPerPixel() const override { return unitsPerPixel_; }
    std::shared_ptr<MzMapProjection> mapProjection() const override { return frame_.projection; }
    std::shared_ptr<MzClippingRegion> clippingRegion() const override { return region_; }
    /// For the middle of the view.
    double scaleDenominator() const override { return scaleDenominator_; }
    double scaleFactor() const override { return frame_.scaleFactor; }
    void addSubview(const std::shared_ptr<platform::View>& view) override;
    const ViewFrame& frame() const { return frame_; }
    /// The longitudes and latitudes, degrees, outside of which, and of what the globe repeats every
    /// 360 degrees, nothing can be seen: a little more than the frame's area.
    const BoundingBox& seen() const { return cutter_->seen(); }

    /// The outline of what the projection shows of the globe, view points: closed rings, for the
    /// even-odd rule. None where the view shows no edge of it.
    GlobeRings globeOutline() const;

    /// Draws what can be seen of the feature into the current graphics port.
    void draw(const Feature& feature, bool selected = false);
    /// What a click at `point` hits of the feature within `tolerance`, view points both, as it is
    /// drawn: the topmost symbolizer that paints there; none without a style.
    std::optional<MzStyleHit> hit(const Feature& feature, MzPoint point, double tolerance,
                                  bool selected = false);
    /// The boxes, projected units, around what is drawn of the feature: one for each place where
    /// the globe shows it, at the least; none when it is not in sight.
    std::vector<BoundingBox> projectedBoxes(const Feature& feature) const;
    /// The box, projected units, around all within `distance` of `point`, view points both.
    BoundingBox projectedAround(MzPoint point, double distance) const;
    /// Draws the views that features put into this one, such as callouts, over everything.
    void drawSubviews() { subviews_.display(); }
    /// Holds them; its frame is that of the map, from (0, 0).
    const platform::View& subviews() const { return subviews_; }

  private:
    /// The view and what lies within so many view points around it, projected units.
    MzRect around(double margin) const;
    std::vector<std::shared_ptr<Feature>> piecesOf(const Feature& feature) const;
    BoundingBox projectedBox(const Feature& piece) const;

    ViewFrame frame_;
    MzRect bounds_ = MzZeroRect;
    double unitsPerPixel_ = 0;
    double scaleDenominator_ = 0;
    std::shared_ptr<MzClippingRegion> region_;
    std::unique_ptr<ViewCutter> cutter_;
    platform::View subviews_;
};

/// The box around the projected `area` (degrees), or around what of it is within the projection's
/// reach; empty when that is nothing.
BoundingBox projectedArea(const MzMapProjection& projection, const BoundingBox& area);

}  // namespace mezalith::host
