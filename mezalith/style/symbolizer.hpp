// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/observable.hpp>
#include <mezalith/style/draw_context.hpp>
#include <mezalith/style/spatial_object.hpp>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace mezalith {

/// One drawing instruction of a rule: projects and clips a feature's geometry through the draw
/// context and draws it into the current graphics port. The base class draws nothing.
///
/// "drawProperty" changes whenever one of the class's `drawPropertyKeyPaths` does. Setting a
/// property announces its key, also when the value stays the same. Nothing is observed in a copy.
class MEZALITH_EXPORT MzSymbolizer : public platform::Observable, public platform::Object {
  public:
    MzSymbolizer() = default;
    MzSymbolizer(const MzSymbolizer&) = delete;
    MzSymbolizer& operator=(const MzSymbolizer&) = delete;
    ~MzSymbolizer() override;

    /// The properties that affect drawing, by name; none in the base.
    virtual std::vector<std::string> drawPropertyKeyPaths() const;
    /// `drawPropertyKeyPaths` for "drawProperty", nothing for any other key.
    std::set<std::string> keyPathsForValuesAffectingValueForKey(
        const std::string& key) const override;

    /// Settled codes: point 0, line 1, polygon 2, image 14561, bubble 118166; the base 0.
    virtual std::uint32_t symbolizerType() const { return 0; }

    /// A new symbolizer of the receiver's own class; what it carries over is the class's to say.
    std::shared_ptr<MzSymbolizer> copy() const;

    /// YES for the same object; NO for null or another `symbolizerType`; else as the class's own
    /// comparison says for the types 0 to 2, and NO for any other type.
    virtual bool isEqualToSymbolizer(const MzSymbolizer* other) const;

    /// Draws into the current graphics port. Nothing happens without an object, a context, a
    /// geometry, a projection or a port.
    virtual void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                                   bool selected);
    /// Whether a click at `point` (view points) hits what is drawn; NO in the base.
    /// Settled: lines and areas are never hit, markers and pictures by a shape of their own;
    /// `paintsAtPoint` answers by what is drawn.
    virtual bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                 MzDrawContext* context, bool selected);
    /// Whether `drawSpatialObject` would paint anything within `tolerance` (view points) of `point`
    /// (view points), as a `platform::HitPort` decides: nothing is painted, and no layer is kept.
    virtual bool paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point,
                               double tolerance, MzDrawContext* context, bool selected);
    /// How far (view points) anything painted, shadows included, can be from the box around the
    /// feature, at this scale factor; infinity in the base, which cannot know.
    virtual double paintReach(double scaleFactor) const;
    /// Takes away what the symbolizer left in the view for the object; nothing in the base.
    virtual void didRemoveFromContext(MzDrawContext* context, MzSpatialObjectDrawAdditions* object);

  protected:
    /// The object's geometry in the context's projection, or null when it lies outside the
    /// context's clipping rectangle or there is no object, context, geometry or projection. A null
    /// clipping region counts as the zero rectangle.
    static std::shared_ptr<MzGeometry> visibleGeometry(const MzSpatialObjectDrawAdditions* object,
                                                       const MzDrawContext* context);
    /// The port of the current graphics context, or null.
    static platform::GraphicsPort* currentGraphicsPort();

    /// A fresh symbolizer of the receiver's own class, for `copy`.
    virtual std::shared_ptr<MzSymbolizer> newInstance() const;
    /// Sets on `copy`, which is of the receiver's own class, what a copy carries over.
    virtual void copyPropertiesTo(MzSymbolizer& copy) const;
    /// The class's own comparison with a symbolizer of the same type that is not the receiver.
    virtual bool hasEqualProperties(const MzSymbolizer& other) const;
};

}  // namespace mezalith
