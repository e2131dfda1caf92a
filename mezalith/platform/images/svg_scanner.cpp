// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/svg_scanner.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace mezalith::platform::detail {
namespace {

constexpr std::string_view spaces = " \t\r\n";
constexpr std::string_view afterName = " \t\r\n=/>\"'";
constexpr auto nowhere = std::string_view::npos;

std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return result;
}

/// What the code behind "&#" stands for; what is not ASCII matters to no name here.
char referredCharacter(std::string_view code) {
    const bool isHexadecimal = code.starts_with('x');
    code.remove_prefix(isHexadecimal ? 1 : 0);
    unsigned value = 0;
    std::from_chars(code.data(), code.data() + code.size(), value, isHexadecimal ? 16 : 10);
    return value > 0 && value < 128 ? static_cast<char>(value) : '?';
}

std::string decoded(std::string_view value) {
    std::string result;
    while (true) {
        const std::size_t start = value.find("&#");
        const std::size_t end = value.find(';', start == nowhere ? value.size() : start);
        result += value.substr(0, end == nowhere ? nowhere : start);
        if (end == nowhere) {
            return result;
        }
        result += referredCharacter(value.substr(start + 2, end - start - 2));
        value.remove_prefix(end + 1);
    }
}

std::string_view withoutPrefix(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    return colon == nowhere ? name : name.substr(colon + 1);
}

class Scanner {
  public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    SvgScan scan() && {
        while (!rest_.empty() && scan_.refusal.empty()) {
            if (rest_.front() == '<') {
                takeMarkup();
            } else {
                takeText(upTo("<"));
            }
        }
        return std::move(scan_);
    }

  private:
    std::string_view rest_;
    SvgScan scan_;
    std::vector<int> open_;

    /// What stands before `end`, which stays; all that is left when it does not come.
    std::string_view upTo(std::string_view end) {
        const std::string_view found = rest_.substr(0, rest_.find(end));
        rest_.remove_prefix(found.size());
        return found;
    }

    /// The same, and takes `end`.
    std::string_view through(std::string_view end) {
        const std::string_view found = upTo(end);
        rest_.remove_prefix(std::min(end.size(), rest_.size()));
        return found;
    }

    void skipSpaces() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(spaces), rest_.size()));
    }

    void takeText(std::string_view text) {
        if (!open_.empty() &&
            scan_.elements[static_cast<std::size_t>(open_.back())].name == "style") {
            scan_.styleSheets += decoded(text);
        }
    }

    void takeMarkup() {
        if (rest_.starts_with("<!--")) {
            through("-->");
        } else if (rest_.starts_with("<![CDATA[")) {
            rest_.remove_prefix(9);
            takeText(through("]]>"));
        } else if (rest_.starts_with("<?")) {
            takeInstruction(through("?>"));
        } else if (rest_.starts_with("<!")) {
            takeDeclaration(through(">"));
        } else if (rest_.starts_with("</")) {
            through(">");
            if (!open_.empty()) {
                open_.pop_back();
            }
        } else {
            rest_.remove_prefix(1);
            takeElement();
        }
    }

    void takeDeclaration(std::string_view declaration) {
        if (declaration.find('[') != nowhere || declaration.starts_with("<!ENTITY")) {
            scan_.refusal = "entities are not read";
        }
    }

    void takeInstruction(std::string_view instruction) {
        constexpr std::array<std::string_view, 4> known{"utf-8", "utf8", "us-ascii", "iso-8859-1"};
        if (instruction.starts_with("<?xml-stylesheet")) {
            scan_.refusal = "style sheets outside the picture are not read";
        }
        const std::size_t encoding = instruction.find("encoding");
        const std::size_t open = instruction.find_first_of("\"'", encoding);
        if (encoding == nowhere || open == nowhere) {
            return;
        }
        const std::string_view named = instruction.substr(open + 1);
        const std::string name = lowered(named.substr(0, named.find_first_of("\"'")));
        if (std::ranges::find(known, name) == known.end()) {
            scan_.refusal = "the encoding is not read: " + name;
        }
    }

    std::string_view takeName() {
        const std::string_view name = rest_.substr(0, rest_.find_first_of(afterName));
        rest_.remove_prefix(name.size());
        return withoutPrefix(name);
    }

    void takeElement() {
        SvgElement element;
        element.name = takeName();
        element.parent = open_.empty() ? -1 : open_.back();
        skipSpaces();
        while (!rest_.empty() && rest_.front() != '>' && rest_.front() != '/') {
            takeAttribute(element);
            skipSpaces();
        }
        const bool isEmpty = rest_.starts_with('/');
        through(">");
        if (!isEmpty) {
            open_.push_back(static_cast<int>(scan_.elements.size()));
        }
        scan_.elements.push_back(std::move(element));
    }

    void takeAttribute(SvgElement& element) {
        const std::string_view name = takeName();
        skipSpaces();
        if (!rest_.starts_with('=')) {
            // Not well-formed: whoever draws it stops here, too.
            rest_ = {};
            return;
        }
        rest_.remove_prefix(1);
        skipSpaces();
        if (!rest_.starts_with('"') && !rest_.starts_with('\'')) {
            rest_ = {};
            return;
        }
        const std::string_view quote = rest_.substr(0, 1);
        rest_.remove_prefix(1);
        element.attributes.emplace_back(name, decoded(through(quote)));
    }
};

}  // namespace

std::string_view SvgElement::value(std::string_view attribute) const {
    const auto found =
        std::ranges::find(attributes, attribute, [](const auto& one) { return one.first; });
    return found != attributes.end() ? std::string_view(found->second) : std::string_view();
}

SvgScan scanSvg(std::string_view text) { return Scanner(text).scan(); }

}  // namespace mezalith::platform::detail
