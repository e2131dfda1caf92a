// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/json/json_keyed_archive.hpp>
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/shadow.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr unsigned seed = 8259;
constexpr double infinity = std::numeric_limits<double>::infinity();

/// An object that writes what a test says and reads what a test asks.
class Probe final : public Archivable {
  public:
    using Write = std::function<void(KeyedArchiver&)>;
    explicit Probe(Write write = {}) : write_(std::move(write)) {}
    std::string_view archiveClassName() const override { return "Probe"; }
    void encodeWithCoder(KeyedArchiver& coder) const override {
        if (write_) {
            write_(coder);
        }
    }

  private:
    Write write_;
};

std::string archived(const Probe::Write& write) {
    const Probe probe(write);
    return JsonKeyedArchiver::archivedText(&probe);
}

std::string document(const std::string& root) {
    return R"({"format":"mezalith archive","version":1,"root":)" + root + "}";
}

std::string withFields(const std::string& fields) {
    return document(R"({"class":"Probe",)" + fields + "}");
}

using Ask = std::function<void(const KeyedUnarchiver&)>;

/// The classes of the platform and Probe, whose objects ask first.
ArchiveClasses classesWithProbe(const Ask& ask) {
    ArchiveClasses classes = ArchiveClasses::platformClasses();
    classes.add("Probe", [ask](const KeyedUnarchiver& coder) {
        if (ask) {
            ask(coder);
        }
        return std::make_shared<const Probe>();
    });
    return classes;
}

/// Reads an archive whose root is a probe.
UnarchivedObject read(const std::string& text, const Ask& ask) {
    bool isAsked = false;
    auto result = JsonKeyedUnarchiver::unarchivedObject(
        text, classesWithProbe([&](const KeyedUnarchiver& coder) {
            isAsked = true;
            ask(coder);
        }));
    EXPECT_TRUE(isAsked) << text;
    EXPECT_EQ(result.error, "");
    return result;
}

std::string errorOf(const std::string& text) {
    const auto result = JsonKeyedUnarchiver::unarchivedObject(text, classesWithProbe({}));
    EXPECT_EQ(result.object, nullptr);
    return result.error;
}

// --- text

TEST(JsonKeyedArchive, IsTextForPeopleInTheOrderWritten) {
    const std::string text = archived([](KeyedArchiver& coder) {
        coder.encodeString("Line \"1\"\n\xc3\xb8", "name");
        coder.encodeBool(true, "isDashed");
        coder.encodeInt(-7, "count");
        coder.encodeFloat(0.8F, "width");
        coder.encodeDouble(0.1, "factor");
        coder.encodeBytes(std::as_bytes(std::span("foo", 3)), "bytes");
        coder.encodeNumber(500000.0, "most");
        coder.encodeNumber(std::nullopt, "least");
        coder.encodeDoubles(std::array{1.0, 0.5, -2.25}, "list");
        coder.encodeDoubles({}, "empty");
        const auto color = Color::cyanColor();
        coder.encodeObject(color.get(), "color");
        coder.encodeObject(nullptr, "none");
        const Probe inner;
        coder.encodeObjects(std::array<const Archivable*, 2>{&inner, nullptr}, "members");
        coder.encodeObjects({}, "nobody");
    });
    EXPECT_EQ(text, R"({
 "format": "mezalith archive",
 "version": 1,
 "root": {
  "class": "Probe",
  "name": "Line \"1\"\nø",
  "isDashed": true,
  "count": -7,
  "width": 0.8,
  "factor": 0.1,
  "bytes": "Zm9v",
  "most": 5e+05,
  "least": null,
  "list": [1, 0.5, -2.25],
  "empty": [],
  "color": {
   "class": "Color",
   "colorSpace": "calibratedRGB",
   "components": [0, 1, 1],
   "alpha": 1
  },
  "none": null,
  "members": [
   {
    "class": "Probe"
   },
   null
  ],
  "nobody": []
 }
}
)");
}

TEST(JsonKeyedArchive, OfNothingHoldsNull) {
    const std::string text = JsonKeyedArchiver::archivedText(nullptr);
    const auto result = JsonKeyedUnarchiver::unarchivedObject(text, {});
    EXPECT_EQ(result.object, nullptr);
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(result.remarks.empty());
}

TEST(JsonKeyedArchive, KeepsTheLaterOfTwoValues) {
    const std::string text = archived([](KeyedArchiver& coder) {
        coder.encodeInt(1, "a");
        coder.encodeInt(2, "b");
        coder.encodeInt(3, "a");
    });
    read(text, [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeInt("a"), 3);
        EXPECT_EQ(coder.decodeInt("b"), 2);
    });
}

