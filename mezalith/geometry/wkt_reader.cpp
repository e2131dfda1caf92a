// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_builder.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkt_reader.hpp>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>
#include <utility>

namespace mezalith {
namespace {

constexpr MzPoint kNowhere{std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::quiet_NaN()};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isSymbol(char c) { return c == '(' || c == ')' || c == ',' || c == ';' || c == '='; }
char inUpperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string inUpperCase(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), [](char c) { return inUpperCase(c); });
    return upper;
}

/// What the letters behind a type's name say of positions.
struct Dimensions {
    std::size_t least = 2;
    std::size_t most = 4;
};

std::optional<Dimensions> dimensionsNamed(std::string_view tag) {
    if (tag == "Z" || tag == "M") return Dimensions{3, 3};
    if (tag == "ZM") return Dimensions{4, 4};
    return std::nullopt;
}

/// Words, numbers and symbols one after the other.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : text_(text) { skipBlanks(); }

    bool isAtEnd() const { return at_ == text_.size(); }

    bool take(char symbol) {
        if (isAtEnd() || text_[at_] != symbol) return false;
        advance(1);
        return true;
    }

    /// The word that stands here, in capitals; empty when there is none.
    std::string word() const {
        const std::string_view rest = text_.substr(at_);
        return inUpperCase({rest.begin(), std::ranges::find_if_not(rest, isLetter)});
    }

    bool takeWord(std::string_view wanted) {
        if (word() != wanted) return false;
        advance(wanted.size());
        return true;
    }

    template <typename Number>
    std::optional<Number> takeNumber() {
        const std::size_t sign = !isAtEnd() && text_[at_] == '+' ? 1 : 0;
        const char* end = text_.data() + text_.size();
        Number number{};
        const auto [stop, problem] = std::from_chars(text_.data() + at_ + sign, end, number);
        if (problem != std::errc{} || (stop != end && !isBlank(*stop) && !isSymbol(*stop))) {
            return std::nullopt;
        }
        advance(static_cast<std::size_t>(stop - text_.data()) - at_);
        return number;
    }

    /// Always false.
    bool fail(std::string expected) {
        error = {at_, std::move(expected), found()};
        return false;
    }

    MzReadError error;

  private:
    void advance(std::size_t count) {
        at_ += count;
        skipBlanks();
    }

    void skipBlanks() {
        while (!isAtEnd() && isBlank(text_[at_])) ++at_;
    }

    /// The symbol that stands here, or what reaches up to the next, no more than is worth showing.
    std::string found() const {
        if (isAtEnd()) return "the end of the text";
        constexpr std::size_t kMost = 24;
        const std::string_view rest = text_.substr(at_, kMost);
        const auto end = std::ranges::find_if(rest.begin() + 1, rest.end(),
                                              [](char c) { return isBlank(c) || isSymbol(c); });
        const std::string_view shown =
            isSymbol(rest[0]) ? rest.substr(0, 1) : std::string_view(rest.begin(), end);
        return "\"" + std::string(shown) + "\"";
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

class Parser {
  public:
    explicit Parser(std::string_view text) : scanner(text) {}

    bool wholeText(std::optional<std::int32_t>& srid) {
        if (scanner.takeWord("SRID") && !reference(srid)) return false;
        return geometry(0) && (scanner.isAtEnd() || scanner.fail("the end of the text"));
    }

    Scanner scanner;
    MzWKBBuilder builder;

  private:
    /// What follows "SRID".
    bool reference(std::optional<std::int32_t>& srid) {
        if (!scanner.take('=')) return scanner.fail("\"=\"");
        srid = scanner.takeNumber<std::int32_t>();
        if (!srid) return scanner.fail("an SRID");
        return scanner.take(';') || scanner.fail("\";\"");
    }

    /// The type that stands here, its tag together with it or apart.
    bool type(std::uint32_t& type, Dimensions& dimensions) {
        const std::string word = scanner.word();
        for (const std::size_t tag : {0U, 1U, 2U}) {
            if (word.size() <= tag) break;
            const std::string_view name = std::string_view(word).substr(0, word.size() - tag);
            const auto tagged = dimensionsNamed(std::string_view(word).substr(name.size()));
            type = MzGeometryTypeNamed(name);
            if (type == 0 || (tag > 0 && !tagged)) continue;
            scanner.takeWord(word);
            dimensions = tagged.value_or(separateTag());
            return true;
        }
        return scanner.fail("a type of geometry");
    }

    Dimensions separateTag() {
        const std::string word = scanner.word();
        const auto tagged = dimensionsNamed(word);
        if (tagged) scanner.takeWord(word);
        return tagged.value_or(Dimensions{});
    }

    /// "EMPTY", or items in parentheses.
    template <typename Item>
    bool list(const Item& item) {
        if (scanner.takeWord("EMPTY")) return true;
        if (!scanner.take('(')) return scanner.fail("\"(\" or EMPTY");
        do {
            if (!item()) return false;
        } while (scanner.take(','));
        return scanner.take(')') || scanner.fail("\",\" or \")\"");
    }

    bool position(Dimensions dimensions) {
        MzPoint point{};
        std::size_t count = 0;
        while (count < dimensions.most) {
            const auto number = scanner.takeNumber<double>();
            if (!number) break;
            if (count == 0) point.x = *number;
            if (count == 1) point.y = *number;
            ++count;
        }
        if (count < dimensions.least) return scanner.fail("a number");
        builder.add(point);
        return true;
    }

    bool positions(Dimensions dimensions) {
        return list([&] { return position(dimensions); });
    }

    bool point(Dimensions dimensions) {
        if (scanner.takeWord("EMPTY")) {
            builder.add(kNowhere);
            return true;
        }
        if (!scanner.take('(')) return scanner.fail("\"(\" or EMPTY");
        return position(dimensions) && (scanner.take(')') || scanner.fail("\")\""));
    }

    bool ring(Dimensions dimensions) {
        builder.beginRing();
        const bool isRead = positions(dimensions);
        builder.end();
        return isRead;
    }

    /// A point of a multi-point, whose parentheses may be missing.
    bool memberPoint(Dimensions dimensions) {
        const auto number = scanner;
        if (scanner.takeNumber<double>()) {
            scanner = number;
            return position(dimensions);
        }
        return point(dimensions);
    }

    /// A member that shares its multi-geometry's tag.
    bool member(std::uint32_t type, Dimensions dimensions) {
        builder.begin(type);
        const bool isRead =
            type == MzGeometryTypePoint ? memberPoint(dimensions) : body(type, dimensions, 0);
        builder.end();
        return isRead;
    }

    bool body(std::uint32_t type, Dimensions dimensions, unsigned depth) {
        switch (type) {
            case MzGeometryTypePoint:
                return point(dimensions);
            case MzGeometryTypeLineString:
                return positions(dimensions);
            case MzGeometryTypePolygon:
                return list([&] { return ring(dimensions); });
            case MzGeometryTypeGeometryCollection:
                return list([&] { return geometry(depth + 1); });
            default:
                return list([&] { return member(MzMemberTypeOf(type), dimensions); });
        }
    }

    bool geometry(unsigned depth) {
        std::uint32_t found = 0;
        Dimensions dimensions;
        const bool isDeepest = depth == MzDeepestCollection;
        if (isDeepest && scanner.word().starts_with("GEOMETRYCOLLECTION")) {
            return scanner.fail("at most " + std::to_string(MzDeepestCollection) +
                                " collections in each other");
        }
        if (!type(found, dimensions)) return false;
        builder.begin(found);
        const bool isRead = body(found, dimensions, depth);
        builder.end();
        return isRead;
    }
};

}  // namespace

MzWKTReading MzReadWKT(std::string_view text) {
    MzWKTReading reading;
    Parser parser(text);
    if (!parser.wholeText(reading.srid)) {
        reading.error = std::move(parser.scanner.error);
        return reading;
    }
    MzWKBReading binary = MzReadWKB(parser.builder.bytes());
    reading.geometry = std::move(binary.geometry);
    reading.error = std::move(binary.error);
    return reading;
}

}  // namespace mezalith
