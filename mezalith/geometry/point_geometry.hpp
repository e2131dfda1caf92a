// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry.hpp>

namespace mezalith {

/// A single point.
class MEZALITH_EXPORT MzPointGeometry : public MzGeometry {
  public:
    /// The point (0, 0).
    MzPointGeometry();
    /// Null unless the bytes hold a complete Point.
    static std::shared_ptr<MzPointGeometry> initWithWKBData(MzData bytes);
    /// The point (0, 0) in a zero-filled block of `bytes` (at least 16).
    static std::shared_ptr<MzPointGeometry> initWithCapacity(std::size_t bytes);
    static std::shared_ptr<MzPointGeometry> initWithPoint(MzPoint point);
    static std::shared_ptr<MzPointGeometry> initWithNSPoint(MzPoint point);
    /// Null for a null pointer.
    static std::shared_ptr<MzPointGeometry> initWithPointPtr(const MzPoint* point);
    static std::shared_ptr<MzPointGeometry> geometryWithPoint(MzPoint point);
    /// Null for a null pointer.
    static std::shared_ptr<MzPointGeometry> geometryWithPointPtr(const MzPoint* point);

    std::uint32_t geometryType() const override { return 1; }

    /// As its leaf's bounds say, without making the leaf.
    bool mbrInsertsectsRect(MzRect rect) override;

    MzPoint* pointGeometry() const { return aPoint_; }
    void setPointGeometry(MzPoint point);
    double x() const { return aPoint_->x; }
    double y() const { return aPoint_->y; }
    MzPoint asNSPoint() const { return *aPoint_; }

    /// The point in view points, or null when it lies outside the region's rectangle (half-open)
    /// and for a null region.
    const MzPoint* clippedPointWithRegion(const MzClippingRegion* region);

  protected:
    void blockDidChange() override;
    Leaves makeLeafNodes() override;
    std::shared_ptr<MzGeometry> makeProjected(const MzMapProjection& projection) const override;

  private:
    MzPoint* aPoint_ = nullptr;
    MzPoint clippedPoint_{};
};

}  // namespace mezalith
