// SPDX-License-Identifier: MIT
#include <mezalith/style/rule.hpp>

#include <algorithm>
#include <typeinfo>

namespace mezalith {

namespace {

constexpr std::string_view kSymbolizersKey = "symbolizers";
constexpr std::int64_t kSymbolizerContext = 3548;

std::optional<std::string> formatOf(const std::shared_ptr<const platform::Predicate>& predicate) {
    if (predicate == nullptr) return std::nullopt;
    return predicate->predicateFormat();
}

}  // namespace

MzRule::MzRule() : MzStyleElement("Unnamed", kSymbolizersKey, kSymbolizerContext) {}

MzRule::~MzRule() = default;

void MzRule::setMinScaleDenominator(std::optional<double> denominator) {
    setProperty("minScaleDenominator", minScaleDenominator_, denominator);
}

void MzRule::setMaxScaleDenominator(std::optional<double> denominator) {
    setProperty("maxScaleDenominator", maxScaleDenominator_, denominator);
}

void MzRule::setSelectionFilter(std::int32_t filter) {
    setProperty("selectionFilter", selectionFilter_, filter);
}

void MzRule::setFilterType(std::int32_t type) { setProperty("filterType", filterType_, type); }

void MzRule::setFilter(std::shared_ptr<const platform::Predicate> filter) {
    setProperty("filter", filter_, std::move(filter));
}

void MzRule::willRemoveMember(MzSymbolizer& symbolizer) {
    symbolizer.didRemoveFromContext(nullptr, nullptr);
}

std::shared_ptr<MzRule> MzRule::newInstance() const { return std::make_shared<MzRule>(); }

std::shared_ptr<MzRule> MzRule::copy() const {
    std::shared_ptr<MzRule> copy = newInstance();
    copyElementTo(*copy);
    copy->minScaleDenominator_ = minScaleDenominator_;
    copy->maxScaleDenominator_ = maxScaleDenominator_;
    copy->selectionFilter_ = selectionFilter_;
    copy->filterType_ = filterType_;
    copy->filter_ = filter_;
    return copy;
}

bool MzRule::isEqualToRule(const MzRule* other) const {
    if (other == this) return true;
    return other != nullptr && typeid(*other) == typeid(*this) && isEqualToElement(*other) &&
           hasEqualValues(*other);
}

bool MzRule::hasEqualValues(const MzRule& other) const {
    return minScaleDenominator_ == other.minScaleDenominator_ &&
           maxScaleDenominator_ == other.maxScaleDenominator_ &&
           selectionFilter_ == other.selectionFilter_ && filterType_ == other.filterType_ &&
           formatOf(filter_) == formatOf(other.filter_);
}

bool MzRule::isStructurallyEqualToRule(const MzRule* other) const {
    if (other == this) return true;
    if (other == nullptr || typeid(*other) != typeid(*this)) return false;
    const auto typeOf = [](const auto& symbolizer) { return symbolizer->symbolizerType(); };
    return std::ranges::equal(symbolizers(), other->symbolizers(), {}, typeOf, typeOf);
}

std::set<std::string> MzRule::keyPathsForValuesAffectingValueForKey(const std::string& key) const {
    if (key != MzDrawPropertyKey) return {};
    return {std::string(kSymbolizersKey),
            "minScaleDenominator",
            "maxScaleDenominator",
            "selectionFilter",
            "filterType",
            "filter"};
}

void MzRule::encodeWithCoder(platform::KeyedArchiver& coder) const {
    encodeTexts(coder);
    coder.encodeNumber(minScaleDenominator_, "minScaleDenominator");
    coder.encodeNumber(maxScaleDenominator_, "maxScaleDenominator");
    coder.encodeInt(selectionFilter_, "selectionFilter");
    coder.encodeInt(filterType_, "filterType");
    coder.encodeObject(filter_.get(), "filter");
    encodeMembers(coder);
}

std::shared_ptr<MzRule> MzRule::initWithCoder(const platform::KeyedUnarchiver& coder) {
    auto rule = std::make_shared<MzRule>();
    return rule->decodeWithCoder(coder) ? rule : nullptr;
}

bool MzRule::decodeWithCoder(const platform::KeyedUnarchiver& coder) {
    decodeTexts(coder);
    setMinScaleDenominator(coder.decodeNumber("minScaleDenominator"));
    setMaxScaleDenominator(coder.decodeNumber("maxScaleDenominator"));
    setSelectionFilter(coder.decodeInt("selectionFilter"));
    setFilterType(coder.decodeInt("filterType"));
    const auto filter = platform::decodedObject<platform::Predicate>(coder, "Predicate", "filter");
    if (!filter) return false;
    setFilter(*filter);
    return decodeMembers(coder);
}

}  // namespace mezalith
