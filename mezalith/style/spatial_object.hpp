// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/index/indexable.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/style/draw_context.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace mezalith {

class MzStyle;

/// The key by which symbolizers, rules and styles announce that their drawing changed.
inline constexpr char MzDrawPropertyKey[] = "drawProperty";

/// The entry points that a map view calls on whatever answers a geometry and a style. All of them
/// forward to the style; with none they do nothing and answer NO or 0.
class MEZALITH_EXPORT MzSpatialObjectDrawAdditions : public MzIndexable {
  public:
    /// In longitude and latitude; null draws nothing and is never hit.
    std::shared_ptr<MzGeometry> geometry() const override = 0;
    virtual std::shared_ptr<MzStyle> style() const = 0;

    /// Does nothing.
    void didAddToContext(MzDrawContext* context);
    void didRemoveFromContext(MzDrawContext* context);
    /// Draws only what is an `MzSpatialObject`.
    void drawInContext(MzDrawContext* context, bool selected);
    /// Whether a click at `point` (view points) hits. Asks anything, conforming or not.
    bool isAtPoint(MzPoint point, MzDrawContext* context, bool selected);
    std::uint32_t spatialObjectEventOptions() const;
    void mouseEntered(const platform::Event& event, MzPoint point, MzDrawContext* context);
    void mouseExited(const platform::Event& event, MzPoint point, MzDrawContext* context);
    void mouseMoved(const platform::Event& event, MzPoint point, MzDrawContext* context);
};

/// A feature of the host that can be drawn. Rule filters are written against these names, and
/// against the attributes.
class MEZALITH_EXPORT MzSpatialObject : public MzSpatialObjectDrawAdditions {
  public:
    /// The host-side owner, or null.
    virtual platform::Object* objectOwner() const = 0;
    virtual std::string featureName() const = 0;
    virtual std::string featureDescription() const = 0;
    /// The host's category of the feature.
    virtual std::string kind() const = 0;
    virtual const platform::Dictionary& propertiesByName() const = 0;
    virtual bool allowsInteraction() const = 0;
    /// For hosts that keep simplified geometries; the library never asks. `geometry` by default.
    virtual std::shared_ptr<MzGeometry> geometryForResolution(double /*resolution*/) const {
        return geometry();
    }

    /// The operation of this name; "propertiesByName" as the table it is. For any other key the
    /// attribute of this name, or null.
    platform::KeyedValue valueForKey(std::string_view key) const override;
};

}  // namespace mezalith
