// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/text_file.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::detail {

/// A text line by line: those with fields on them, which comments have not.
class Lines {
  public:
    /// Of the fields of a line no more than this many and one count.
    static constexpr std::size_t kMaxFields = 1024;

    explicit Lines(std::string_view text) : rest_(text) {}

    /// Goes to the next line; false after the last.
    bool next() {
        while (!rest_.empty()) {
            const std::string_view line = takeLine();
            fields_.clear();
            if (line.starts_with('#')) {
                if (comment_.empty()) comment_ = line.substr(1);
                continue;
            }
            platform::forEachPiece(line, platform::kBlanks, [this](std::string_view field) {
                if (fields_.size() <= kMaxFields) fields_.push_back(field);
            });
            if (!fields_.empty()) return true;
        }
        return false;
    }

    const std::vector<std::string_view>& fields() const { return fields_; }
    std::size_t count() const { return fields_.size(); }
    std::string place() const { return "line " + std::to_string(number_) + ": "; }

    /// The first comment's text, without blanks around it.
    std::string title() const {
        std::string title;
        platform::forEachPiece(comment_, platform::kBlanks, [&title](std::string_view word) {
            title.append(title.empty() ? "" : " ").append(word);
        });
        return title;
    }

  private:
    std::string_view takeLine() {
        const std::size_t end = platform::lengthBefore(platform::kLineEnds, rest_);
        const std::string_view line = rest_.substr(0, end);
        const bool pair = rest_.substr(end).starts_with("\r\n");
        rest_.remove_prefix(std::min(end + (pair ? 2 : 1), rest_.size()));
        ++number_;
        return line;
    }

    std::string_view rest_;
    std::string_view comment_;
    std::vector<std::string_view> fields_;
    std::size_t number_ = 0;
};

/// What the readers of all layouts share: the lines, and the first thing that is wrong with them.
/// Operations that find something wrong answer false or nothing.
class LayoutReader {
  public:
    explicit LayoutReader(std::string_view text) : lines_(text) {}

  protected:
    bool fail(const std::string& why) {
        if (failure_.empty()) failure_ = lines_.place() + why;
        return false;
    }

    std::optional<double> number(std::string_view text) {
        const auto value = platform::numberFromText(text);
        if (value && std::isfinite(*value)) return value;
        fail(quoted(text) + " is not a number");
        return std::nullopt;
    }

    /// The text in quotes, cut where it is too long to be read.
    static std::string quoted(std::string_view text) {
        constexpr std::size_t kShown = 40;
        return "\"" + std::string(text.substr(0, kShown)) + (text.size() > kShown ? "...\"" : "\"");
    }

    std::optional<double> year(std::string_view text) {
        const auto value = number(text);
        if (!value || std::abs(*value) <= 9999) return value;
        fail(quoted(text) + " is not a year");
        return std::nullopt;
    }

    std::optional<int> integer(std::string_view text, int least, int most) {
        const auto value = number(text);
        if (!value) return std::nullopt;
        if (*value >= least && *value <= most && *value == std::floor(*value)) {
            return static_cast<int>(*value);
        }
        fail(quoted(text) + " is not within " + std::to_string(least) + " and " +
             std::to_string(most));
        return std::nullopt;
    }

    Lines lines_;
    std::string failure_;
};

}  // namespace mezalith::detail
