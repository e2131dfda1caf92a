// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/json/archive_probe.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>

#include <array>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::archivedProbe;
using testing::Ask;
using testing::classesWithProbe;
using testing::documentOf;
using testing::probeDocument;

constexpr unsigned seed = 8259;

std::string errorOf(const std::string& text, const Ask& ask = {}) {
    const auto result = unarchivedText(text, classesWithProbe(ask));
    EXPECT_EQ(result.object, nullptr);
    return result.error;
}

/// The error of a probe with this value under "x", without its position.
std::string complaintOf(const std::string& value, const Ask& ask) {
    const std::string error = errorOf(probeDocument(R"("x":)" + value), ask);
    const std::string place = "/root/x: ";
    const std::size_t at = error.find(place);
    return at == std::string::npos ? error : error.substr(at + place.size());
}

// --- texts that are no archive

TEST(KeyedArchiveErrors, SayWhereATextIsNoJSON) {
    EXPECT_EQ(errorOf("{\n \"a\": x}"), "line 2, column 7: invalid literal");
    EXPECT_EQ(errorOf(documentOf("null") + " x"), "line 1, column 55: invalid literal");
    EXPECT_EQ(errorOf(documentOf("null") + " {}"),
              "line 1, column 55: unexpected '{'; expected end of input");
    EXPECT_EQ(errorOf("[\"\xff\"]"), "line 1, column 3: invalid string: ill-formed UTF-8 byte");
    EXPECT_EQ(errorOf("[1e999]"), "line 1, column 7: number overflow parsing '1e999'");
    EXPECT_EQ(errorOf(""),
              "line 1, column 1: unexpected end of input; expected '[', '{', or a literal");
}

TEST(KeyedArchiveErrors, CountColumnsInCharacters) {
    EXPECT_EQ(errorOf("{\"\xc3\xb8\xe2\x82\xac\": x}"), "line 1, column 8: invalid literal");
}

TEST(KeyedArchiveErrors, NameKeysThatStandThereTwice) {
    EXPECT_EQ(errorOf("{\"a\":1,\n\"b\":2,\n  \"a\":3}"), "line 3, column 3: a second key \"a\"");
    EXPECT_EQ(errorOf("{\"a\":1,\"\\u0061\":3}"), "line 1, column 8: a second key \"a\"");
}

std::string nested(int depth) {
    return std::string(static_cast<std::size_t>(depth), '[') +
           std::string(static_cast<std::size_t>(depth), ']');
}

TEST(KeyedArchiveErrors, RefuseTextThatIsTooDeepTooLongOrTooMuch) {
    EXPECT_EQ(errorOf(nested(128)), "line 1, column 1: no mezalith archive");
    EXPECT_EQ(errorOf(nested(129)), "line 1, column 129: nested deeper than 128");
    EXPECT_EQ(errorOf(nested(1000000)), "line 1, column 129: nested deeper than 128");
    const std::string longText = documentOf("null") + std::string(4 * 1024 * 1024, ' ');
    EXPECT_EQ(errorOf(longText), "line 1, column 4194305: longer than 4194304 bytes");
    EXPECT_EQ(errorOf(longText.substr(0, 4 * 1024 * 1024)), "");
    std::string list = "[";
    for (int i = 0; i < 300000; ++i) list += "0,";
    EXPECT_EQ(errorOf(list + "0]"), "line 1, column 524288: more than 262144 values");
}

TEST(KeyedArchiveErrors, RefuseOtherFormatsAndVersions) {
    EXPECT_EQ(errorOf("{}"), "line 1, column 1: no mezalith archive");
    EXPECT_EQ(errorOf(" null"), "line 1, column 2: no mezalith archive");
    EXPECT_EQ(errorOf(R"({"format":"another","version":1,"root":null})"),
              "line 1, column 1: no mezalith archive");
    EXPECT_EQ(errorOf(R"({"format":7,"version":1,"root":null})"),
              "line 1, column 1: no mezalith archive");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":2,"root":null})"),
              "line 1, column 40: an archive of another version than 1");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":"1","root":null})"),
              "line 1, column 40: an archive of another version than 1");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","root":null})"),
              "line 1, column 1: an archive of another version than 1");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":1})"),
              "line 1, column 1: an archive without \"root\"");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":1,"rot":1,"root":null})"),
              "line 1, column 42: unknown key \"rot\", did you mean \"root\"?");
}

