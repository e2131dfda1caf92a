// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/svg_scanner.hpp>
#include <mezalith/platform/images/svg_steps.hpp>

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>
#include <vector>

namespace mezalith::platform {
namespace {

using detail::SvgElement;
using detail::SvgScan;

constexpr double bytesAStep = 64;       ///< of a path's or any other attribute's text
constexpr double stepsOfDashes = 2000;  ///< one line may have millions of them
constexpr double stepsOfText = 50;

/// Elements within elements, and references to what refers on.
constexpr int deepest = 512;

constexpr std::array<std::string_view, 5> refusedElements{"image", "feImage", "filter", "include",
                                                          "foreignObject"};

bool isGradient(const SvgElement& element) {
    return element.name == "linearGradient" || element.name == "radialGradient";
}

/// Whether a style sets the property to anything but "none".
bool setsProperty(std::string_view style, std::string_view property) {
    constexpr std::string_view beforeName = " \t\r\n;{*/";
    for (std::size_t at = style.find(property); at != style.npos;
         at = style.find(property, at + 1)) {
        std::string_view after = style.substr(at + property.size());
        after.remove_prefix(std::min(after.find_first_not_of(" \t\r\n"), after.size()));
        const bool isName = at == 0 || beforeName.find(style[at - 1]) != beforeName.npos;
        if (!isName || !after.starts_with(':')) {
            continue;
        }
        after.remove_prefix(std::min(after.find_first_not_of(" \t\r\n:"), after.size()));
        if (!after.starts_with("none")) {
            return true;
        }
    }
    return false;
}

bool hasProperty(const SvgElement& element, std::string_view property) {
    const std::string_view value = element.value(property);
    return (!value.empty() && value != "none") || setsProperty(element.value("style"), property);
}

/// What follows each "#" of a text.
std::vector<std::string_view> namesIn(std::string_view text) {
    std::vector<std::string_view> names;
    for (std::size_t at = text.find('#'); at != text.npos; at = text.find('#', at + 1)) {
        const std::string_view rest = text.substr(at + 1);
        names.push_back(rest.substr(0, rest.find_first_of(")\"' \t\r\n;,")));
    }
    return names;
}

class Counter {
  public:
    explicit Counter(const SvgScan& scan)
        : scan_(scan), children_(scan.elements.size()), known_(scan.elements.size(), unknown) {
        for (int i = 0; i < std::ssize(scan.elements); ++i) {
            const SvgElement& element = at(i);
            named_.emplace(element.value("id"), i);
            if (element.parent >= 0) {
                children_[static_cast<std::size_t>(element.parent)].push_back(i);
            }
        }
        stepsOfStyle_ = setsProperty(scan.styleSheets, "stroke-dasharray") ? 1 + stepsOfDashes : 1;
    }

    SvgSteps count() && {
        SvgSteps steps;
        steps.refusal = styleComplaint();
        for (int i = 0; i < std::ssize(scan_.elements) && steps.refusal.empty(); ++i) {
            steps.refusal = complaintAbout(at(i));
        }
        if (!steps.refusal.empty()) {
            return steps;
        }
        steps.count = scan_.elements.empty() ? 0 : stepsOf(0, 0);
        if (isTooDeep_) {
            steps.refusal = "elements are nested too deeply";
        } else if (steps.count > mostSvgSteps) {
            steps.refusal = "it takes too many steps to draw";
        }
        return steps;
    }

  private:
    static constexpr double unknown = -1;
    static constexpr double underway = 0;

    const SvgScan& scan_;
    std::vector<std::vector<int>> children_;
    std::vector<double> known_;
    std::unordered_map<std::string_view, int> named_;
    double stepsOfStyle_ = 1;
    bool isTooDeep_ = false;

    const SvgElement& at(int index) const {
        return scan_.elements[static_cast<std::size_t>(index)];
    }

    static std::string complaintAbout(const SvgElement& element) {
        if (std::ranges::find(refusedElements, element.name) != refusedElements.end()) {
            return "not drawn: <" + element.name + ">";
        }
        if (hasProperty(element, "filter")) {
            return "filters are not drawn";
        }
        const bool hasEscape = element.value("style").find('\\') != std::string_view::npos;
        return hasEscape ? "escapes in styles are not read" : std::string();
    }

    /// A style sheet says nothing of how often what it refers to is drawn: only gradients may be.
    std::string styleComplaint() const {
        const std::string_view style = scan_.styleSheets;
        if (style.find('\\') != style.npos || style.find("@import") != style.npos) {
            return "escapes and imports in style sheets are not read";
        }
        if (setsProperty(style, "filter")) {
            return "filters are not drawn";
        }
        for (const std::string_view name : namesIn(style)) {
            const auto found = named_.find(name);
            if (found != named_.end() && !isGradient(at(found->second))) {
                return "style sheets may refer to gradients only";
            }
        }
        return {};
    }

    double ownSteps(const SvgElement& element) const {
        double steps = stepsOfStyle_;
        for (const auto& attribute : element.attributes) {
            steps += static_cast<double>(attribute.second.size()) / bytesAStep;
        }
        steps += hasProperty(element, "stroke-dasharray") ? stepsOfDashes : 0;
        steps += element.name == "text" ? stepsOfText : 0;
        return steps;
    }

    /// Of the element with all in it and all that it refers to. What is counted already, in a
    /// circle, is nothing: it is not drawn again.
    double stepsOf(int index, int depth) {
        double& known = known_[static_cast<std::size_t>(index)];
        if (known != unknown) {
            return known;
        }
        isTooDeep_ = isTooDeep_ || depth > deepest;
        known = underway;
        if (isTooDeep_) {
            return known;
        }
        double steps = ownSteps(at(index));
        for (const int child : children_[static_cast<std::size_t>(index)]) {
            steps += stepsOf(child, depth + 1);
        }
        steps += stepsReferredTo(at(index), depth);
        return known = steps;
    }

    double stepsReferredTo(const SvgElement& element, int depth) {
        double steps = 0;
        for (const auto& attribute : element.attributes) {
            for (const std::string_view name : namesIn(attribute.second)) {
                const auto found = named_.find(name);
                steps += found != named_.end() ? stepsOf(found->second, depth + 1) : 0;
            }
        }
        return steps;
    }
};

}  // namespace

SvgSteps svgSteps(std::string_view text) {
    const SvgScan scan = detail::scanSvg(text);
    if (!scan.refusal.empty()) {
        return {0, scan.refusal};
    }
    return Counter(scan).count();
}

}  // namespace mezalith::platform
