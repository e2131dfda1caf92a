// SPDX-License-Identifier: MIT
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/projected_bounds.hpp>

#include <limits>

namespace mezalith {
namespace {

MzPolygonGeometry::TransformedBounds cornersOf(MzRect bounds) {
    const auto [x, y] = bounds.origin;
    const double right = x + bounds.size.width, top = y + bounds.size.height;
    return {{{x, y}, {right, y}, {right, top}, {x, top}}};
}

/// Of what has no points: no rectangle meets it.
MzPolygonGeometry::TransformedBounds nowhere() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr MzPoint kFar{kInfinity, kInfinity};
    return {kFar, kFar, kFar, kFar};
}

void appendLeaves(MzGeometry::Leaves& leaves, MzGeometry* geometry,
                  const std::shared_ptr<MzMapProjection>& projection, platform::Object* object) {
    const auto copy = MzProjectedCopy(geometry, projection);
    if (copy == nullptr) return;
    for (const auto& shared : copy->leafNodes()) {
        leaves.push_back(MzTreeLeafNode::initWithBounds(shared->bounds(), object));
    }
}

}  // namespace

std::shared_ptr<MzGeometry> MzProjectedCopy(MzGeometry* geometry,
                                            const std::shared_ptr<MzMapProjection>& projection) {
    if (geometry == nullptr || projection == nullptr) return nullptr;
    auto copy = geometry->geometryWithProjection(projection);
    return copy != nullptr ? copy : geometry->geometryWithProjection(projection);
}

void MzFillTransformedBounds(MzGeometry* geometry,
                             const std::shared_ptr<MzMapProjection>& projection) {
    const auto copy = MzProjectedCopy(geometry, projection);
    if (copy == nullptr) return;
    const MzGeometry::Leaves& leaves = copy->leafNodes();
    auto* const polygon = dynamic_cast<MzPolygonGeometry*>(copy.get());
    if (polygon == nullptr) return;
    polygon->setTransformedBounds(leaves.empty() ? nowhere() : cornersOf(leaves.front()->bounds()));
}

void MzFillTransformedBounds(std::span<MzIndexable* const> objects,
                             const std::shared_ptr<MzMapProjection>& projection) {
    for (const MzIndexable* object : objects) {
        if (object != nullptr) MzFillTransformedBounds(object->geometry().get(), projection);
    }
}

MzGeometry::Leaves MzProjectedLeafNodes(MzGeometry* geometry,
                                        const std::shared_ptr<MzMapProjection>& projection,
                                        platform::Object* object) {
    MzGeometry::Leaves leaves;
    appendLeaves(leaves, geometry, projection, object);
    return leaves;
}

MzGeometry::Leaves MzProjectedLeafNodes(std::span<MzIndexable* const> objects,
                                        const std::shared_ptr<MzMapProjection>& projection) {
    MzGeometry::Leaves leaves;
    for (MzIndexable* object : objects) {
        if (object != nullptr) {
            appendLeaves(leaves, object->geometry().get(), projection, object);
        }
    }
    return leaves;
}

}  // namespace mezalith
