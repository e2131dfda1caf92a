// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/svg_identifiers.hpp>

#include <algorithm>
#include <array>
#include <utility>

namespace mezalith::platform {
namespace {

/// What a name stands behind. All of these end in one of `prefixEnds`.
constexpr std::array<std::string_view, 3> prefixes{" id=\"", "href=\"#", "url(#"};
constexpr std::string_view prefixEnds = "\"#";
constexpr std::size_t longestPrefix = 7;
constexpr std::string_view nameEnds = "\")";

/// Where the next name begins; npos when there is none.
std::size_t nextName(std::string_view text, std::size_t from) {
    for (;;) {
        const std::size_t at = text.find_first_of(prefixEnds, from);
        if (at == std::string_view::npos) {
            return at;
        }
        from = at + 1;
        const std::string_view before = text.substr(0, from);
        if (std::ranges::any_of(prefixes, [&](auto prefix) { return before.ends_with(prefix); })) {
            return from;
        }
    }
}

}  // namespace

std::string SvgIdentifiers::newName(std::string_view name) {
    const auto known = names_.find(name);
    if (known != names_.end()) {
        return known->second;
    }
    const std::size_t digits = name.find_last_not_of("0123456789") + 1;
    if (digits == name.size()) {
        return std::string(name);
    }
    const std::string letters(name.substr(0, digits));
    return names_[std::string(name)] = letters + std::to_string(counts_[letters]++);
}

std::string SvgIdentifiers::rewritten(std::string_view piece) {
    const std::string text = std::exchange(pending_, {}) + std::string(piece);
    std::string result;
    std::size_t done = 0;
    std::size_t begin = nextName(text, done);
    while (begin != std::string::npos) {
        const std::size_t end = text.find_first_of(nameEnds, begin);
        if (end == std::string::npos) {
            break;
        }
        result.append(text, done, begin - done);
        result += newName(std::string_view(text).substr(begin, end - begin));
        done = end;
        begin = nextName(text, done);
    }
    // The prefix of a name that goes on in the next piece stays with it.
    const std::size_t sure = std::min(begin, text.size());
    const std::size_t keep = std::max(done, sure - std::min(longestPrefix, sure));
    result.append(text, done, keep - done);
    pending_ = text.substr(keep);
    return result;
}

std::string SvgIdentifiers::rest() { return std::exchange(pending_, {}); }

}  // namespace mezalith::platform
