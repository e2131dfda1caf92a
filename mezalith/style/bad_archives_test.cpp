// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/style/style_archive.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

const std::filesystem::path kFolder{MEZALITH_SOURCE_DIR "/tests/data/bad/archive"};

/// Legal, however awkward.
const std::set<std::string> kLegal{
    "color-out-of-range.json", "dash-values.json",    "enums-out-of-range.json",
    "filter-type-99.json",     "ok-shared.json",      "ok-style.cbor",
    "ok-style.json",           "scale-reversed.json", "width-negative.json"};

/// What is said of each of the others.
const std::map<std::string, std::string> kErrors{
    {"bom-utf16.json", "line 1, column 1: invalid literal"},
    {"color-short.json",
     "line 25, column 22: /root/rules/0/symbolizers/0/strokeColor/components: 1 components where "
     "calibratedRGB has 3"},
    {"color-unknown-space.json",
     "line 24, column 17: /root/rules/0/symbolizers/0/strokeColor/space: unknown colour space "
     "\"deviceRBG\", did you mean \"deviceRGB\"?"},
    {"dash-bytes-odd.json",
     "line 31, column 19: /root/rules/0/symbolizers/0/lineDash: 13 bytes, but lineDashCount is 2"},
    {"dash-count-huge.json",
     "line 31, column 19: /root/rules/0/symbolizers/0/lineDash: 16 bytes, but lineDashCount is "
     "536870912"},
    {"dash-count-missing.json",
     "line 30, column 19: /root/rules/0/symbolizers/0/lineDash: 16 bytes, but lineDashCount is 0"},
    {"dash-count-negative.json",
     "line 29, column 24: /root/rules/0/symbolizers/0/lineDashCount: the number -1, not a count"},
    {"dash-count-too-large.json",
     "line 31, column 19: /root/rules/0/symbolizers/0/lineDash: 16 bytes, but lineDashCount is "
     "1000"},
    {"dash-differs.json",
     "line 31, column 19: /root/rules/0/symbolizers/0/lineDash: no \"doubles\" with the same as "
     "\"bytes\""},
    {"dash-not-base64.json",
     "line 31, column 19: /root/rules/0/symbolizers/0/lineDash: a text, not bytes in base64 or a "
     "list of numbers"},
    {"deep-nesting.cbor", "byte 128: nested deeper than 128"},
    {"deep-nesting.json", "line 1, column 129: nested deeper than 128"},
    {"double-comma.json", "line 30, column 24: unexpected ','; expected string literal"},
    {"duplicate-keys.json", "line 24, column 27: a second key \"strokeWidth\""},
    {"empty.cbor", "byte 0: the archive ends here, within a value"},
    {"empty.json", "line 1, column 1: unexpected end of input; expected '[', '{', or a literal"},
    {"filter-deep.json",
     "line 19, column 15: /root/rules/0/filter: no predicate: line 1, column 65: found \"(\", "
     "expected no more than 64 levels of nesting"},
    {"filter-malformed.json",
     "line 19, column 15: /root/rules/0/filter: no predicate: line 1, column 21: found \"OR\", "
     "expected a condition"},
    {"id-twice.json", "line 64, column 13: a second object with the id 1"},
    {"indefinite-texts.cbor", "byte 0: an indefinite length or reserved form"},
    {"invalid-utf8.cbor", "byte 70: text that is not UTF-8"},
    {"invalid-utf8.json", "line 7, column 14: invalid string: ill-formed UTF-8 byte"},
    {"length-huge.cbor", "byte 10: the archive ends here, within a value"},
    {"lone-surrogate.json",
     "line 7, column 19: invalid string: surrogate U+D800..U+DBFF must be followed by "
     "U+DC00..U+DFFF"},
    {"missing-class.json", "line 10, column 4: /root/rules/0: an object without \"class\""},
    {"missing-key.json",
     "line 21, column 6: /root/rules/0/symbolizers/0: MzLineSymbolizer without \"strokeWidth\""},
    {"missing-keys.json",
     "line 13, column 6: /root/rules/0/symbolizers/0: MzLineSymbolizer without \"strokeColor\""},
    {"misspelt-class.json",
     "line 22, column 16: /root/rules/0/symbolizers/0/class: unknown class \"MzLineSymboliser\", "
     "did you mean \"MzLineSymbolizer\"?"},
    {"misspelt-key.json",
     "line 38, column 7: /root/rules/0/symbolizers/0: unknown key \"strokeColour\", did you mean "
     "\"strokeColor\"?"},
    {"nan-literals.json", "line 24, column 22: invalid literal"},
    {"not-an-archive.json", "line 1, column 1: no mezalith archive"},
    {"null.json", "line 1, column 1: no mezalith archive"},
    {"overflow-numbers.json", "line 24, column 27: number overflow parsing '1e999'"},
    {"ref-as-text.json",
     "line 41, column 14: /root/rules/0/symbolizers/1: a text, not a whole number"},
    {"ref-circle.json", "line 10, column 4: /root/rules/0: an object that it stands in"},
    {"ref-nowhere.json", "line 40, column 6: /root/rules/0/symbolizers/1: no object has the id 2"},
    {"root-array.json", "line 4, column 10: /root: a list, not an object"},
    {"root-null.json", "line 4, column 10: /root: null, not MzStyle"},
    {"rules-not-list.json", "line 9, column 12: /root/rules: an object, not a list of objects"},
    {"rules-null-member.json", "line 11, column 4: /root/rules/1: the number 5, not an object"},
    {"single-quotes.json", "line 2, column 2: invalid literal"},
    {"style-as-rule.json", "line 10, column 4: /root/rules/0: MzStyle, not one of the rules"},
    {"tags.cbor", "byte 0: a tag, which archives do not have"},
    {"trailing-garbage.cbor", "byte 763: more behind the archive"},
    {"trailing-garbage.json", "line 69, column 1: unexpected '}'; expected end of input"},
    {"truncated-escape.json",
     "line 12, column 17: invalid string: '\\u' must be followed by 4 hex digits"},
    {"truncated.cbor", "byte 723: the archive ends here, within a value"},
    {"truncated.json", "line 36, column 27: invalid string: missing closing quote"},
    {"unknown-class.cbor",
     "byte 252: /root/rules/0/symbolizers/0/class: unknown class \"MzNoSuchSymbolizer\""},
    {"unknown-class.json",
     "line 22, column 16: /root/rules/0/symbolizers/0/class: unknown class \"MzNoSuchSymbolizer\""},
    {"version-2.json", "line 3, column 13: an archive of another version than 1"},
    {"wrong-class.json", "line 5, column 12: /root/class: MzLineSymbolizer, not MzStyle"},
    {"wrong-types.cbor",
     "byte 303: /root/rules/0/symbolizers/0/strokeWidth: a text, not a single-precision number"},
    {"wrong-types.json",
     "line 23, column 22: /root/rules/0/symbolizers/0/strokeColor: a text, not a colour such as "
     "\"#rrggbbaa\""},
};

