// SPDX-License-Identifier: MIT
#include <mezalith/platform/nearest_name.hpp>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

namespace mezalith::platform {
namespace {

constexpr std::size_t kLettersPerError = 4;
constexpr std::size_t kLongestShown = 40;

std::size_t difference(std::size_t a, std::size_t b) { return a > b ? a - b : b - a; }

/// Row by row; a row tells the distances of the first letters of `a` to those of `b`.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(b.size() + 1);
    std::iota(last.begin(), last.end(), 0);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> row(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({row[j - 1] + 1, last[j] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        beforeLast = std::move(last);
        last = std::move(row);
    }
    return last.back();
}

std::string quoted(std::string_view name) {
    std::string text = "\"";
    for (const char c : name.substr(0, kLongestShown)) text += c >= ' ' && c <= '~' ? c : '?';
    return text + (name.size() > kLongestShown ? "...\"" : "\"");
}

}  // namespace

std::string_view nearestName(std::string_view name, std::span<const std::string_view> names) {
    std::string_view nearest;
    std::size_t least = name.size() + 1;
    for (const std::string_view candidate : names) {
        const std::size_t most = candidate.size() / kLettersPerError;
        // Long names that cannot be meant are not compared letter by letter.
        if (difference(candidate.size(), name.size()) > most) continue;
        const std::size_t errors = distance(name, candidate);
        if (errors <= most && errors < least) {
            nearest = candidate;
            least = errors;
        }
    }
    return nearest;
}

std::string suggestion(std::string_view name, std::span<const std::string_view> names) {
    const std::string_view nearest = nearestName(name, names);
    const std::string text = " " + quoted(name);
    return nearest.empty() ? text : text + ", did you mean " + quoted(nearest) + "?";
}

}  // namespace mezalith::platform