TEST(JsonKeyedArchive, KeepsTheClassForItself) {
    const std::string text =
        archived([](KeyedArchiver& coder) { coder.encodeString("Color", "class"); });
    read(text, [](const KeyedUnarchiver& coder) {
        EXPECT_FALSE(coder.containsValueForKey("class"));
        EXPECT_EQ(coder.decodeString("class"), "");
    });
}

TEST(JsonKeyedArchive, MendsTextThatIsNotUTF8) {
    const std::string text = archived([](KeyedArchiver& coder) {
        coder.encodeString(
            "a\xff"
            "b",
            "name");
    });
    read(text, [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeString("name"),
                  "a\xef\xbf\xbd"
                  "b");
    });
}

// --- values there and back

TEST(JsonKeyedArchive, GivesBackWhatWasWritten) {
    const auto color = Color::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5);
    const std::vector<std::byte> bytes{std::byte{0}, std::byte{255}, std::byte{7}, std::byte{8}};
    const std::string text = archived([&](KeyedArchiver& coder) {
        coder.encodeBool(true, "bool");
        coder.encodeInt(std::numeric_limits<std::int32_t>::min(), "int");
        coder.encodeFloat(0.1F, "float");
        coder.encodeDouble(-1e-300, "double");
        coder.encodeBytes(bytes, "bytes");
        coder.encodeString(std::string("nul\0 \"\\ /~", 10), "a/b~c");
        coder.encodeNumber(2.5, "number");
        coder.encodeNumber(std::nullopt, "none");
        coder.encodeDoubles(std::array{0.1, -0.0, infinity}, "doubles");
        coder.encodeObject(color.get(), "object");
        const Probe probe;
        coder.encodeObjects(std::array<const Archivable*, 3>{color.get(), nullptr, &probe}, "list");
    });
    const auto result = read(text, [&](const KeyedUnarchiver& coder) {
        if (!coder.containsValueForKey("bool")) {
            return;  // the probe in the list
        }
        EXPECT_TRUE(coder.decodeBool("bool"));
        EXPECT_EQ(coder.decodeInt("int"), std::numeric_limits<std::int32_t>::min());
        EXPECT_EQ(coder.decodeFloat("float"), 0.1F);
        EXPECT_EQ(coder.decodeDouble("double"), -1e-300);
        EXPECT_EQ(coder.decodeBytes("bytes"), bytes);
        EXPECT_EQ(coder.decodeString("a/b~c"), std::string("nul\0 \"\\ /~", 10));
        EXPECT_EQ(coder.decodeNumber("number"), 2.5);
        EXPECT_TRUE(coder.containsValueForKey("none"));
        EXPECT_EQ(coder.decodeNumber("none"), std::nullopt);
        EXPECT_EQ(coder.decodeDoubles("doubles"), (std::vector<double>{0.1, -0.0, infinity}));
        const auto object = coder.decodeObject("object");
        ASSERT_NE(object, nullptr);
        EXPECT_TRUE(color->isEqualToColor(dynamic_cast<const Color*>(object.get())));
        const auto list = coder.decodeObjects("list");
        ASSERT_EQ(list.size(), 3);
        EXPECT_NE(dynamic_cast<const Color*>(list[0].get()), nullptr);
        EXPECT_EQ(list[1], nullptr);
        EXPECT_NE(dynamic_cast<const Probe*>(list[2].get()), nullptr);
    });
    EXPECT_NE(result.object, nullptr);
    EXPECT_TRUE(result.remarks.empty());
}

/// The text of the value under "x".
std::string fieldText(const std::string& text) {
    const std::string mark = "\"x\": ";
    const std::size_t begin = text.find(mark) + mark.size();
    return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(JsonKeyedArchive, WritesDoublesAsTheirShortestText) {
    std::mt19937_64 random(seed);
    for (int i = 0; i < 2000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value) || value == 0) {
            continue;
        }
        const std::string text =
            archived([&](KeyedArchiver& coder) { coder.encodeDouble(value, "x"); });
        ASSERT_EQ(fieldText(text), shortestText(value)) << "seed " << seed;
        read(text,
             [&](const KeyedUnarchiver& coder) { ASSERT_EQ(coder.decodeDouble("x"), value); });
    }
}

TEST(JsonKeyedArchive, WritesFloatsAsTheTextThatReadsBackToTheSameFloat) {
    std::mt19937 random(seed);
    for (int i = 0; i < 4000; ++i) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(value)) {
            continue;
        }
        const std::string text =
            archived([&](KeyedArchiver& coder) { coder.encodeFloat(value, "x"); });
        ASSERT_LE(fieldText(text).size(), 15) << fieldText(text);
        read(text, [&](const KeyedUnarchiver& coder) {
            ASSERT_EQ(coder.decodeFloat("x"), value) << "seed " << seed;
        });
    }
}

