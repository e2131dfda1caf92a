// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/interface/text_template.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <variant>

namespace mezalith::platform {
namespace {

constexpr std::string_view kGrouped = "grouped";
/// U+202F, narrow and without a line break.
constexpr std::string_view kThinSpace = "\xe2\x80\xaf";
/// Numbers of so many digits are written in one group.
constexpr std::size_t kFewDigits = 4;
constexpr std::size_t kLongestPath = 16;

KeyedValue memberOf(const KeyedValue& value, const std::string& key) {
    if (const auto* table = std::get_if<const Dictionary*>(&value)) {
        return valueForKey(**table, key);
    }
    const auto* object = std::get_if<std::shared_ptr<const Object>>(&value);
    return object != nullptr ? (*object)->valueForKey(key) : KeyedValue();
}

std::string plainText(const KeyedValue& value) {
    return std::visit(
        [](const auto& content) -> std::string {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, bool>) {
                return content ? "yes" : "no";
            } else if constexpr (std::is_same_v<Content, double>) {
                return shortestText(content);
            } else if constexpr (std::is_integral_v<Content>) {
                return std::to_string(content);
            } else if constexpr (std::is_convertible_v<Content, std::string_view>) {
                return std::string(std::string_view(content));
            } else {
                return {};
            }
        },
        value);
}

/// With thin spaces in the whole part of a number.
std::string grouped(const std::string& number) {
    const std::size_t begin = number.starts_with('-') ? 1 : 0;
    const std::size_t end = std::min(number.find_first_not_of("0123456789", begin), number.size());
    if (end - begin <= kFewDigits || number.find('e') != std::string::npos) return number;
    std::string text = number.substr(0, begin);
    for (std::size_t i = begin; i < end; ++i) {
        if (i > begin && (end - i) % 3 == 0) text += kThinSpace;
        text += number[i];
    }
    return text + number.substr(end);
}

bool isNumber(const KeyedValue& value) {
    return std::holds_alternative<std::int64_t>(value) || std::holds_alternative<double>(value);
}

/// The text of what `path` leads to from `value`, which is asked and so must last.
std::string textAt(const KeyedValue& value, std::span<const std::string> path, bool isGrouped) {
    if (!path.empty()) return textAt(memberOf(value, path.front()), path.subspan(1), isGrouped);
    return isGrouped && isNumber(value) ? grouped(plainText(value)) : plainText(value);
}

}  // namespace

/// Takes a text apart.
class TextTemplate::Reader {
  public:
    Reader(std::string_view text, std::string& error) : rest_(text), error_(error) {}

    /// Whether the whole text could be taken apart.
    bool read(std::vector<Piece>& pieces) {
        std::string run;
        while (!rest_.empty()) {
            if (takePlain(run)) continue;
            if (rest_.front() == '}') return fail(R"("}" without "{"; write "}}" for a brace)");
            if (!run.empty()) pieces.push_back({std::exchange(run, {}), {}, false});
            if (!takePlace(pieces.emplace_back())) return false;
        }
        if (!run.empty()) pieces.push_back({run, {}, false});
        return true;
    }

  private:
    std::string_view rest_;
    std::string& error_;

    bool fail(const char* reason) {
        error_ = reason;
        return false;
    }

    bool takePlain(std::string& run) {
        const bool isDoubled = rest_.starts_with("{{") || rest_.starts_with("}}");
        const bool isBrace = rest_.front() == '{' || rest_.front() == '}';
        if (isBrace && !isDoubled) return false;
        run += rest_.front();
        rest_.remove_prefix(isDoubled ? 2 : 1);
        return true;
    }

    bool takePlace(Piece& piece) {
        const std::size_t end = rest_.find('}');
        if (end == std::string_view::npos) {
            return fail(R"("{" without "}"; write "{{" for a brace)");
        }
        std::string_view place = rest_.substr(1, end - 1);
        rest_.remove_prefix(end + 1);
        if (const std::size_t bar = place.find('|'); bar != std::string_view::npos) {
            if (place.substr(bar + 1) != kGrouped)
                return fail(R"(after "|" only "grouped" is known)");
            piece.isGrouped = true;
            place = place.substr(0, bar);
        }
        return takeKeys(place, piece.keyPath);
    }

    bool takeKeys(std::string_view place, std::vector<std::string>& keys) {
        for (bool isLast = false; !isLast;) {
            const std::size_t end = place.find('.');
            isLast = end == std::string_view::npos;
            keys.emplace_back(place.substr(0, end));
            if (keys.back().empty()) return fail(R"(a key without a name between "{" and "}")");
            if (keys.size() > kLongestPath) return fail("a key path of more than 16 keys");
            place.remove_prefix(isLast ? place.size() : end + 1);
        }
        return true;
    }
};

std::optional<TextTemplate> TextTemplate::templateWithText(std::string_view text,
                                                           std::string& error) {
    TextTemplate made;
    if (!Reader(text, error).read(made.pieces_)) return std::nullopt;
    return made;
}

std::string TextTemplate::textForObject(const Object* object) const {
    std::string text;
    for (const Piece& piece : pieces_) {
        if (text.size() > longestText) break;
        text += piece.text;
        if (piece.keyPath.empty() || object == nullptr) continue;
        const std::span<const std::string> path(piece.keyPath);
        text += textAt(object->valueForKey(path.front()), path.subspan(1), piece.isGrouped);
    }
    return text;
}

}  // namespace mezalith::platform
