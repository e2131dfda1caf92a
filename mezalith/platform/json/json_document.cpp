// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/base64.hpp>
#include <mezalith/platform/json/json_document.hpp>
#include <mezalith/platform/json/utf8.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

#include <nlohmann/json.hpp>

namespace mezalith::platform::detail {
namespace {

using Json = nlohmann::json;

/// Reads a text and tells how far.
class CountingIterator {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* at, const char** farthest) : at_(at), farthest_(farthest) {}
    reference operator*() const { return *at_; }
    CountingIterator& operator++() {
        ++at_;
        *farthest_ = at_;
        return *this;
    }
    friend bool operator==(const CountingIterator& a, const CountingIterator& b) {
        return a.at_ == b.at_;
    }

  private:
    const char* at_;
    const char** farthest_;
};

/// Takes a parser's events, finds out where each began, and stops at whatever is refused.
class Events final : public nlohmann::json_sax<Json> {
  public:
    explicit Events(std::string_view text) : text_(text), farthest_(text.data()) {}
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;

    bool parse() {
        return Json::sax_parse(CountingIterator(text_.data(), &farthest_),
                               CountingIterator(text_.data() + text_.size(), &farthest_), this);
    }
    ArchiveBuilder& builder() { return builder_; }

    bool null() override { return builder_.add({{}, begin()}); }
    bool boolean(bool value) override { return builder_.add({value, begin()}); }
    bool number_integer(number_integer_t value) override { return builder_.add({value, begin()}); }
    bool number_unsigned(number_unsigned_t value) override {
        if (std::in_range<std::int64_t>(value)) {
            return builder_.add({static_cast<std::int64_t>(value), begin()});
        }
        return builder_.add({static_cast<double>(value), begin()});
    }
    bool number_float(number_float_t value, const string_t&) override {
        return builder_.add({value, begin()});
    }
    bool string(string_t& value) override { return builder_.add({std::move(value), begin()}); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return builder_.open({ArchiveObject(), begin()}); }
    bool start_array(std::size_t) override { return builder_.open({ArchiveList(), begin()}); }
    bool end_object() override { return builder_.close(); }
    bool end_array() override { return builder_.close(); }
    bool key(string_t& value) override { return builder_.addKey(std::move(value), begin()); }

    bool parse_error(std::size_t, const std::string&,
                     const nlohmann::detail::exception& exception) override {
        const std::size_t read = offsetOf(farthest_);
        return builder_.fail(reasonOf(exception.what()), read > 0 ? read - 1 : 0);
    }

  private:
    std::string_view text_;
    const char* farthest_;  ///< what the parser has read; of numbers and the end one more
    std::size_t end_ = 0;   ///< how far that was at the event before
    ArchiveBuilder builder_;

    std::size_t offsetOf(const char* at) const {
        return static_cast<std::size_t>(at - text_.data());
    }

    /// Where what the parser has just read begins: behind the last event, blanks and punctuation.
    std::size_t begin() {
        const std::size_t found = text_.find_first_not_of(" \t\r\n,:]}", end_);
        end_ = offsetOf(farthest_);
        return std::min(found, text_.size());
    }

    /// The reason alone, of "[id] parse error at position: syntax error while parsing what -
    /// reason; last read: text".
    static std::string reasonOf(std::string_view text) {
        text = behind(text, "] ");
        if (text.starts_with("parse error at")) text = behind(text, ": ");
        if (text.starts_with("syntax error while")) text = behind(text, " - ");
        return std::string(text.substr(0, text.find("; last read")));
    }

    static std::string_view behind(std::string_view text, std::string_view mark) {
        const std::size_t at = text.find(mark);
        return at == std::string_view::npos ? text : text.substr(at + mark.size());
    }
};

std::string jsonString(std::string_view text) {
    static constexpr std::string_view kHex = "0123456789abcdef";
    static constexpr std::string_view kPlain = "\"\\\b\f\n\r\t";
    static constexpr std::string_view kEscaped = "\"\\bfnrt";
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (const std::size_t i = kPlain.find(c); i != std::string_view::npos) {
            result += {'\\', kEscaped[i]};
        } else if (byte < 0x20) {
            result += {'\\', 'u', '0', '0', kHex[byte / 16U], kHex[byte % 16U]};
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string numberText(double value) {
    if (!std::isfinite(value)) return jsonString(shortestText(value));
    // Without the point the sign of a zero would be lost.
    return value == 0 && std::signbit(value) ? "-0.0" : shortestText(value);
}

/// Writes JSON for people.
class Writer {
  public:
    std::string text;

    void write(const ArchiveValue& value) {
        std::visit([this](const auto& content) { write(content); }, value.value);
    }

  private:
    std::size_t depth_ = 0;

    void write(std::monostate) { text += "null"; }
    void write(bool value) { text += value ? "true" : "false"; }
    void write(std::int64_t value) { text += std::to_string(value); }
    void write(double value) { text += numberText(value); }
    void write(const std::string& value) { text += jsonString(value); }
    void write(const ArchiveBytes& value) { text += jsonString(base64Text(value)); }

    void write(const ArchiveObject& object) {
        writeAll(object, "{}", true, [this](const ArchiveMember& member) {
            text += jsonString(member.key) + ": ";
            write(member.value);
        });
    }

    void write(const ArchiveList& list) {
        const bool isTall = std::ranges::any_of(list, [](const ArchiveValue& value) {
            return value.as<ArchiveList>() != nullptr || value.as<ArchiveObject>() != nullptr;
        });
        writeAll(list, "[]", isTall, [this](const ArchiveValue& value) { write(value); });
    }

    void newLine() {
        text += '\n';
        text.append(depth_, ' ');
    }

    /// With what is within on lines of their own, or all on one.
    template <typename All, typename WriteOne>
    void writeAll(const All& all, std::string_view brackets, bool isTall, WriteOne writeOne) {
        text += brackets[0];
        ++depth_;
        const char* before = "";
        for (const auto& one : all) {
            text += before;
            if (isTall) newLine();
            writeOne(one);
            before = isTall ? "," : ", ";
        }
        --depth_;
        if (isTall && !all.empty()) newLine();
        text += brackets[1];
    }
};

}  // namespace

std::string jsonText(const ArchiveValue& value) {
    Writer writer;
    writer.write(value);
    return writer.text + '\n';
}

std::optional<ArchiveValue> jsonTree(std::string_view text, ArchiveError& error) {
    if (const auto tooLong = sizeError(text.size())) {
        error = *tooLong;
        return std::nullopt;
    }
    Events events(text);
    if (!events.parse()) {
        error = events.builder().error();
        return std::nullopt;
    }
    return events.builder().takeRoot();
}

std::string jsonErrorText(std::string_view text, const ArchiveError& error) {
    const std::string_view before = text.substr(0, error.offset);
    const auto lines = std::ranges::count(before, '\n') + 1;
    const auto isFirstByte = [](char c) {
        return (static_cast<unsigned char>(c) & 0xc0U) != 0x80U;
    };
    const auto column =
        std::ranges::count_if(before.substr(before.rfind('\n') + 1), isFirstByte) + 1;
    return "line " + std::to_string(lines) + ", column " + std::to_string(column) + ": " +
           error.reason;
}

}  // namespace mezalith::platform::detail
