// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/json/archive_probe.hpp>
#include <mezalith/platform/json/base64.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::Ask;
using testing::classesWithProbe;
using testing::Probe;

constexpr unsigned seed = 8949;
constexpr double infinity = std::numeric_limits<double>::infinity();

using Bytes = std::vector<std::byte>;

/// The bytes of hexadecimal digits, blanks left out.
Bytes fromHex(std::string_view digits) {
    Bytes bytes;
    std::string pair;
    for (const char c : digits) {
        if (c != ' ') pair += c;
        if (pair.size() == 2) {
            bytes.push_back(static_cast<std::byte>(std::stoi(pair, nullptr, 16)));
            pair.clear();
        }
    }
    return bytes;
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// A map of three: "format": "mezalith archive", "version": 1, "root": ...
const Bytes& frame() {
    static const Bytes kFrame = fromHex(
        "a3 66666f726d6174 706d657a616c6974682061726368697665 6776657273696f6e 01 64726f6f74");
    return kFrame;
}

/// "class": "Probe", the first of `count` fields.
Bytes probeWith(int count, std::string_view fields) {
    return frame() + Bytes{static_cast<std::byte>(0xa0 + count + 1)} +
           fromHex("65636c617373 6550726f6265") + fromHex(fields);
}

std::string errorOf(const Bytes& bytes, const Ask& ask = {}) {
    const auto result = unarchivedBytes(bytes, classesWithProbe(ask));
    EXPECT_TRUE(result.error.empty() || result.object == nullptr);
    return result.error;
}

/// Reads a probe whose one field "x" is encoded so.
void read(std::string_view value, const Ask& ask) {
    EXPECT_EQ(errorOf(probeWith(1, "6178" + std::string(value)), ask), "") << value;
}

TEST(KeyedArchiveBytes, HaveTheFormOfTheirStandard) {
    const auto color = Color::cyanColor();
    const Probe probe([&](KeyedArchiver& coder) {
        coder.encodeBool(true, "a");
        coder.encodeInt(-7, "b");
        coder.encodeInt(1000000, "c");
        coder.encodeDouble(0.1, "d");
        coder.encodeFloat(0.5F, "e");
        coder.encodeNumber(std::nullopt, "f");
        coder.encodeBytes(std::as_bytes(std::span("foo", 3)), "g");
        coder.encodeString("\xc3\xb8", "h");
        coder.encodeObject(color.get(), "i");
        coder.encodeBytesOfDoubles(std::array{4.0}, "j");
    });
    EXPECT_EQ(archivedBytes(&probe),
              frame() + fromHex("ab 65636c617373 6550726f6265 6161 f5 6162 26 6163 1a000f4240"
                                "6164 fb3fb999999999999a 6165 fa3f000000 6166 f6 6167 43666f6f"
                                "6168 62c3b8 6169 69233030666666666666"
                                "616a a2 67646f75626c6573 81 fa40800000"
                                "656279746573 48 0000000000001040"));
}

TEST(KeyedArchiveBytes, GiveBackWhatWasWritten) {
    std::mt19937_64 random(seed);
    for (int i = 0; i < 500; ++i) {
        const auto number = std::bit_cast<double>(random());
        const auto single = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        const auto integer = static_cast<std::int32_t>(random());
        const std::string text(random() % 300, 't');
        const Bytes blob(random() % (i % 20 == 0 ? 70000 : 300), std::byte{7});
        const Probe probe([&](KeyedArchiver& coder) {
            coder.encodeDouble(number, "number");
            coder.encodeFloat(single, "single");
            coder.encodeInt(integer, "integer");
            coder.encodeString(text, "text");
            coder.encodeBytes(blob, "blob");
        });
        const auto ask = [&](const KeyedUnarchiver& coder) {
            const double back = coder.decodeDouble("number");
            EXPECT_TRUE(back == number || (std::isnan(back) && std::isnan(number)));
            const float singleBack = coder.decodeFloat("single");
            EXPECT_TRUE(singleBack == single || (std::isnan(singleBack) && std::isnan(single)));
            EXPECT_EQ(coder.decodeInt("integer"), integer);
            EXPECT_EQ(coder.decodeString("text"), text);
            EXPECT_EQ(coder.decodeBytes("blob"), blob);
        };
        ASSERT_EQ(errorOf(archivedBytes(&probe), ask), "") << "seed " << seed << ' ' << i;
    }
}

TEST(KeyedArchiveBytes, HoldWhatTextHolds) {
    const Probe inner;
    const auto color = Color::colorWithDeviceCyan(0.1, 0.2, 0.3, 0.4, 0.5);
    const Probe probe([&](KeyedArchiver& coder) {
        coder.encodeDoubles(std::array{0.1, -0.0, infinity, 1e300}, "doubles");
        coder.encodeObject(color.get(), "color");
        coder.encodeObjects(std::array<const Archivable*, 2>{&inner, nullptr}, "list");
    });
    const auto ask = [](const KeyedUnarchiver& coder) {
        if (!coder.containsValueForKey("doubles")) return;
        EXPECT_EQ(coder.decodeDoubles("doubles"),
                  (std::vector<double>{0.1, -0.0, infinity, 1e300}));
        EXPECT_TRUE(std::signbit(coder.decodeDoubles("doubles")[1]));
        EXPECT_NE(coder.decodeObject("color"), nullptr);
        EXPECT_EQ(coder.decodeObjects("list").size(), 2);
    };
    EXPECT_EQ(errorOf(archivedBytes(&probe), ask), "");
    EXPECT_LT(archivedBytes(&probe).size(), archivedText(&probe).size());
}

TEST(KeyedArchiveBytes, AreTheSameForEveryNaN) {
    const auto bytesOf = [](double number) {
        const Probe probe([&](KeyedArchiver& coder) { coder.encodeDouble(number, "number"); });
        return archivedBytes(&probe);
    };
    const auto wanted = bytesOf(std::nan(""));
    EXPECT_EQ(bytesOf(std::bit_cast<double>(0xffff6080'00198df4U)), wanted);
    EXPECT_EQ(bytesOf(-std::nan("7")), wanted);
}

// RFC 8949, appendix A.
TEST(KeyedArchiveBytes, ReadNumbersOfEachForm) {
    for (const auto& [hex, wanted] : {std::pair{"00", 0.0},
                                      {"17", 23.0},
                                      {"1818", 24.0},
                                      {"1903e8", 1000.0},
                                      {"1b000000e8d4a51000", 1e12},
                                      {"1bffffffffffffffff", 18446744073709551615.0},
                                      {"20", -1.0},
                                      {"3863", -100.0},
                                      {"3bffffffffffffffff", -18446744073709551616.0},
                                      {"f90000", 0.0},
                                      {"f93c00", 1.0},
                                      {"f93e00", 1.5},
                                      {"f97bff", 65504.0},
                                      {"f90001", 5.960464477539063e-8},
                                      {"f90400", 6.103515625e-5},
                                      {"f9c400", -4.0},
                                      {"fa47c35000", 1e5},
                                      {"fa7f7fffff", 3.4028234663852886e38},
                                      {"fb3ff199999999999a", 1.1},
                                      {"f97c00", infinity},
                                      {"f9fc00", -infinity},
                                      {"fa7f800000", infinity},
                                      {"fbfff0000000000000", -infinity}}) {
        read(hex, [&, wanted = wanted](const KeyedUnarchiver& coder) {
            EXPECT_EQ(coder.decodeDouble("x"), wanted);
        });
    }
    for (const char* hex : {"f97e00", "fa7fc00000", "fb7ff8000000000000"}) {
        read(hex, [](const KeyedUnarchiver& coder) {
            EXPECT_TRUE(std::isnan(coder.decodeDouble("x")));
        });
    }
    read("f98000",
         [](const KeyedUnarchiver& coder) { EXPECT_TRUE(std::signbit(coder.decodeDouble("x"))); });
}

TEST(KeyedArchiveBytes, SayWhichByteIsWrong) {
    const auto ask = [](const KeyedUnarchiver& coder) { coder.decodeInt("x"); };
    EXPECT_EQ(errorOf({}), "byte 0: the archive ends here, within a value");
    EXPECT_EQ(errorOf(fromHex("f6")), "byte 0: no mezalith archive");
    EXPECT_EQ(errorOf(frame() + fromHex("f6 00")), "byte 40: more behind the archive");
    EXPECT_EQ(errorOf(frame() + fromHex("f6")), "");
    EXPECT_EQ(errorOf(probeWith(1, "6178 6161"), ask),
              "byte 54: /root/x: a text, not a 32-bit integer");
    EXPECT_EQ(errorOf(probeWith(1, "6179 01"), ask), "byte 52: /root: unknown key \"y\"");
    EXPECT_EQ(errorOf(probeWith(2, "6178 01 6178 02"), ask), "byte 55: a second key \"x\"");
    EXPECT_EQ(errorOf(probeWith(1, "6178"), ask), "byte 54: the archive ends here, within a value");
}

TEST(KeyedArchiveBytes, RefuseWhatArchivesDoNotHave) {
    const auto complaint = [](std::string_view value) {
        return errorOf(probeWith(1, "6178" + std::string(value)),
                       [](const KeyedUnarchiver& coder) { coder.decodeBytes("x"); });
    };
    EXPECT_EQ(complaint("7f6161ff"), "byte 54: an indefinite length or reserved form");
    EXPECT_EQ(complaint("9fff"), "byte 54: an indefinite length or reserved form");
    EXPECT_EQ(complaint("1c"), "byte 54: an indefinite length or reserved form");
    EXPECT_EQ(complaint("ff"), "byte 54: an indefinite length or reserved form");
    EXPECT_EQ(complaint("c001"), "byte 54: a tag, which archives do not have");
    EXPECT_EQ(complaint("f7"), "byte 54: a simple value that archives do not have");
    EXPECT_EQ(complaint("f8ff"), "byte 54: a simple value that archives do not have");
    EXPECT_EQ(complaint("62c328"), "byte 54: text that is not UTF-8");
    EXPECT_EQ(complaint("a10102"), "byte 55: a key that is no text");
}

TEST(KeyedArchiveBytes, RefuseLengthsThatAreNotThere) {
    const std::size_t size = frame().size();
    for (const char* hex :
         {"5bffffffffffffffff", "7bffffffffffffffff", "9bffffffffffffffff", "bbffffffffffffffff",
          "5a7fffffff00", "9a00100000", "1901", "41", "61", "4200", "6200"}) {
        const Bytes bytes = frame() + fromHex(hex);
        EXPECT_EQ(errorOf(bytes), "byte " + std::to_string(bytes.size()) +
                                      ": the archive ends here, within a value")
            << hex << ' ' << size;
    }
}

TEST(KeyedArchiveBytes, RefuseBytesThatAreTooDeepTooManyOrTooMuch) {
    EXPECT_EQ(errorOf(Bytes(1000000, std::byte{0x81})), "byte 128: nested deeper than 128");
    EXPECT_EQ(errorOf(Bytes(5000000, std::byte{0x81})), "byte 4194304: longer than 4194304 bytes");
    EXPECT_EQ(errorOf(fromHex("9a00100000") + Bytes(1048576, std::byte{0})),
              "byte 262148: more than 262144 values");
}

TEST(KeyedArchiveBytes, SurviveDamage) {
    const auto color = Color::colorWithDeviceRed(0.5, 0.25, 1, 1);
    const Probe probe([&](KeyedArchiver& coder) {
        coder.encodeObject(color.get(), "color");
        coder.encodeBytesOfDoubles(std::array{4.0, 2.0}, "dash");
        coder.encodeString("\xc3\xb8\xe2\x82\xac\n", "name");
    });
    const auto ask = [](const KeyedUnarchiver& coder) {
        coder.decodeString("name");
        coder.decodeBytes("dash");
        coder.decodeObject("color");
    };
    const Bytes good = archivedBytes(&probe);
    EXPECT_EQ(errorOf(good, ask), "");
    for (std::size_t length = 0; length < good.size(); ++length) {
        EXPECT_NE(
            errorOf(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)), ask),
            "")
            << length;
    }
    std::mt19937 random(seed);
    for (int round = 0; round < 5000; ++round) {
        Bytes bytes = good;
        for (int change = 0; change < 3; ++change) {
            bytes[random() % bytes.size()] = static_cast<std::byte>(random() & 255);
        }
        EXPECT_EQ(errorOf(bytes, ask).find('\n'), std::string::npos) << "seed " << seed;
    }
}

}  // namespace
}  // namespace mezalith::platform
