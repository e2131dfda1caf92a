// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/predicate.hpp>
#include <mezalith/style/style_element.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace mezalith {

/// Says at which scales, in which selection state and which features are drawn, and by which
/// symbolizers. The first symbolizer of the list is drawn last, on top.
///
/// Its "drawProperty" changes with that of a symbolizer it observes, and with the scale bounds, the
/// filters and the list of symbolizers. Texts are empty, but for the name, which is "Unnamed".
class MEZALITH_EXPORT MzRule : public MzStyleElement<MzSymbolizer> {
  public:
    using Symbolizers = Members;

    /// Applies to everything and draws nothing.
    MzRule();
    ~MzRule() override;

    /// The rule that `encodeWithCoder` wrote; null when a filter or symbolizer is none.
    static std::shared_ptr<MzRule> initWithCoder(const platform::KeyedUnarchiver& coder);

    /// The scale denominator must be greater than this; null: any.
    std::optional<double> minScaleDenominator() const { return minScaleDenominator_; }
    void setMinScaleDenominator(std::optional<double> denominator);

    /// The scale denominator must be less than this; null: any.
    std::optional<double> maxScaleDenominator() const { return maxScaleDenominator_; }
    void setMaxScaleDenominator(std::optional<double> denominator);

    /// 0 always applies, 1 to selected features, 2 to those not selected, any other never.
    std::int32_t selectionFilter() const { return selectionFilter_; }
    void setSelectionFilter(std::int32_t filter);

    /// 0 applies to every feature, 1 to those that meet `filter`, 2 when no rule later in the
    /// style's list applied (an else rule), any other never.
    std::int32_t filterType() const { return filterType_; }
    void setFilterType(std::int32_t type);

    /// The condition of filter type 1, asked of the feature; null: every feature meets it.
    const std::shared_ptr<const platform::Predicate>& filter() const { return filter_; }
    void setFilter(std::shared_ptr<const platform::Predicate> filter);

    /// In list order.
    const Symbolizers& symbolizers() const { return members(); }
    /// Replaces the list, without its nulls.
    /// Settled: observation stays with the symbolizers that were added or decoded.
    void setSymbolizers(Symbolizers symbolizers) { setMembers(std::move(symbolizers)); }

    /// Observes the symbolizer and appends it; YES, or NO for null.
    bool addSymbolizer(std::shared_ptr<MzSymbolizer> symbolizer) {
        return addMember(std::move(symbolizer));
    }
    /// Observes the symbolizer and inserts it at `index`; NO for null and beyond the list's end.
    /// Settled: a symbolizer that was not inserted stays observed.
    bool addSymbolizer(std::shared_ptr<MzSymbolizer> symbolizer, std::size_t index) {
        return addMember(std::move(symbolizer), index);
    }
    /// Stops observing the symbolizer, tells it that it left every view, and takes its first
    /// occurrence out of the list, if there is one. YES, or NO for null.
    bool removeSymbolizer(std::shared_ptr<MzSymbolizer> symbolizer) {
        return removeMember(std::move(symbolizer));
    }
    /// Takes the symbolizer at `from` out and inserts it at `to`; YES. Throws std::out_of_range,
    /// announcing nothing and leaving the list as it is, when an index is not in the list.
    /// Settled: announced as a replacement from the smaller index up to, not including, the larger.
    bool moveSymbolizerFromIndex(std::size_t from, std::size_t to) {
        return moveMemberFromIndex(from, to);
    }

    /// A new rule of the receiver's class with the same values and the very same symbolizers, which
    /// it does not observe.
    std::shared_ptr<MzRule> copy() const;

    /// YES for the same object; NO for null or another class; else whether all values are equal,
    /// filters by their format, and the symbolizers are the very same objects.
    bool isEqualToRule(const MzRule* other) const;
    /// YES for the same object; NO for null or another class; else whether there are as many
    /// symbolizers of the same types in the same order, whatever their properties.
    bool isStructurallyEqualToRule(const MzRule* other) const;

    /// What "drawProperty" depends on; nothing for any other key.
    std::set<std::string> keyPathsForValuesAffectingValueForKey(
        const std::string& key) const override;

    std::string_view archiveClassName() const override { return "MzRule"; }
    /// Symbolizers that cannot be archived are left out.
    void encodeWithCoder(platform::KeyedArchiver& coder) const override;

  protected:
    /// A fresh rule of the receiver's own class, for `copy`.
    virtual std::shared_ptr<MzRule> newInstance() const;
    void willRemoveMember(MzSymbolizer& symbolizer) override;

  private:
    bool decodeWithCoder(const platform::KeyedUnarchiver& coder);
    bool hasEqualValues(const MzRule& other) const;

    std::optional<double> minScaleDenominator_;
    std::optional<double> maxScaleDenominator_;
    std::int32_t selectionFilter_ = 0;
    std::int32_t filterType_ = 0;
    std::shared_ptr<const platform::Predicate> filter_;
};

}  // namespace mezalith
