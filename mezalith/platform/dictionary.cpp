// SPDX-License-Identifier: MIT
#include <mezalith/platform/dictionary.hpp>

#include <algorithm>

namespace mezalith::platform {

Dictionary::Dictionary(std::initializer_list<std::pair<std::string, Value>> entries) {
    for (const auto& [name, value] : entries) (*this)[name] = value;
}

Dictionary::Dictionary(std::shared_ptr<const Names> names, std::vector<Value> values)
    : names_(std::move(names)), values_(std::move(values)) {
    // A value without a name, or a name without a value, has no meaning.
    const std::size_t count = std::min(this->names().size(), values_.size());
    values_.resize(count);
    if (count == this->names().size()) return;
    names_ = std::make_shared<const Names>(names_->begin(),
                                           names_->begin() + static_cast<std::ptrdiff_t>(count));
}

const Dictionary::Names& Dictionary::names() const {
    static const Names none;
    return names_ != nullptr ? *names_ : none;
}

std::size_t Dictionary::placeOf(std::string_view name) const {
    const Names& all = names();
    return static_cast<std::size_t>(std::ranges::lower_bound(all, name) - all.begin());
}

const Value* Dictionary::find(std::string_view name) const {
    const std::size_t place = placeOf(name);
    return place < size() && names()[place] == name ? &values_[place] : nullptr;
}

Value& Dictionary::operator[](std::string_view name) {
    const std::size_t place = placeOf(name);
    if (place == size() || names()[place] != name) {
        auto wider = std::make_shared<Names>(names());
        const auto offset = static_cast<std::ptrdiff_t>(place);
        wider->emplace(wider->begin() + offset, name);
        names_ = std::move(wider);
        values_.emplace(values_.begin() + offset);
    }
    return values_[place];
}

}  // namespace mezalith::platform
