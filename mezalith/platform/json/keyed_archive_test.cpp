// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/json/archive_probe.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/platform/number_text.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::archivedProbe;
using testing::Ask;
using testing::classesWithProbe;
using testing::documentOf;
using testing::Probe;
using testing::probeDocument;

constexpr unsigned seed = 8259;
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Reads an archive whose root is a probe, with no error.
void read(const std::string& text, const Ask& ask) {
    bool isAsked = false;
    const auto result = unarchivedText(text, classesWithProbe([&](const KeyedUnarchiver& coder) {
                                           isAsked = true;
                                           ask(coder);
                                       }));
    EXPECT_TRUE(isAsked) << text;
    EXPECT_EQ(result.error, "");
    EXPECT_NE(result.object, nullptr);
}

// --- text

TEST(KeyedArchiveText, IsTextForPeopleInTheOrderWritten) {
    const auto color = Color::cyanColor();
    const auto ink = Color::colorWithDeviceRed(0, 0.5, 1, 1);
    const Probe inner;
    const std::string text = archivedProbe([&](KeyedArchiver& coder) {
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
        coder.encodeBytesOfDoubles(std::array{4.0, 2.0}, "dash");
        coder.encodeBytesOfDoubles({}, "noDash");
        coder.encodeObject(color.get(), "color");
        coder.encodeObject(ink.get(), "ink");
        coder.encodeObject(nullptr, "none");
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
  "dash": {
   "doubles": [4, 2],
   "bytes": "AAAAAAAAEEAAAAAAAAAAQA=="
  },
  "noDash": [],
  "color": "#00ffffff",
  "ink": {
   "class": "Color",
   "space": "deviceRGB",
   "components": [0, 0.5, 1],
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

TEST(KeyedArchiveText, OfNothingHoldsNull) {
    const auto result = unarchivedText(archivedText(nullptr), {});
    EXPECT_EQ(result.object, nullptr);
    EXPECT_EQ(result.error, "");
}

TEST(KeyedArchiveText, KeepsTheLaterOfTwoValues) {
    const std::string text = archivedProbe([](KeyedArchiver& coder) {
        coder.encodeInt(1, "a");
        coder.encodeInt(2, "b");
        coder.encodeInt(3, "a");
    });
    read(text, [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeInt("a"), 3);
        EXPECT_EQ(coder.decodeInt("b"), 2);
    });
}

TEST(KeyedArchiveText, KeepsItsOwnKeysForItself) {
    const std::string text = archivedProbe([](KeyedArchiver& coder) {
        for (const char* key : {"class", "id", "ref"}) coder.encodeString("Color", key);
    });
    read(text, [](const KeyedUnarchiver& coder) {
        for (const char* key : {"class", "id", "ref"}) {
            EXPECT_FALSE(coder.containsValueForKey(key));
            EXPECT_EQ(coder.decodeString(key), "");
        }
    });
}

TEST(KeyedArchiveText, MendsTextThatIsNotUTF8) {
    const std::string text = archivedProbe([](KeyedArchiver& coder) {
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

TEST(KeyedArchiveText, ReadsNumbersOfEitherForm) {
    read(probeDocument(R"("whole":7.0,"most":2147483647,"least":-2147483648,"huge":1e300)"),
         [](const KeyedUnarchiver& coder) {
             EXPECT_EQ(coder.decodeInt("whole"), 7);
             EXPECT_EQ(coder.decodeInt("most"), 2147483647);
             EXPECT_EQ(coder.decodeFloat("most"), 2147483647.0F);
             EXPECT_EQ(coder.decodeNumber("least"), -2147483648.0);
             EXPECT_EQ(coder.decodeDouble("huge"), 1e300);
         });
}

TEST(KeyedArchiveText, ReadsBytesOfDoublesInEachForm) {
    const std::vector<std::byte> bytes = [] {
        const std::array doubles{4.0, 2.0};
        const auto view = std::as_bytes(std::span(doubles));
        return std::vector<std::byte>(view.begin(), view.end());
    }();
    for (const char* form : {"[4,2]", R"("AAAAAAAAEEAAAAAAAAAAQA==")",
                             R"({"doubles":[4,2],"bytes":"AAAAAAAAEEAAAAAAAAAAQA=="})",
                             R"({"bytes":"AAAAAAAAEEAAAAAAAAAAQA==","doubles":[4.0,2e0]})"}) {
        read(probeDocument(std::string(R"("x":)") + form), [&](const KeyedUnarchiver& coder) {
            EXPECT_EQ(coder.decodeBytes("x"), bytes) << form;
        });
    }
}

TEST(KeyedArchiveText, KeepsNaNsInBytesOfDoubles) {
    const std::array doubles{0.0, std::nan("7")};
    const std::string text =
        archivedProbe([&](KeyedArchiver& coder) { coder.encodeBytesOfDoubles(doubles, "x"); });
    read(text, [&](const KeyedUnarchiver& coder) {
        const auto bytes = coder.decodeBytes("x");
        ASSERT_EQ(bytes.size(), 16);
        EXPECT_EQ(std::memcmp(bytes.data(), doubles.data(), 16), 0);
    });
}

TEST(KeyedArchiveText, ReadsColorsInEachForm) {
    for (const char* form :
         {R"("#f0f")", R"("fuchsia")", R"("#ff00ffff")",
          R"({"space":"calibratedRGB","components":[1,0,1]})",
          R"({"class":"Color","space":"deviceRGB","components":[1,0,1],"alpha":1})",
          R"({"space":"named","name":"Fuchsia","alpha":1})"}) {
        read(probeDocument(std::string(R"("x":)") + form), [&](const KeyedUnarchiver& coder) {
            const auto color = decodedObject<Color>(coder, "Color", "x").value_or(nullptr);
            ASSERT_NE(color, nullptr) << form;
            EXPECT_TRUE(color->isEqualToColor(Color::colorWithText("#f0f").get())) << form;
        });
    }
}

TEST(KeyedArchiveText, MayGoWithoutOptionalKeys) {
    read(documentOf(R"({"class":"Probe"})"), [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeInt("spare"), 0);
        EXPECT_EQ(coder.decodeObject("spare"), nullptr);
        EXPECT_FALSE(coder.containsValueForKey("another"));
    });
}

TEST(KeyedArchiveText, TakesTheWantedClassForARootWithoutOne) {
    const auto result = unarchivedText(documentOf(R"({"spare":1})"),
                                       classesWithProbe([](const KeyedUnarchiver& coder) {
                                           EXPECT_EQ(coder.decodeInt("spare"), 1);
                                       }),
                                       "Probe");
    EXPECT_EQ(result.error, "");
    EXPECT_NE(result.object, nullptr);
}

/// The text of the value under "x".
std::string fieldText(const std::string& text) {
    const std::string mark = "\"x\": ";
    const std::size_t begin = text.find(mark) + mark.size();
    return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(KeyedArchiveText, WritesDoublesAsTheirShortestText) {
    std::mt19937_64 random(seed);
    for (int i = 0; i < 2000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value) || value == 0) {
            continue;
        }
        const std::string text =
            archivedProbe([&](KeyedArchiver& coder) { coder.encodeDouble(value, "x"); });
        ASSERT_EQ(fieldText(text), shortestText(value)) << "seed " << seed;
        read(text,
             [&](const KeyedUnarchiver& coder) { ASSERT_EQ(coder.decodeDouble("x"), value); });
    }
}

TEST(KeyedArchiveText, WritesFloatsAsTheTextThatReadsBackToTheSameFloat) {
    std::mt19937 random(seed);
    for (int i = 0; i < 4000; ++i) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(value)) {
            continue;
        }
        const std::string text =
            archivedProbe([&](KeyedArchiver& coder) { coder.encodeFloat(value, "x"); });
        ASSERT_LE(fieldText(text).size(), 15) << fieldText(text);
        read(text, [&](const KeyedUnarchiver& coder) {
            ASSERT_EQ(coder.decodeFloat("x"), value) << "seed " << seed;
        });
    }
}

TEST(KeyedArchiveText, HoldsNumbersThatAreNotFinite) {
    const std::string text = archivedProbe([](KeyedArchiver& coder) {
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

}  // namespace
}  // namespace mezalith::platform