// --- objects

TEST(KeyedArchiveErrors, NameUnknownClassesAndTheNearestKnownOne) {
    EXPECT_EQ(errorOf(documentOf(R"({"class":"Colour"})")),
              "line 1, column 58: /root/class: unknown class \"Colour\", did you mean \"Color\"?");
    EXPECT_EQ(errorOf(documentOf(R"({"class":"Nothing"})")),
              "line 1, column 58: /root/class: unknown class \"Nothing\"");
    EXPECT_EQ(errorOf(documentOf(R"({"class":7})")),
              "line 1, column 58: /root/class: the number 7, not a text");
    EXPECT_EQ(errorOf(documentOf(R"({"space":"named"})")),
              "line 1, column 49: /root: an object without \"class\"");
    EXPECT_EQ(errorOf(documentOf("[]")), "line 1, column 49: /root: a list, not an object");
    EXPECT_EQ(errorOf(documentOf("\"red\"")), "line 1, column 49: /root: a text, not an object");
}

TEST(KeyedArchiveErrors, NameUnknownKeysAndTheNearestOneAskedFor) {
    const auto ask = [](const KeyedUnarchiver& coder) {
        coder.decodeDouble("strokeWidth");
        coder.containsValueForKey("strokeColor");
    };
    EXPECT_EQ(errorOf(probeDocument("\n\"strokeWith\":1"), ask),
              "line 2, column 1: /root: unknown key \"strokeWith\", did you mean \"strokeWidth\"?");
    EXPECT_EQ(errorOf(probeDocument("\n\"strokeWidth\":1,\"strokeColour\":2"), ask),
              "line 2, column 17: /root: unknown key \"strokeColour\", did you mean "
              "\"strokeColor\"?");
    EXPECT_EQ(errorOf(probeDocument("\"strokeWidth\":1,\"fill\":2"), ask),
              "line 1, column 82: /root: unknown key \"fill\"");
}

TEST(KeyedArchiveErrors, NameKeysThatAreMissing) {
    const auto ask = [](const KeyedUnarchiver& coder) {
        coder.decodeDouble("spare");
        coder.decodeDouble("strokeWidth");
        coder.decodeDouble("strokeOpacity");
    };
    EXPECT_EQ(errorOf(documentOf(R"({"class":"Probe"})"), ask),
              "line 1, column 49: /root: Probe without \"strokeWidth\"");
}

TEST(KeyedArchiveErrors, SayWhenAClassRefusesItsFields) {
    const auto colorError = [](const std::string& fields) {
        return errorOf(documentOf(R"({"class":"Color",)" + fields + "}"));
    };
    EXPECT_EQ(colorError(R"("space":"deviceRGB","components":[1])"),
              "line 1, column 99: /root/components: 1 components where deviceRGB has 3");
    EXPECT_EQ(colorError(R"("space":"deviceRBG","components":[1])"),
              "line 1, column 74: /root/space: unknown colour space \"deviceRBG\", did you mean "
              "\"deviceRGB\"?");
    EXPECT_EQ(colorError(R"("space":"named","name":"red","alpha":null)"),
              "line 1, column 103: /root/alpha: null, not a number");
    EXPECT_EQ(colorError(R"("space":"named","components":[1])"),
              "line 1, column 82: /root: unknown key \"components\"");
    EXPECT_EQ(colorError(R"("space":"calibratedWhite")"),
              "line 1, column 49: /root: Color without \"components\"");
    ArchiveClasses classes;
    classes.add("Probe", [](const KeyedUnarchiver&) { return nullptr; });
    EXPECT_EQ(unarchivedText(documentOf(R"({"class":"Probe"})"), classes).error,
              "line 1, column 49: /root: no Probe");
}