UnarchivedStyle readFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    return path.extension() == ".cbor" ? styleFromBytes(std::as_bytes(std::span(content)))
                                       : styleFromText(content);
}

TEST(BadArchives, AreRefusedWithOneMessageEach) {
    for (const auto& [name, error] : kErrors) {
        const UnarchivedStyle read = readFile(kFolder / name);
        EXPECT_EQ(read.style, nullptr) << name;
        EXPECT_EQ(read.error, error) << name;
    }
}

TEST(BadArchives, AreReadWhereTheyAreLegal) {
    for (const std::string& name : kLegal) {
        const UnarchivedStyle read = readFile(kFolder / name);
        ASSERT_NE(read.style, nullptr) << name;
        EXPECT_EQ(read.error, "") << name;
        const std::string text = platform::archivedText(read.style.get());
        const UnarchivedStyle again = styleFromText(text);
        ASSERT_NE(again.style, nullptr) << name << ": " << again.error;
        EXPECT_EQ(platform::archivedText(again.style.get()), text) << name;
    }
}

TEST(BadArchives, AreAllTold) {
    for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
        const std::string name = entry.path().filename().string();
        EXPECT_EQ(kLegal.count(name) + kErrors.count(name), 1U) << name;
    }
}

}  // namespace
}  // namespace mezalith
