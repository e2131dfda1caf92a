// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry.hpp>

namespace mezalith {

/// Several points; also the polyline of the library, as the same points can be clipped as a line.
class MEZALITH_EXPORT MzMultiPointGeometry : public MzGeometry {
  public:
    /// No points.
    MzMultiPointGeometry();
    /// Null unless the bytes hold a complete MultiPoint.
    static std::shared_ptr<MzMultiPointGeometry> initWithWKBData(MzData bytes);
    /// A zero-filled block of `bytes` (at least 16), its array behind the header, its count 0.
    static std::shared_ptr<MzMultiPointGeometry> initWithCapacity(std::size_t bytes);
    static std::shared_ptr<MzMultiPointGeometry> initWithMultiPoint(MzMultiPoint multiPoint);
    /// Null for a null pointer.
    static std::shared_ptr<MzMultiPointGeometry> initWithMultiPointPtr(
        const MzMultiPoint* multiPoint);
    static std::shared_ptr<MzMultiPointGeometry> geometryWithMultiPoint(MzMultiPoint multiPoint);
    /// Null for a null pointer.
    static std::shared_ptr<MzMultiPointGeometry> geometryWithMultiPointPtr(
        const MzMultiPoint* multiPoint);

    std::uint32_t geometryType() const override { return 4; }

    MzMultiPoint* multiPointGeometry() const { return aMultiPoint_; }
    /// Copies the record; a null array counts as empty.
    void setMultiPointGeometry(MzMultiPoint multiPoint);

    /// The points inside the region, in view points.
    const MzMultiPoint* clippedMultiPointWithRegion(const MzClippingRegion* region);
    /// The points as one polyline, clipped, in view points; independent of the record above.
    const MzLineString* clippedLineStringWithRegion(const MzClippingRegion* region);

  protected:
    void blockDidChange() override;
    Leaves makeLeafNodes() override;
    std::shared_ptr<MzGeometry> makeProjected(const MzMapProjection& projection) const override;
    MzData encodeWKB() const override;
    /// A fresh object of the receiver's own class, for projected copies.
    virtual std::shared_ptr<MzMultiPointGeometry> newInstance() const;

    MzMultiPoint* aMultiPoint_ = nullptr;

  private:
    std::vector<MzPoint> clippedMultiPointData_;
    MzMultiPoint clippiedMultiPoint_{};
    std::vector<MzPoint> clippedLineStringData_;
    MzLineString clippedLineString_{};
};

}  // namespace mezalith