TEST(KeyedArchiveErrors, SayWhenTheRootIsOfAnotherClass) {
    const auto wanting = [](const std::string& root) {
        return unarchivedText(documentOf(root), classesWithProbe({}), "Probe").error;
    };
    EXPECT_EQ(wanting(R"({"class":"Color"})"), "line 1, column 58: /root/class: Color, not Probe");
    EXPECT_EQ(wanting("null"), "line 1, column 49: /root: null, not Probe");
    EXPECT_EQ(wanting("[]"), "line 1, column 49: /root: a list, not an object");
    EXPECT_EQ(wanting(R"({"class":"Prob"})"),
              "line 1, column 58: /root/class: unknown class \"Prob\", did you mean \"Probe\"?");
}

TEST(KeyedArchiveErrors, SayWhenAnObjectIsOfAnotherClass) {
    const auto ask = [](const KeyedUnarchiver& coder) {
        if (coder.containsValueForKey("x")) decodedObject<Color>(coder, "Color", "x");
    };
    EXPECT_EQ(complaintOf(R"({"class":"Probe"})", ask), "Probe, not Color");
    EXPECT_EQ(complaintOf("\"reddish\"", ask), "a text, not a colour such as \"#rrggbbaa\"");
    EXPECT_EQ(complaintOf("7", ask), "the number 7, not an object");
}

// --- values

TEST(KeyedArchiveErrors, SayWhatAValueIsAndWhatIsWanted) {
    const auto asking = [](auto decode) {
        return [decode](const KeyedUnarchiver& coder) { (coder.*decode)("x"); };
    };
    EXPECT_EQ(complaintOf("1", asking(&KeyedUnarchiver::decodeBool)),
              "the number 1, not a boolean");
    EXPECT_EQ(complaintOf("1.5", asking(&KeyedUnarchiver::decodeInt)),
              "the number 1.5, not a 32-bit integer");
    EXPECT_EQ(complaintOf("2147483648", asking(&KeyedUnarchiver::decodeInt)),
              "the number 2147483648, not a 32-bit integer");
    EXPECT_EQ(complaintOf("-2147483649", asking(&KeyedUnarchiver::decodeInt)),
              "the number -2147483649, not a 32-bit integer");
    EXPECT_EQ(complaintOf("99999999999999999999", asking(&KeyedUnarchiver::decodeInt)),
              "the number 1e+20, not a 32-bit integer");
    EXPECT_EQ(complaintOf("1e39", asking(&KeyedUnarchiver::decodeFloat)),
              "the number 1e+39, not a single-precision number");
    EXPECT_EQ(complaintOf("\"1\"", asking(&KeyedUnarchiver::decodeDouble)), "a text, not a number");
    EXPECT_EQ(complaintOf("null", asking(&KeyedUnarchiver::decodeDouble)), "null, not a number");
    EXPECT_EQ(complaintOf("{}", asking(&KeyedUnarchiver::decodeNumber)),
              "an object, not a number or null");
    EXPECT_EQ(complaintOf("[1]", asking(&KeyedUnarchiver::decodeString)), "a list, not a text");
    EXPECT_EQ(complaintOf("[1,\"2\"]", asking(&KeyedUnarchiver::decodeDoubles)),
              "a list, not a list of numbers");
    EXPECT_EQ(complaintOf("true", asking(&KeyedUnarchiver::decodeObject)),
              "a boolean, not an object");
    EXPECT_EQ(complaintOf("{}", asking(&KeyedUnarchiver::decodeObjects)),
              "an object, not a list of objects");
}

TEST(KeyedArchiveErrors, RefuseBytesThatAreNoneOrDisagree) {
    const auto ask = [](const KeyedUnarchiver& coder) { coder.decodeBytes("x"); };
    const std::string wanted = ", not bytes in base64 or a list of numbers";
    EXPECT_EQ(complaintOf("\"@@@@\"", ask), "a text" + wanted);
    EXPECT_EQ(complaintOf("[\"a\"]", ask), "a list" + wanted);
    EXPECT_EQ(complaintOf("7", ask), "the number 7" + wanted);
    for (const char* object :
         {"{}", R"({"doubles":[4,2]})", R"({"doubles":[4],"bytes":"AAAAAAAAEEAAAAAAAAAAQA=="})",
          R"({"doubles":[4,3],"bytes":"AAAAAAAAEEAAAAAAAAAAQA=="})",
          R"({"doubles":[4,2],"bytes":"AAAAAAAAEEAAAAAAAAAAQA==","count":2})",
          R"({"doubles":[4,2],"bytes":"AAAA"})", R"({"doubles":[4,2],"bytes":7})"}) {
        EXPECT_EQ(complaintOf(object, ask), "no \"doubles\" with the same as \"bytes\"") << object;
    }
}

