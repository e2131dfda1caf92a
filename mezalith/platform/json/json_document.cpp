// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/json_document.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace mezalith::platform::detail {
namespace {

constexpr char formatKey[] = "format";
constexpr char formatName[] = "mezalith archive";
constexpr char versionKey[] = "version";
constexpr int version = 1;

/// Reads a text and counts what was read of it.
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

/// Builds a value from the events of a parser; stops at whatever is refused.
class Builder final : public nlohmann::json_sax<JsonRead> {
  public:
    // NOLINTNEXTLINE(bugprone-exception-escape): an empty value is made without allocating
    Builder() = default;
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;

    JsonRead root;
    std::string error;

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override { return add(value); }
    bool number_float(number_float_t value, const string_t&) override { return add(value); }
    bool string(string_t& value) override { return add(std::move(value)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(JsonRead::object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(JsonRead::array()); }
    bool end_array() override { return close(); }

    bool key(string_t& value) override {
        const auto [member, isNew] = open_.back()->emplace(std::move(value), nullptr);
        member_ = &*member;
        return isNew || refuse("a key that the object has already");
    }

    bool parse_error(std::size_t, const std::string&,
                     const nlohmann::detail::exception& exception) override {
        return refuse(reasonOf(exception.what()));
    }

  private:
    std::vector<JsonRead*> open_;
    JsonRead* member_ = nullptr;  ///< of the innermost object, where the next value goes

    bool refuse(const std::string& reason) {
        error = reason;
        return false;
    }

    /// The reason alone, of "[id] parse error at position: reason; last read: text".
    static std::string reasonOf(std::string_view text) {
        text = behind(text, "] ");
        if (text.starts_with("parse error at")) {
            text = behind(text, ": ");
        }
        return std::string(text.substr(0, text.find("; last read")));
    }

    static std::string_view behind(std::string_view text, std::string_view mark) {
        const std::size_t at = text.find(mark);
        return at == std::string_view::npos ? text : text.substr(at + mark.size());
    }

    JsonRead* place(JsonRead value) {
        if (open_.empty()) {
            root = std::move(value);
            return &root;
        }
        if (open_.back()->is_array()) {
            open_.back()->push_back(std::move(value));
            return &open_.back()->back();
        }
        *member_ = std::move(value);
        return member_;
    }

    template <typename Value>
    bool add(Value&& value) {
        place(std::forward<Value>(value));
        return true;
    }

    bool open(JsonRead empty) {
        if (open_.size() == deepestJson) {
            return refuse("nested deeper than " + std::to_string(deepestJson));
        }
        open_.push_back(place(std::move(empty)));
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }
};

std::string positionText(std::string_view read) {
    const auto lines = std::ranges::count(read, '\n') + 1;
    const std::size_t column = read.size() - (read.rfind('\n') + 1);
    return "line " + std::to_string(lines) + ", column " +
           std::to_string(std::max<std::size_t>(column, 1));
}

std::optional<JsonRead> parsed(std::string_view text, std::string& error) {
    if (text.size() > longestJson) {
        error = "longer than " + std::to_string(longestJson) + " bytes";
        return std::nullopt;
    }
    const char* read = text.data();
    Builder builder;
    const bool isRead =
        JsonRead::sax_parse(CountingIterator(text.data(), &read),
                            CountingIterator(text.data() + text.size(), &read), &builder);
    if (!isRead) {
        const std::string_view before(text.data(), static_cast<std::size_t>(read - text.data()));
        error = positionText(before) + ": " + builder.error;
        return std::nullopt;
    }
    return std::move(builder.root);
}

/// Writes JSON for people.
class Writer {
  public:
    std::string text;

    void write(const JsonWritten& value, int depth) {
        if (value.is_object() && !value.empty()) {
            writeObject(value, depth);
        } else if (value.is_array() && !value.empty()) {
            writeArray(value, depth);
        } else if (value.is_number_float()) {
            text += floatText(value.get<double>());
        } else {
            text += dumped(value);
        }
    }

  private:
    static std::string dumped(const JsonWritten& value) {
        return value.dump(-1, ' ', false, JsonWritten::error_handler_t::replace);
    }

    static std::string floatText(double value) {
        // Without the point the sign of a zero would be lost.
        return value == 0 && std::signbit(value) ? "-0.0" : shortestText(value);
    }

    void newLine(int depth) {
        text += '\n';
        text.append(static_cast<std::size_t>(depth), ' ');
    }

    void writeObject(const JsonWritten& object, int depth) {
        char before = '{';
        for (const auto& [key, value] : object.items()) {
            text += before;
            newLine(depth + 1);
            text += dumped(key) + ": ";
            write(value, depth + 1);
            before = ',';
        }
        newLine(depth);
        text += '}';
    }

    void writeArray(const JsonWritten& array, int depth) {
        const bool isOneLine =
            std::ranges::none_of(array, [](const auto& value) { return value.is_structured(); });
        const char* before = "[";
        for (const JsonWritten& value : array) {
            text += before;
            if (!isOneLine) {
                newLine(depth + 1);
            }
            write(value, depth + 1);
            before = isOneLine ? ", " : ",";
        }
        if (!isOneLine) {
            newLine(depth);
        }
        text += ']';
    }
};

}  // namespace

JsonWritten numberAsJson(double value) {
    return std::isfinite(value) ? JsonWritten(value) : JsonWritten(shortestText(value));
}

JsonWritten numberAsJson(float value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    const auto nearby = numberFromText(
        std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data())));
    const double exact = value;
    return numberAsJson(nearby && static_cast<float>(*nearby) == value ? *nearby : exact);
}

std::optional<double> numberFromJson(const JsonRead& value) {
    if (value.is_number()) {
        return value.get<double>();
    }
    if (value.is_string()) {
        const auto number = numberFromText(value.get_ref<const std::string&>());
        return number && !std::isfinite(*number) ? number : std::nullopt;
    }
    return std::nullopt;
}

JsonWritten numbersAsJson(std::span<const double> values) {
    JsonWritten list = JsonWritten::array();
    for (const double value : values) {
        list.push_back(numberAsJson(value));
    }
    return list;
}

std::optional<std::vector<double>> numbersFromJson(const JsonRead& value) {
    if (!value.is_array()) {
        return std::nullopt;
    }
    std::vector<double> numbers;
    for (const JsonRead& member : value) {
        const auto number = numberFromJson(member);
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    return numbers;
}

std::string jsonText(const JsonWritten& value) {
    Writer writer;
    writer.write(value, 0);
    return writer.text + '\n';
}

std::string archiveText(const char* key, JsonWritten content) {
    JsonWritten document;
    document[formatKey] = formatName;
    document[versionKey] = version;
    document[key] = std::move(content);
    return jsonText(document);
}

std::optional<JsonRead> archiveContent(std::string_view text, const char* key, std::string& error) {
    auto document = parsed(text, error);
    if (!document) {
        return std::nullopt;
    }
    if (!document->is_object() || document->value(formatKey, JsonRead()) != formatName) {
        error = "no mezalith archive";
        return std::nullopt;
    }
    if (document->value(versionKey, JsonRead()) != version) {
        error = "an archive of another version than " + std::to_string(version);
        return std::nullopt;
    }
    if (!document->contains(key)) {
        error = std::string("an archive without \"") + key + "\"";
        return std::nullopt;
    }
    return std::move((*document)[key]);
}

}  // namespace mezalith::platform::detail
