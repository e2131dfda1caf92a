// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>
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
/// "drawProperty" changes whenever one of the class's `drawPropertyKeyPaths` does.
class MEZALITH_EXPORT MzSymbolizer : public platform::Observable, public platform::Object {
  public:
    MzSymbolizer() = default;
    ~MzSymbolizer() override;

    /// The properties that affect drawing, by name; none in the base.
    virtual std::vector<std::string> drawPropertyKeyPaths() const;
    /// `drawPropertyKeyPaths` for "drawProperty", nothing for any other key.
    std::set<std::string> keyPathsForValuesAffectingValueForKey(
        const std::string& key) const override;

    /// Settled codes: point 0, line 1, polygon 2, image 14561, bubble 118166; the base 0.
    virtual std::uint32_t symbolizerType() const { return 0; }

    /// A new symbolizer of the receiver's own class; what it carries over is the class's to say.
    virtual std::shared_ptr<MzSymbolizer> copy() const;

    /// YES for the same object; NO for null or another `symbolizerType`; else as the class's own
    /// comparison says.
    virtual bool isEqualToSymbolizer(const MzSymbolizer* other) const;

    virtual void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                                   bool selected);
    /// Whether a click at `point` (view points) hits what is drawn; NO in the base.
    virtual bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                 MzDrawContext* context, bool selected);
    virtual void didRemoveFromContext(MzDrawContext* context,
                                      MzSpatialObjectDrawAdditions* object);

  protected:
    /// The object's geometry in the context's projection, or null when it lies outside the
    /// context's clipping rectangle or anything on the way is null.
    static std::shared_ptr<MzGeometry> visibleGeometry(const MzSpatialObjectDrawAdditions* object,
                                                       const MzDrawContext* context);
};

}  // namespace mezalith
