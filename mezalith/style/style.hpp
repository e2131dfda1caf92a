// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/style/draw_context.hpp>
#include <mezalith/style/rule.hpp>
#include <mezalith/style/spatial_object.hpp>
#include <mezalith/style/style_element.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace mezalith {

/// Which symbolizer of which rule was hit, with their places in the lists.
struct MEZALITH_EXPORT MzStyleHit {
    std::shared_ptr<MzRule> rule;
    std::size_t ruleIndex = 0;
    std::shared_ptr<MzSymbolizer> symbolizer;
    std::size_t symbolizerIndex = 0;
};

/// How a feature is drawn: an ordered list of rules, of which those that apply draw with their
/// symbolizers.
///
/// Drawing and hit testing walk the rules from the last to the first. A rule applies when the
/// scale, the selection state and its filter admit it; it then uses its symbolizers from the last
/// to the first, so that what is first in a list is drawn last, on top. An else rule is passed over
/// when a rule after it in the list applied, and counts for the rules before it.
///
/// Its "drawProperty" changes with that of a rule it observes and with nothing else; changes of the
/// list are announced for "rules" alone. Texts are empty at first.
class MEZALITH_EXPORT MzStyle : public MzStyleElement<MzRule> {
  public:
    using Rules = Members;

    /// Has no rules and draws nothing.
    MzStyle();
    ~MzStyle() override;

    /// A style of one rule with the default symbolizer of the geometry's type: point for points and
    /// multi-points, line for line strings, polygon for polygons and multi-polygons; none for
    /// others and for null.
    static std::shared_ptr<MzStyle> initForGeometry(const MzGeometry* geometry);
    static std::shared_ptr<MzStyle> styleForGeometry(const MzGeometry* geometry) {
        return initForGeometry(geometry);
    }

    /// The style that `encodeWithCoder` wrote; null when a member of its list is no rule.
    static std::shared_ptr<MzStyle> initWithCoder(const platform::KeyedUnarchiver& coder);

    /// In list order.
    const Rules& rules() const { return members(); }
    /// Replaces the list, without its nulls.
    /// Settled: observation stays with the rules that were added or decoded.
    void setRules(Rules rules) { setMembers(std::move(rules)); }

    /// Observes the rule and appends it; YES, or NO for null.
    bool addRule(std::shared_ptr<MzRule> rule) { return addMember(std::move(rule)); }
    /// Observes the rule and inserts it at `index`; NO for null and beyond the list's end.
    /// Settled: a rule that was not inserted stays observed.
    bool addRule(std::shared_ptr<MzRule> rule, std::size_t index) {
        return addMember(std::move(rule), index);
    }
    /// Stops observing the rule and takes its first occurrence out of the list, if there is one.
    /// YES, or NO for null.
    bool removeRule(std::shared_ptr<MzRule> rule) { return removeMember(std::move(rule)); }
    /// Takes the rule at `from` out and inserts it at `to`; YES. Throws std::out_of_range,
    /// announcing nothing and leaving the list as it is, when an index is not in the list.
    /// Settled: announced as a replacement from the smaller index up to, not including, the larger.
    bool moveRuleFromIndex(std::size_t from, std::size_t to) {
        return moveMemberFromIndex(from, to);
    }

    /// Draws with the symbolizers of every rule that applies; nothing for a null object or context.
    virtual void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                                   bool selected);
    /// Whether a symbolizer of a rule that applies is hit at `point` (view points); the first hit
    /// ends the search. NO for a null object or context.
    virtual bool isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                 MzDrawContext* context, bool selected);
    /// The symbolizer that a hit test ends with: the first that answers YES in the order of
    /// drawing; none when none does.
    std::optional<MzStyleHit> hitOfSpatialObject(MzSpatialObjectDrawAdditions* object,
                                                 MzPoint point, MzDrawContext* context,
                                                 bool selected) const;
    /// The symbolizer that is hit as it is drawn, within `tolerance` (view points) of `point`: of
    /// those that paint there the one drawn last, on top; none when none does. What the settled
    /// hit test answers is `hitOfSpatialObject`.
    std::optional<MzStyleHit> paintedHitOfSpatialObject(MzSpatialObjectDrawAdditions* object,
                                                        MzPoint point, double tolerance,
                                                        MzDrawContext* context,
                                                        bool selected) const;
    /// How far (view points) anything painted can be from the box around a feature, whichever rules
    /// apply.
    double paintReach(double scaleFactor) const;
    /// Tells every symbolizer of every rule, in list order, whether it applies or not. Null is
    /// passed on as it is.
    virtual void didRemoveFromContext(MzDrawContext* context, MzSpatialObjectDrawAdditions* object);

    /// What events the host shall send; 0.
    virtual std::uint32_t spatialObjectEventOptions() const;
    // What a pointing device did at a point (view points) of a feature. All do nothing.
    virtual void mouseDown(const platform::Event& event, MzPoint point,
                           MzSpatialObjectDrawAdditions* object, MzDrawContext* context);
    virtual void mouseUp(const platform::Event& event, MzPoint point,
                         MzSpatialObjectDrawAdditions* object, MzDrawContext* context);
    virtual void mouseDragged(const platform::Event& event, MzPoint point,
                              MzSpatialObjectDrawAdditions* object, MzDrawContext* context);
    virtual void mouseEntered(const platform::Event& event, MzPoint point,
                              MzSpatialObjectDrawAdditions* object, MzDrawContext* context);
    virtual void mouseExited(const platform::Event& event, MzPoint point,
                             MzSpatialObjectDrawAdditions* object, MzDrawContext* context);
    virtual void mouseMoved(const platform::Event& event, MzPoint point,
                            MzSpatialObjectDrawAdditions* object, MzDrawContext* context);

    /// A new style of the receiver's class with the same texts and the very same rules, which it
    /// does not observe.
    std::shared_ptr<MzStyle> copy() const;

    /// YES for the same object; NO for null or another class; else whether the texts are equal and
    /// the rules are the very same objects.
    bool isEqualToStyle(const MzStyle* other) const;
    /// YES for the same object; NO for null or another class; else whether there are as many rules
    /// and each is structurally equal to the other's at its place.
    bool isStructurallyEqualToStyle(const MzStyle* other) const;

    std::string_view archiveClassName() const override { return "MzStyle"; }
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

  protected:
    /// A fresh style of the receiver's own class, for `copy`.
    virtual std::shared_ptr<MzStyle> newInstance() const;
};

}  // namespace mezalith