TEST(JsonKeyedArchive, HoldsNumbersThatAreNotFinite) {
    const std::string text = archived([](KeyedArchiver& coder) {
        coder.encodeDouble(infinity, "a");
        coder.encodeFloat(-std::numeric_limits<float>::infinity(), "b");
        coder.encodeNumber(std::nan(""), "c");
        coder.encodeDouble(-0.0, "d");
    });
    EXPECT_NE(text.find(R"("a": "inf")"), std::string::npos);
    read(text, [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeDouble("a"), infinity);
        EXPECT_EQ(coder.decodeFloat("b"), -std::numeric_limits<float>::infinity());
        EXPECT_TRUE(std::isnan(coder.decodeNumber("c").value_or(0)));
        EXPECT_TRUE(std::signbit(coder.decodeDouble("d")));
    });
}

// --- values that are something else

TEST(JsonKeyedUnarchiver, AnswersNothingForAbsentKeys) {
    const auto result = read(document(R"({"class":"Probe"})"), [](const KeyedUnarchiver& coder) {
        EXPECT_FALSE(coder.containsValueForKey("x"));
        EXPECT_FALSE(coder.decodeBool("x"));
        EXPECT_EQ(coder.decodeInt("x"), 0);
        EXPECT_EQ(coder.decodeFloat("x"), 0);
        EXPECT_EQ(coder.decodeDouble("x"), 0);
        EXPECT_TRUE(coder.decodeBytes("x").empty());
        EXPECT_EQ(coder.decodeString("x"), "");
        EXPECT_EQ(coder.decodeNumber("x"), std::nullopt);
        EXPECT_TRUE(coder.decodeDoubles("x").empty());
        EXPECT_EQ(coder.decodeObject("x"), nullptr);
        EXPECT_TRUE(coder.decodeObjects("x").empty());
    });
    EXPECT_TRUE(result.remarks.empty());
}

TEST(JsonKeyedUnarchiver, AnswersNothingForOtherTypesAndSaysSo) {
    for (const char* value : {"true", "12.5", "\"text\"", "null", "[1,2]", "[true]",
                              R"({"class":"Probe"})", R"({"class":7})", "{}"}) {
        const std::string text = withFields(std::string(R"("x":)") + value);
        read(text, [](const KeyedUnarchiver& coder) {
            if (!coder.containsValueForKey("x")) {
                return;
            }
            coder.decodeBool("x");
            coder.decodeInt("x");
            coder.decodeFloat("x");
            coder.decodeDouble("x");
            coder.decodeBytes("x");
            coder.decodeString("x");
            coder.decodeNumber("x");
            coder.decodeDoubles("x");
            coder.decodeObject("x");
            coder.decodeObjects("x");
        });
    }
    const auto result = read(withFields(R"("a":1,"b":"1","c":[1,"2"],"d":null,"e":{"class":"X"})"),
                             [](const KeyedUnarchiver& coder) {
                                 EXPECT_FALSE(coder.decodeBool("a"));
                                 EXPECT_EQ(coder.decodeString("a"), "");
                                 EXPECT_EQ(coder.decodeDouble("b"), 0);
                                 EXPECT_EQ(coder.decodeInt("b"), 0);
                                 EXPECT_TRUE(coder.decodeBytes("b").empty());
                                 EXPECT_TRUE(coder.decodeDoubles("c").empty());
                                 EXPECT_EQ(coder.decodeFloat("d"), 0);
                                 EXPECT_EQ(coder.decodeObject("e"), nullptr);
                                 EXPECT_TRUE(coder.decodeObjects("e").empty());
                             });
    EXPECT_EQ(result.remarks,
              (std::vector<std::string>{
                  "/root/a: not a boolean", "/root/a: not a text", "/root/b: not a number",
                  "/root/b: not a 32-bit integer", "/root/b: not bytes in base64",
                  "/root/c: not a list of numbers", "/root/d: not a single-precision number",
                  "/root/e: of the unknown class \"X\"", "/root/e: not a list of objects"}));
}

