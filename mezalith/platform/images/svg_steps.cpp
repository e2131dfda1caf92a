// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/svg_scanner.hpp>
#include <mezalith/platform/images/svg_steps.hpp>

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace mezalith::platform {
namespace {

using detail::SvgElement;
using detail::SvgScan;

constexpr double bytesAStep = 64;  ///< of a path's or any other attribute's text
constexpr double bytesOfLongPath = 4096;
constexpr double stepsOfDashes = 2000;  ///< one line may have millions of them
constexpr double stepsOfMask = 10;
constexpr double bytesAVertex = 4;

/// A path of 70 kB, or a hundred of 7.
constexpr double mostCrossings = 5e9;

/// Readers compare each attribute of an element with each.
constexpr std::size_t mostAttributes = 256;
/// Bytes of style sheets times elements: each rule is tried on each.
constexpr double mostStyling = 2e8;

/// Elements within elements, and references to what refers on.
constexpr int deepest = 512;

/// Texts look different with the fonts of each machine.
constexpr std::array<std::string_view, 6> refusedElements{"image",   "feImage", "filter",
                                                          "include", "text",    "foreignObject"};

bool isGradient(const SvgElement& element) {
    return element.name == "linearGradient" || element.name == "radialGradient";
}

/// Whether a style sets the property to anything but "none".
bool setsProperty(std::string_view style, std::string_view property) {
    constexpr std::string_view beforeName = " \t\r\n;{*/";
    for (std::size_t at = style.find(property); at != std::string_view::npos;
         at = style.find(property, at + 1)) {
        std::string_view after = style.substr(at + property.size());
        after.remove_prefix(std::min(after.find_first_not_of(" \t\r\n"), after.size()));
        const bool isName = at == 0 || beforeName.find(style[at - 1]) != std::string_view::npos;
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
    for (std::size_t at = text.find('#'); at != std::string_view::npos;
         at = text.find('#', at + 1)) {
        const std::string_view rest = text.substr(at + 1);
        names.push_back(rest.substr(0, rest.find_first_of(")\"' \t\r\n;,")));
    }
    return names;
}

/// Whether an attribute has marks drawn at every vertex of paths.
bool drawsMarkers(const std::pair<std::string, std::string>& attribute) {
    return attribute.first.starts_with("marker") ||
           (attribute.first == "style" && attribute.second.find("marker") != std::string::npos);
}

/// The lines of one path may cross each other, which takes its pixels longer.
double stepsOfValue(double bytes) { return bytes / bytesAStep * (1 + bytes / bytesOfLongPath); }

double pathBytes(const SvgElement& element) {
    return static_cast<double>(element.value("d").size() + element.value("points").size());
}

struct Cost {
    double steps = 0;
    double crossings = 0;  ///< squares of bytes of paths: whatever the size, each line meets each
    double depth = 0;

    void add(const Cost& inner) {
        steps += inner.steps;
        crossings += inner.crossings;
        depth = std::max(depth, inner.depth + 1);
    }
};

class Counter {
  public:
    explicit Counter(const SvgScan& scan)
        : scan_(scan), children_(scan.elements.size()), known_(scan.elements.size()) {
        for (int i = 0; i < std::ssize(scan.elements); ++i) {
            const SvgElement& element = at(i);
            named_.emplace(element.value("id"), i);
            if (element.parent >= 0) {
                children_[static_cast<std::size_t>(element.parent)].push_back(i);
            }
            vertices_ += pathBytes(element) / bytesAVertex;
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
        const Cost cost = scan_.elements.empty() ? Cost() : costOf(0, 0);
        steps.count = cost.steps;
        steps.depth = cost.depth;
        if (isTooDeep_) {
            steps.refusal = "elements are nested too deeply";
        } else if (cost.crossings > mostCrossings) {
            steps.refusal = "its paths are too long";
        } else if (steps.count > mostSvgSteps) {
            steps.refusal = "it takes too many steps to draw";
        }
        return steps;
    }

  private:
    const SvgScan& scan_;
    std::vector<std::vector<int>> children_;
    std::vector<std::optional<Cost>> known_;
    std::unordered_map<std::string_view, int> named_;
    double stepsOfStyle_ = 1;
    double vertices_ = 0;  ///< about how many all paths have
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
        if (element.attributes.size() > mostAttributes) {
            return "too many attributes: <" + element.name + ">";
        }
        const bool hasEscape = element.value("style").find('\\') != std::string_view::npos;
        return hasEscape ? "escapes in styles are not read" : std::string();
    }

    /// A style sheet says nothing of how often what it refers to is drawn: only gradients may be.
    std::string styleComplaint() const {
        const std::string_view style = scan_.styleSheets;
        if (style.find('\\') != std::string_view::npos ||
            style.find("@import") != std::string_view::npos) {
            return "escapes and imports in style sheets are not read";
        }
        if (setsProperty(style, "filter")) {
            return "filters are not drawn";
        }
        if (double(style.size()) * double(scan_.elements.size()) > mostStyling) {
            return "the style sheets are too long";
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
            steps += stepsOfValue(static_cast<double>(attribute.second.size()));
        }
        steps += hasProperty(element, "stroke-dasharray") ? stepsOfDashes : 0;
        steps += hasProperty(element, "mask") ? stepsOfMask : 0;
        return steps;
    }

    /// Of the element with all in it and all that it refers to. What is counted already, in a
    /// circle, is nothing: it is not drawn again.
    Cost costOf(int index, int depth) {
        std::optional<Cost>& known = known_[static_cast<std::size_t>(index)];
        isTooDeep_ = isTooDeep_ || depth > deepest;
        if (known || isTooDeep_) {
            return known.value_or(Cost());
        }
        known = Cost();
        const double bytes = pathBytes(at(index));
        Cost cost{ownSteps(at(index)), bytes * bytes, 1};
        for (const int child : children_[static_cast<std::size_t>(index)]) {
            cost.add(costOf(child, depth + 1));
        }
        for (const auto& attribute : at(index).attributes) {
            addReferences(cost, attribute, depth);
        }
        known = cost;
        return cost;
    }

    void addReferences(Cost& cost, const std::pair<std::string, std::string>& attribute,
                       int depth) {
        const double times = drawsMarkers(attribute) ? std::max(1.0, vertices_) : 1;
        for (const std::string_view name : namesIn(attribute.second)) {
            const auto found = named_.find(name);
            if (found != named_.end()) {
                Cost inner = costOf(found->second, depth + 1);
                inner.steps *= times;
                inner.crossings *= times;
                cost.add(inner);
            }
        }
    }
};

}  // namespace

SvgSteps svgSteps(std::string_view text) {
    const SvgScan scan = detail::scanSvg(text);
    if (!scan.refusal.empty()) {
        return {.refusal = scan.refusal};
    }
    return Counter(scan).count();
}

}  // namespace mezalith::platform
