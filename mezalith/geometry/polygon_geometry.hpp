// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/clipped_rings.hpp>
#include <mezalith/geometry/geometry.hpp>

#include <array>
#include <optional>

namespace mezalith {

/// A polygon: an outer ring and holes.
class MEZALITH_EXPORT MzPolygonGeometry : public MzGeometry {
  public:
    /// Corners of a transformed bounding box: 0 the minimum, 1 with the greatest x, 2 with the
    /// greatest y.
    using TransformedBounds = std::array<MzPoint, 4>;

    /// No rings.
    MzPolygonGeometry();
    /// Null unless the bytes hold a complete Polygon.
    static std::shared_ptr<MzPolygonGeometry> initWithWKBData(MzData bytes);
    /// A zero-filled block of `bytes` (at least 16), without rings.
    static std::shared_ptr<MzPolygonGeometry> initWithCapacity(std::size_t bytes);
    static std::shared_ptr<MzPolygonGeometry> initWithPolygon(MzPolygon polygon);
    /// Null for a null pointer.
    static std::shared_ptr<MzPolygonGeometry> initWithPolygonPtr(const MzPolygon* polygon);
    static std::shared_ptr<MzPolygonGeometry> geometryWithPolygon(MzPolygon polygon);
    /// Null for a null pointer.
    static std::shared_ptr<MzPolygonGeometry> geometryWithPolygonPtr(const MzPolygon* polygon);

    std::uint32_t geometryType() const override { return 3; }
    int dimension() const override { return 2; }

    MzPolygon* polygonGeometry() const { return aPolygon_; }
    /// Copies the record; null arrays count as empty.
    void setPolygonGeometry(MzPolygon polygon);

    /// Settled: one slot instead of a map, told apart by SRID only, and not cleared by the setter.
    std::shared_ptr<MzGeometry> geometryWithProjection(
        const std::shared_ptr<MzMapProjection>& projection) override;

    /// Settled: judged by `transformedBounds`, which only the host fills; zeros until then.
    bool mbrInsertsectsRect(MzRect rect) override;
    const TransformedBounds& transformedBounds() const { return transformedBounds_; }
    void setTransformedBounds(const TransformedBounds& corners) { transformedBounds_ = corners; }

    /// For a point: by the bounds of the leaves, then by `crossingTest`; NO for anything else.
    bool contains(MzGeometry* other) override;

    /// The centroid of the ring of greatest area; null when no ring has one.
    const MzPoint* centroid();

    /// Every ring clipped, in view points; rings keep their places, also when nothing is left.
    const MzPolygon* clippedPolygonWithRegion(const MzClippingRegion* region);

  protected:
    void blockDidChange() override;
    Leaves makeLeafNodes() override;
    std::shared_ptr<MzGeometry> makeProjected(const MzMapProjection& projection) const override;

  private:
    MzPolygon* aPolygon_ = nullptr;
    detail::ClippedRings clippedRings_;
    MzPolygon clippedPolygon_{};
    std::optional<MzPoint> centroid_;
    std::shared_ptr<MzGeometry> transformedPolygon_;
    std::int64_t transformedPolygonSRID_ = 0;
    TransformedBounds transformedBounds_{};
};

}  // namespace mezalith