TEST(JsonKeyedUnarchiver, AnswersNothingForNumbersOutOfRange) {
    const std::string text = withFields(
        R"("big":2147483648,"small":-2147483649,"half":1.5,"whole":7.0,"most":2147483647,)"
        R"("wide":1e39,"huge":123456789012345678901234567890)");
    read(text, [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeInt("big"), 0);
        EXPECT_EQ(coder.decodeInt("small"), 0);
        EXPECT_EQ(coder.decodeInt("half"), 0);
        EXPECT_EQ(coder.decodeInt("whole"), 7);
        EXPECT_EQ(coder.decodeInt("most"), 2147483647);
        EXPECT_EQ(coder.decodeInt("huge"), 0);
        EXPECT_EQ(coder.decodeFloat("wide"), 0);
        EXPECT_EQ(coder.decodeDouble("wide"), 1e39);
        EXPECT_EQ(coder.decodeDouble("huge"), 123456789012345678901234567890.0);
    });
}

TEST(JsonKeyedUnarchiver, MakesOnlyTheClassesItWasGiven) {
    const std::string text = JsonKeyedArchiver::archivedText(Color::cyanColor().get());
    const auto result = JsonKeyedUnarchiver::unarchivedObject(text, ArchiveClasses());
    EXPECT_EQ(result.object, nullptr);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.remarks, std::vector<std::string>{"/root: of the unknown class \"Color\""});
}

TEST(JsonKeyedUnarchiver, SaysWhenAClassRefusesItsFields) {
    const auto result = JsonKeyedUnarchiver::unarchivedObject(
        document(R"({"class":"Color","colorSpace":"deviceRGB","components":[1],"alpha":1})"),
        ArchiveClasses::platformClasses());
    EXPECT_EQ(result.object, nullptr);
    EXPECT_EQ(result.remarks, std::vector<std::string>{"/root: no Color"});
}

TEST(JsonKeyedUnarchiver, MakesAShadowWithItsColor) {
    Shadow shadow;
    shadow.offset = {3.5, 1.5};
    shadow.blurRadius = 2;
    shadow.color = Color::colorWithName("navy");
    const auto result = JsonKeyedUnarchiver::unarchivedObject(
        JsonKeyedArchiver::archivedText(&shadow), ArchiveClasses::platformClasses());
    const auto* back = dynamic_cast<const Shadow*>(result.object.get());
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->offset.width, 3.5);
    EXPECT_EQ(back->offset.height, 1.5);
    EXPECT_EQ(back->blurRadius, 2);
    EXPECT_TRUE(isEqualToColor(back->color, shadow.color));
}

TEST(JsonKeyedUnarchiver, KeepsAThousandRemarksAtMost) {
    std::string list = "[1";
    for (int i = 0; i < 3000; ++i) {
        list += ",1";
    }
    const auto result = read(withFields("\"x\":" + list + "]"),
                             [](const KeyedUnarchiver& coder) { coder.decodeObjects("x"); });
    EXPECT_EQ(result.remarks.size(), 1000);
}

// --- texts that are none

TEST(JsonKeyedUnarchiver, SaysWhereATextIsNoJSON) {
    EXPECT_EQ(errorOf("{\n \"a\": x}"),
              "line 2, column 7: syntax error while parsing value - invalid literal");
    EXPECT_EQ(errorOf(document("null") + " x"),
              "line 1, column 55: syntax error while parsing value - invalid literal");
    EXPECT_EQ(errorOf(document("null") + " {}"),
              "line 1, column 55: syntax error while parsing value - unexpected '{'; expected end "
              "of input");
    EXPECT_EQ(errorOf("{\"a\":1,\n\"b\":2,\n\"a\":3}"),
              "line 3, column 3: a key that the object has already");
    EXPECT_EQ(errorOf("[\"\xff\"]"),
              "line 1, column 3: syntax error while parsing value - invalid string: ill-formed "
              "UTF-8 byte");
    EXPECT_EQ(errorOf("[1e999]"), "line 1, column 7: number overflow parsing '1e999'");
    EXPECT_TRUE(errorOf("").starts_with("line 1, column 1: "));
}

std::string nested(int depth) {
    return std::string(static_cast<std::size_t>(depth), '[') +
           std::string(static_cast<std::size_t>(depth), ']');
}

TEST(JsonKeyedUnarchiver, RefusesTextThatIsTooDeepOrTooLong) {
    EXPECT_EQ(errorOf(nested(64)), "no mezalith archive");
    EXPECT_EQ(errorOf(nested(65)), "line 1, column 65: nested deeper than 64");
    EXPECT_EQ(errorOf(nested(1000000)), "line 1, column 65: nested deeper than 64");
    const std::string longText = document("null") + std::string(4 * 1024 * 1024, ' ');
    EXPECT_EQ(errorOf(longText), "longer than 4194304 bytes");
    EXPECT_EQ(errorOf(longText.substr(0, 4 * 1024 * 1024)), "");
}

