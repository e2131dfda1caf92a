// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/clipped_rings.hpp>
#include <mezalith/geometry/geometry.hpp>

namespace mezalith {

/// Several polygons.
class MEZALITH_EXPORT MzMultiPolygonGeometry : public MzGeometry {
  public:
    /// No polygons.
    MzMultiPolygonGeometry();
    /// Null unless the bytes hold a complete MultiPolygon.
    static std::shared_ptr<MzMultiPolygonGeometry> initWithWKBData(MzData bytes);
    /// A zero-filled block of `bytes` (at least 16), without polygons.
    static std::shared_ptr<MzMultiPolygonGeometry> initWithCapacity(std::size_t bytes);
    static std::shared_ptr<MzMultiPolygonGeometry> initWithMultiPolygon(MzMultiPolygon polygons);
    /// Null for a null pointer.
    static std::shared_ptr<MzMultiPolygonGeometry> initWithMultiPolygonPtr(
        const MzMultiPolygon* polygons);
    static std::shared_ptr<MzMultiPolygonGeometry> geometryWithMultiPolygon(
        MzMultiPolygon polygons);

    std::uint32_t geometryType() const override { return 6; }
    int dimension() const override { return 2; }

    MzMultiPolygon* multiPolygonGeometry() const { return aMultiPolygon_; }
    /// Copies the record; null arrays count as empty.
    void setMultiPolygonGeometry(MzMultiPolygon polygons);

    /// For a point: by the bounds of the leaves, then by `crossingTest` on each member; NO for
    /// anything else.
    bool contains(MzGeometry* other) override;

    /// Every ring of every member clipped, in view points; members and rings keep their places.
    const MzMultiPolygon* clippedMultiPolygonWithRegion(const MzClippingRegion* region);

  protected:
    void blockDidChange() override;
    Leaves makeLeafNodes() override;
    std::shared_ptr<MzGeometry> makeProjected(const MzMapProjection& projection) const override;
    MzData encodeWKB() const override;

  private:
    MzMultiPolygon* aMultiPolygon_ = nullptr;
    detail::ClippedRings clippedRings_;
    std::vector<MzPolygon> clippedPolygons_;
    MzMultiPolygon clippedMultiPolgon_{};
};

}  // namespace mezalith
