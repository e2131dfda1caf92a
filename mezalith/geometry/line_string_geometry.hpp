// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry.hpp>

namespace mezalith {

/// A line string. Symbolizers draw none: a polyline to be drawn is a multi-point geometry.
class MEZALITH_EXPORT MzLineStringGeometry : public MzGeometry {
  public:
    /// No points.
    MzLineStringGeometry();
    /// Null unless the bytes hold a complete LineString.
    static std::shared_ptr<MzLineStringGeometry> initWithWKBData(MzData bytes);
    /// A zero-filled block of `bytes` (at least 16), its array behind the header, its count 0.
    static std::shared_ptr<MzLineStringGeometry> initWithCapacity(std::size_t bytes);
    static std::shared_ptr<MzLineStringGeometry> initWithLineString(MzLineString lineString);
    /// Null for a null pointer.
    static std::shared_ptr<MzLineStringGeometry> initWithLineStringPtr(
        const MzLineString* lineString);
    static std::shared_ptr<MzLineStringGeometry> geometryWithLineString(MzLineString lineString);

    std::uint32_t geometryType() const override { return 2; }
    int dimension() const override { return 1; }

    MzLineString* lineStringGeometry() const { return aLineString_; }
    /// Copies the record; a null array counts as empty.
    void setLineStringGeometry(MzLineString lineString);

    /// Settled: the call that makes the copy answers null; the next one answers the copy.
    std::shared_ptr<MzGeometry> geometryWithProjection(
        const std::shared_ptr<MzMapProjection>& projection) override;

  protected:
    void blockDidChange() override;
    Leaves makeLeafNodes() override;
    std::shared_ptr<MzGeometry> makeProjected(const MzMapProjection& projection) const override;

  private:
    MzLineString* aLineString_ = nullptr;
};

}  // namespace mezalith
