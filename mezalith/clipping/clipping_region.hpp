// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/affine_transform.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

namespace mezalith {

/// What a clipping region needs to know of the view it is made for. A draw context is one.
class MEZALITH_EXPORT MzClippingContext {
  public:
    virtual ~MzClippingContext();
    /// From projected coordinates to view points.
    virtual std::shared_ptr<MzAffineTransform> projectedToPixelTransform() const = 0;
    /// The visible area in projected units.
    virtual MzRect projectedBounds() const = 0;
    /// Projected units covered by one view point.
    virtual double projectedUnitsPerPixel() const = 0;
};

/// A line in the plane: the points with a·x + b·y + c = 0.
struct MzProjectiveLine {
    double a;
    double b;
    double c;
};

/// Bits of a region code, set where a point lies beyond a side; 0 inside and on the border.
enum MzRegionCodeBit : std::int32_t {
    MzRegionLowY = 1,
    MzRegionHighY = 2,
    MzRegionHighX = 4,
    MzRegionLowX = 8
};

/// For one drawing pass: the rectangle in projected units outside which geometry is cut away, the
/// transform to view points, and the spacing below which points are too close to be worth keeping.
class MEZALITH_EXPORT MzClippingRegion {
  public:
    using Corners = std::array<MzPoint, 4>;
    using Edges = std::array<MzProjectiveLine, 4>;

    MzClippingRegion() = default;
    /// The visible area grown by 50 view points on every side, with a minimum spacing of two. A
    /// null context gives zeros and no transform.
    static std::shared_ptr<MzClippingRegion> initWithDrawContext(const MzClippingContext* context);

    MzRect clippingRect() const { return clippingRect_; }
    /// Recomputes corners and edges.
    void setClippingRect(MzRect rect);

    /// The corners: (x, y), (x + width, y), (x + width, y + height), (x, y + height).
    const Corners& bounds() const { return bounds_; }
    /// Edge i runs from corner i to corner (i + 1) mod 4.
    const Edges& edges() const { return edges_; }

    /// Projected units to view points; null maps every point to (0, 0). Read and set as a whole,
    /// also by several threads.
    std::shared_ptr<MzAffineTransform> transform() const { return transform_.load(); }
    void setTransform(std::shared_ptr<MzAffineTransform> transform);

    /// Projected units, Manhattan distance.
    double minSpacing() const { return minSpacing_; }
    void setMinSpacing(double spacing) { minSpacing_ = spacing; }

    /// Whether the clippers keep to the true intersection: crossings in the direction of travel, no
    /// point inside dropped, rings closed, an exit joined to the next entry along the border. NO
    /// unless set: they then keep to what is settled.
    bool exact() const { return exact_; }
    void setExact(bool exact) { exact_ = exact; }

  private:
    /// Copies with its region what it holds at that moment.
    struct Transform : std::atomic<std::shared_ptr<MzAffineTransform>> {
        Transform() = default;
        Transform(const Transform& other) : atomic(other.load()) {}
        Transform& operator=(const Transform& other) {
            store(other.load());
            return *this;
        }
    };

    MzRect clippingRect_ = MzZeroRect;
    Corners bounds_{};
    Edges edges_{};
    Transform transform_;
    double minSpacing_ = 0;
    bool exact_ = false;
};

/// The line through both points.
MEZALITH_EXPORT MzProjectiveLine MzProjectiveLineFromPoints(MzPoint p1, MzPoint p2);

/// Where the lines cross; infinities or NaNs for parallel lines.
MEZALITH_EXPORT MzPoint MzPointIntersectionOfProjectiveLines(MzProjectiveLine l1,
                                                             MzProjectiveLine l2);

/// On which sides of the region's rectangle the point lies: 0, 1, 2, 4, 5, 6, 8, 9 or 10. A null
/// region answers 0.
MEZALITH_EXPORT std::int32_t MzRegionCode(MzPoint point, const MzClippingRegion* region);

}  // namespace mezalith