TEST(KeyedArchiveErrors, AreTheFirstOnes) {
    const auto ask = [](const KeyedUnarchiver& coder) {
        coder.decodeBool("a");
        coder.decodeBool("b");
        coder.failWithError("no good", "b");
    };
    EXPECT_EQ(errorOf(probeDocument(R"("a":true,"b":1,"c":2)"), ask),
              "line 1, column 79: /root/b: the number 1, not a boolean");
}

TEST(KeyedArchiveErrors, AreFoundBehindOtherValues) {
    const auto ask = [](const KeyedUnarchiver& coder) {
        for (const char* key : {"a", "b", "c"}) coder.containsValueForKey(key);
        coder.decodeInt("d");
    };
    EXPECT_EQ(
        errorOf(probeDocument("\"a\":{\"x\":{}} ,\"b\":[[],[1.5]]\t,\"c\":-2e0 ,\n \"d\":\"\""),
                ask),
        "line 2, column 6: /root/d: a text, not a 32-bit integer");
    EXPECT_EQ(errorOf(probeDocument(R"("a":{"x":{}},"b":[[{}],[1]],"e":7)"), ask),
              "line 1, column 94: /root: unknown key \"e\"");
}

TEST(KeyedArchiveErrors, CanBeAClassesOwn) {
    const auto ask = [](const KeyedUnarchiver& coder) {
        coder.decodeInt("a");
        coder.failWithError("of no value", "absent");
        coder.failWithErrorAtIndex("of no value", "list", 7);
        coder.failWithErrorAtIndex("of no value", "list", 1);
    };
    EXPECT_EQ(errorOf(probeDocument(R"("a":3,"list":[1,2])"), ask),
              "line 1, column 82: /root/list/1: of no value");
}

TEST(KeyedArchiveErrors, ShowPlacesAsPointers) {
    const auto ask = [](const KeyedUnarchiver& coder) { coder.decodeInt("a/b~c"); };
    EXPECT_EQ(errorOf(probeDocument(R"("a/b~c":"")"), ask),
              "line 1, column 74: /root/a~1b~0c: a text, not a 32-bit integer");
}

// --- damage

/// Asks everything of an object whose class it does not know.
void askEverything(const KeyedUnarchiver& coder, int depth) {
    for (const char* key : {"name", "strokeColor", "lineDash", "strokeWidth"}) {
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

TEST(KeyedArchiveErrors, ComeOfEveryCut) {
    const auto color = Color::colorWithDeviceRed(0.5, 0.25, 1, 1);
    const std::string good = archivedProbe([&](KeyedArchiver& coder) {
        coder.encodeObject(color.get(), "strokeColor");
        coder.encodeBytesOfDoubles(std::array{4.0, 2.0}, "lineDash");
        coder.encodeDoubles(std::array{1.5, 2.5}, "strokeWidth");
        coder.encodeString("\xc3\xb8\xe2\x82\xac\n", "name");
    });
    const ArchiveClasses classes =
        classesWithProbe([](const KeyedUnarchiver& coder) { askEverything(coder, 0); });
    for (std::size_t length = 0; length < good.size() - 1; ++length) {
        EXPECT_NE(unarchivedText(good.substr(0, length), classes).error, "") << length;
    }
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        std::string text = good;
        for (int change = 0; change < 3; ++change) {
            text[random() % text.size()] = static_cast<char>(random() & 255);
        }
        const auto result = unarchivedText(text, classes);
        EXPECT_EQ(result.error.find('\n'), std::string::npos) << "seed " << seed;
        EXPECT_TRUE(result.error.empty() || result.object == nullptr);
    }
}

}  // namespace
}  // namespace mezalith::platform