TEST(JsonKeyedUnarchiver, RefusesOtherFormatsAndVersions) {
    EXPECT_EQ(errorOf("{}"), "no mezalith archive");
    EXPECT_EQ(errorOf("null"), "no mezalith archive");
    EXPECT_EQ(errorOf(R"({"format":"another","version":1,"root":null})"), "no mezalith archive");
    EXPECT_EQ(errorOf(R"({"format":7,"version":1,"root":null})"), "no mezalith archive");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":2,"root":null})"),
              "an archive of another version than 1");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","root":null})"),
              "an archive of another version than 1");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":1})"),
              "an archive without \"root\"");
}

/// A chain of objects, each within the one before.
class Chain final : public Archivable {
  public:
    explicit Chain(int length) : length_(length) {}
    std::string_view archiveClassName() const override { return "Chain"; }
    void encodeWithCoder(KeyedArchiver& coder) const override {
        const Chain next(length_ - 1);
        const std::array<const Archivable*, 1> members{length_ > 0 ? &next : nullptr};
        coder.encodeObjects(members, "next");
        coder.encodeDoubles(std::array{1.0}, "numbers");
    }

  private:
    int length_;
};

TEST(JsonKeyedArchive, CanAlwaysBeReadAgain) {
    int deepest = 0;
    ArchiveClasses classes;
    classes.add("Chain", [&](const KeyedUnarchiver& coder) {
        ++deepest;
        EXPECT_EQ(coder.decodeDoubles("numbers"), std::vector<double>{1});
        coder.decodeObjects("next");
        return std::make_shared<const Chain>(0);
    });
    const Chain chain(1000);
    const auto result =
        JsonKeyedUnarchiver::unarchivedObject(JsonKeyedArchiver::archivedText(&chain), classes);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(deepest, 31);
}

// --- what others made

/// Asks everything of an object whose class it does not know.
void askEverything(const KeyedUnarchiver& coder, int depth) {
    for (const char* key : {"name", "rules", "symbolizers", "strokeColor", "lineDash", "filter",
                            "lineDashCount", "strokeWidth", "isDashed", "minScaleDenominator"}) {
        coder.decodeBool(key);
        coder.decodeInt(key);
        coder.decodeFloat(key);
        coder.decodeDouble(key);
        coder.decodeBytes(key);
        coder.decodeString(key);
        coder.decodeNumber(key);
        coder.decodeDoubles(key);
        if (depth < 4) {
            coder.decodeObject(key);
            coder.decodeObjects(key);
        }
    }
}

std::string fileText(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(JsonKeyedUnarchiver, SurvivesTheMalformedArchives) {
    int depth = 0;
    ArchiveClasses classes = ArchiveClasses::platformClasses();
    for (const char* name : {"MzStyle", "MzRule", "MzLineSymbolizer", "MzPolygonSymbolizer"}) {
        classes.add(name, [&](const KeyedUnarchiver& coder) {
            ++depth;
            askEverything(coder, depth);
            --depth;
            return std::make_shared<const Probe>();
        });
    }
    int count = 0;
    const std::filesystem::path folder(MEZALITH_SOURCE_DIR "/tests/data/bad/archive");
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string text = fileText(entry.path());
        ++count;
        // Their layout is older than ours: each is refused as it is.
        EXPECT_NE(JsonKeyedUnarchiver::unarchivedObject(text, classes).error, "") << entry.path();
        JsonKeyedUnarchiver::unarchivedObject(document(text), classes);
    }
    EXPECT_GT(count, 30);
}

TEST(JsonKeyedUnarchiver, SurvivesDamagedText) {
    const auto color = Color::colorWithDeviceRed(0.5, 0.25, 1, 1);
    const std::string good = archived([&](KeyedArchiver& coder) {
        coder.encodeObject(color.get(), "strokeColor");
        coder.encodeBytes(std::as_bytes(std::span("lineDash")), "lineDash");
        coder.encodeDoubles(std::array{1.5, 2.5}, "strokeWidth");
        coder.encodeString("\xc3\xb8\xe2\x82\xac\n", "name");
    });
    const ArchiveClasses classes =
        classesWithProbe([](const KeyedUnarchiver& coder) { askEverything(coder, 0); });
    for (std::size_t length = 0; length < good.size() - 1; ++length) {
        EXPECT_NE(JsonKeyedUnarchiver::unarchivedObject(good.substr(0, length), classes).error, "")
            << length;
    }
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        std::string text = good;
        for (int change = 0; change < 3; ++change) {
            text[random() % text.size()] = static_cast<char>(random() & 255);
        }
        JsonKeyedUnarchiver::unarchivedObject(text, classes);
    }
}

}  // namespace
}  // namespace mezalith::platform
