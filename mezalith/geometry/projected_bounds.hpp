// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/index/indexable.hpp>
#include <mezalith/index/tree_node.hpp>

#include <memory>
#include <span>

namespace mezalith {

// Where geometries lie in the plane of a projection, for culling and for trees. Copies in that
// plane are made as they are asked for, and kept by their geometries. Null geometries, objects and
// projections, and geometries without a copy, have nothing.

/// The geometry's copy in the projection's plane, of line strings too at the first time of asking.
MEZALITH_EXPORT std::shared_ptr<MzGeometry> MzProjectedCopy(
    MzGeometry* geometry, const std::shared_ptr<MzMapProjection>& projection);

/// Gets the copy of `geometry` ready to be culled by `mbrInsertsectsRect`: of a polygon it fills
/// the transformed bounds, which nobody else fills, of all others, multi-polygons with a leaf for
/// each member among them, it makes the leaves. A polygon without points is never met.
MEZALITH_EXPORT void MzFillTransformedBounds(MzGeometry* geometry,
                                             const std::shared_ptr<MzMapProjection>& projection);
/// Of the objects' geometries.
MEZALITH_EXPORT void MzFillTransformedBounds(std::span<MzIndexable* const> objects,
                                             const std::shared_ptr<MzMapProjection>& projection);

/// A leaf for each piece of the geometry, bounds in projected units, with `object` as its object:
/// leaves of their own, which a tree may point elsewhere. For `MzRTree::rootNodesForNodes` and
/// `MzPackedRTree::initWithLeaves`.
MEZALITH_EXPORT MzGeometry::Leaves MzProjectedLeafNodes(
    MzGeometry* geometry, const std::shared_ptr<MzMapProjection>& projection,
    platform::Object* object);
/// Of the objects' geometries, in order; each leaf has its object.
MEZALITH_EXPORT MzGeometry::Leaves MzProjectedLeafNodes(
    std::span<MzIndexable* const> objects, const std::shared_ptr<MzMapProjection>& projection);

}  // namespace mezalith
