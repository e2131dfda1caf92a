// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/json_node.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

#include <nlohmann/json.hpp>

namespace mezalith::platform::detail {
namespace {

/// Reads a text and keeps how far it was read.
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

/// The reason alone, of "[id] parse error at position: reason; last read: text".
std::string reasonOf(std::string_view text) {
    for (const std::string_view mark : {"] ", ": "}) {
        const std::size_t at = text.find(mark);
        if (at != std::string_view::npos) text.remove_prefix(at + mark.size());
    }
    return std::string(text.substr(0, text.find("; last read")));
}

class Builder final : public nlohmann::json_sax<nlohmann::json> {
  public:
    explicit Builder(std::string_view text) : text_(text), read_(text.data()) {}
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;

    JsonNode root;
    std::string error;

    bool read() {
        const char* const end = text_.data() + text_.size();
        return nlohmann::json::sax_parse(CountingIterator(text_.data(), &read_),
                                         CountingIterator(end, &read_), this);
    }

    bool null() override { return add({}); }
    bool boolean(bool value) override {
        return add({.kind = JsonNode::Kind::Boolean, .boolean = value});
    }
    bool number_integer(number_integer_t value) override {
        return addNumber(static_cast<double>(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return addNumber(static_cast<double>(value));
    }
    bool number_float(number_float_t value, const string_t&) override { return addNumber(value); }
    bool string(string_t& value) override {
        return add({.kind = JsonNode::Kind::Text, .text = std::move(value)});
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(JsonNode::Kind::Table); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(JsonNode::Kind::List); }
    bool end_array() override { return close(); }

    bool key(string_t& value) override {
        const std::size_t position = takePosition();
        JsonNode& table = *open_.back();
        if (table.find(value) != nullptr) {
            return refuse(position, "the key \"" + value + "\" stands here already");
        }
        table.table.push_back({std::move(value), position, {}});
        return true;
    }

    bool parse_error(std::size_t, const std::string&,
                     const nlohmann::detail::exception& exception) override {
        const std::size_t read = offset();
        return refuse(read > 0 ? read - 1 : 0, reasonOf(exception.what()));
    }

  private:
    std::string_view text_;
    const char* read_;       ///< behind what was read
    std::size_t token_ = 0;  ///< behind the token before
    std::vector<JsonNode*> open_;

    std::size_t offset() const { return static_cast<std::size_t>(read_ - text_.data()); }

    /// Where the token that was read begins.
    std::size_t takePosition() {
        const std::size_t begin = text_.find_first_not_of(" \t\r\n,:", token_);
        token_ = offset();
        return std::min(begin, token_);
    }

    bool refuse(std::size_t position, const std::string& reason) {
        error = placeOf(text_, position) + ": " + reason;
        return false;
    }

    JsonNode* place(JsonNode node) {
        node.position = takePosition();
        JsonNode* target = &root;
        if (!open_.empty()) {
            JsonNode& parent = *open_.back();
            target = parent.kind == JsonNode::Kind::List ? &parent.list.emplace_back()
                                                         : &parent.table.back().value;
        }
        *target = std::move(node);
        return target;
    }

    bool add(JsonNode node) {
        place(std::move(node));
        return true;
    }

    bool addNumber(double value) { return add({.kind = JsonNode::Kind::Number, .number = value}); }

    bool open(JsonNode::Kind kind) {
        JsonNode* const node = place({.kind = kind});
        open_.push_back(node);
        return open_.size() <= deepestNode ||
               refuse(node->position, "nested deeper than " + std::to_string(deepestNode));
    }

    bool close() {
        token_ = offset();
        open_.pop_back();
        return true;
    }
};

}  // namespace

const JsonNode* JsonNode::find(std::string_view key) const {
    const auto found = std::ranges::find(table, key, &JsonEntry::key);
    return found != table.end() ? &found->value : nullptr;
}

std::string placeOf(std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, position);
    const auto line = std::ranges::count(before, '\n') + 1;
    const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::optional<JsonNode> readJson(std::string_view text, std::string& error) {
    Builder builder(text);
    if (builder.read()) return std::move(builder.root);
    error = builder.error;
    return std::nullopt;
}

}  // namespace mezalith::platform::detail
