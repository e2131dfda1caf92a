// SPDX-License-Identifier: MIT
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style.hpp>

#include <algorithm>
#include <cstddef>
#include <typeinfo>
#include <utility>
#include <vector>

namespace mezalith {

namespace {

constexpr std::string_view kRulesKey = "rules";
constexpr std::int64_t kRuleContext = 6848;

std::shared_ptr<MzSymbolizer> defaultSymbolizer(std::uint32_t geometryType) {
    switch (geometryType) {
        case 1:
        case 4:
            return std::make_shared<MzPointSymbolizer>();
        case 2:
            return std::make_shared<MzLineSymbolizer>();
        case 3:
        case 6:
            return std::make_shared<MzPolygonSymbolizer>();
        default:
            return nullptr;
    }
}

/// One pass over a style's rules for one feature.
class Pass {
  public:
    Pass(const MzSpatialObjectDrawAdditions* object, const MzDrawContext* context, bool selected)
        : object_(object), context_(context), selected_(selected) {}

    /// Every symbolizer of the rules that apply, in the order of drawing.
    std::vector<MzStyleHit> all(const MzStyle& style) {
        std::vector<MzStyleHit> hits;
        walk(style, [&](const auto& rule, std::size_t i, const auto& symbolizer, std::size_t j) {
            hits.push_back({rule, i, symbolizer, j});
            return false;
        });
        return hits;
    }

    /// Calls `use` with each symbolizer of the rules that apply, last rule and last symbolizer
    /// first, until one answers YES: that one.
    template <typename Use>
    std::optional<MzStyleHit> firstOf(const MzStyle& style, Use use) {
        std::optional<MzStyleHit> first;
        walk(style, [&](const auto& rule, std::size_t i, const auto& symbolizer, std::size_t j) {
            if (!use(symbolizer)) return false;
            first = {rule, i, symbolizer, j};
            return true;
        });
        return first;
    }

  private:
    /// Calls `use` with rules, symbolizers and their places, until it answers YES.
    template <typename Use>
    void walk(const MzStyle& style, Use use) {
        if (object_ == nullptr || context_ == nullptr) return;
        // Filters and symbolizers are the host's and may edit the style.
        const auto rules = style.memberSnapshot();
        for (std::size_t i = rules->size(); i-- > 0;) {
            const std::shared_ptr<MzRule>& rule = (*rules)[i];
            if (!admits(*rule)) continue;
            applied_ = true;
            const auto symbolizers = rule->memberSnapshot();
            for (std::size_t j = symbolizers->size(); j-- > 0;) {
                const std::shared_ptr<MzSymbolizer>& symbolizer = (*symbolizers)[j];
                if (use(rule, i, symbolizer, j)) return;
            }
        }
    }

    bool admits(const MzRule& rule) const {
        return admitsScale(rule) && admitsSelection(rule.selectionFilter()) && admitsObject(rule);
    }

    bool admitsScale(const MzRule& rule) const {
        const std::optional<double> min = rule.minScaleDenominator();
        const std::optional<double> max = rule.maxScaleDenominator();
        return (!min || context_->scaleDenominator() > *min) &&
               (!max || *max > context_->scaleDenominator());
    }

    bool admitsSelection(std::int32_t filter) const {
        return filter == 0 || filter == (selected_ ? 1 : 2);
    }

    bool admitsObject(const MzRule& rule) const {
        switch (rule.filterType()) {
            case 0:
                return true;
            case 1:
                return meetsFilter(rule);
            case 2:
                return !applied_;
            default:
                return false;
        }
    }

    bool meetsFilter(const MzRule& rule) const {
        // A copy, as the filter may take itself off the rule.
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const std::shared_ptr<const platform::Predicate> filter = rule.filter();
        return filter == nullptr || filter->evaluateWithObject(object_);
    }

    const MzSpatialObjectDrawAdditions* object_;
    const MzDrawContext* context_;
    bool selected_;
    bool applied_ = false;
};

}  // namespace

MzStyle::MzStyle() : MzStyleElement("", kRulesKey, kRuleContext) {}

MzStyle::~MzStyle() = default;

std::shared_ptr<MzStyle> MzStyle::initForGeometry(const MzGeometry* geometry) {
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(defaultSymbolizer(geometry != nullptr ? geometry->geometryType() : 0));
    auto style = std::make_shared<MzStyle>();
    style->addRule(rule);
    return style;
}

void MzStyle::drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                                bool selected) {
    Pass(object, context, selected).firstOf(*this, [&](const auto& symbolizer) {
        symbolizer->drawSpatialObject(object, context, selected);
        return false;
    });
}

bool MzStyle::isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                              MzDrawContext* context, bool selected) {
    return hitOfSpatialObject(object, point, context, selected).has_value();
}

std::optional<MzStyleHit> MzStyle::hitOfSpatialObject(MzSpatialObjectDrawAdditions* object,
                                                      MzPoint point, MzDrawContext* context,
                                                      bool selected) const {
    return Pass(object, context, selected).firstOf(*this, [&](const auto& symbolizer) {
        return symbolizer->isSpatialObject(object, point, context, selected);
    });
}

std::optional<MzStyleHit> MzStyle::paintedHitOfSpatialObject(MzSpatialObjectDrawAdditions* object,
                                                             MzPoint point, double tolerance,
                                                             MzDrawContext* context,
                                                             bool selected) const {
    const std::vector<MzStyleHit> drawn = Pass(object, context, selected).all(*this);
    const auto top = std::ranges::find_if(drawn.rbegin(), drawn.rend(), [&](const auto& hit) {
        return hit.symbolizer->paintsAtPoint(object, point, tolerance, context, selected);
    });
    return top != drawn.rend() ? std::optional(*top) : std::nullopt;
}

double MzStyle::paintReach(double scaleFactor) const {
    double reach = 0;
    for (const auto& rule : rules()) {
        for (const auto& symbolizer : rule->symbolizers()) {
            reach = std::max(reach, symbolizer->paintReach(scaleFactor));
        }
    }
    return reach;
}

void MzStyle::didRemoveFromContext(MzDrawContext* context, MzSpatialObjectDrawAdditions* object) {
    const auto rules = memberSnapshot();
    for (const auto& rule : *rules) {
        const auto symbolizers = rule->memberSnapshot();
        for (const auto& symbolizer : *symbolizers) {
            symbolizer->didRemoveFromContext(context, object);
        }
    }
}

std::uint32_t MzStyle::spatialObjectEventOptions() const { return 0; }

void MzStyle::mouseDown(const platform::Event&, MzPoint, MzSpatialObjectDrawAdditions*,
                        MzDrawContext*) {}
void MzStyle::mouseUp(const platform::Event&, MzPoint, MzSpatialObjectDrawAdditions*,
                      MzDrawContext*) {}
void MzStyle::mouseDragged(const platform::Event&, MzPoint, MzSpatialObjectDrawAdditions*,
                           MzDrawContext*) {}
void MzStyle::mouseEntered(const platform::Event&, MzPoint, MzSpatialObjectDrawAdditions*,
                           MzDrawContext*) {}
void MzStyle::mouseExited(const platform::Event&, MzPoint, MzSpatialObjectDrawAdditions*,
                          MzDrawContext*) {}
void MzStyle::mouseMoved(const platform::Event&, MzPoint, MzSpatialObjectDrawAdditions*,
                         MzDrawContext*) {}

std::shared_ptr<MzStyle> MzStyle::newInstance() const { return std::make_shared<MzStyle>(); }

std::shared_ptr<MzStyle> MzStyle::copy() const {
    std::shared_ptr<MzStyle> copy = newInstance();
    copyElementTo(*copy);
    return copy;
}

bool MzStyle::isEqualToStyle(const MzStyle* other) const {
    if (other == this) return true;
    return other != nullptr && typeid(*other) == typeid(*this) && isEqualToElement(*other);
}

bool MzStyle::isStructurallyEqualToStyle(const MzStyle* other) const {
    if (other == this) return true;
    if (other == nullptr || typeid(*other) != typeid(*this)) return false;
    return std::ranges::equal(rules(), other->rules(), [](const auto& mine, const auto& theirs) {
        return mine->isStructurallyEqualToRule(theirs.get());
    });
}

void MzStyle::encodeWithCoder(platform::KeyedArchiver& coder) const {
    encodeTexts(coder);
    encodeMembers(coder);
}

std::shared_ptr<MzStyle> MzStyle::initWithCoder(const platform::KeyedUnarchiver& coder) {
    auto style = std::make_shared<MzStyle>();
    style->decodeTexts(coder);
    return style->decodeMembers(coder) ? style : nullptr;
}

}  // namespace mezalith
