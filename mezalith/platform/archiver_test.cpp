// SPDX-License-Identifier: MIT
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/memory_archive.hpp>

#include <array>
#include <limits>
#include <map>
#include <variant>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Bytes = std::vector<std::byte>;
using Doubles = std::vector<double>;
using Objects = std::vector<std::shared_ptr<const Archivable>>;
using Stored = std::variant<std::monostate, bool, std::int32_t, float, double, Bytes, std::string,
                            Doubles, std::shared_ptr<const Archivable>, Objects>;
using Fields = std::map<std::string, Stored, std::less<>>;

class Label : public Archivable {
  public:
    explicit Label(std::string what) : text(std::move(what)) {}
    std::string_view archiveClassName() const override { return "Label"; }
    void encodeWithCoder(KeyedArchiver& coder) const override { coder.encodeString(text, "text"); }

    std::string text;
};

// Keeps what it is given; objects by a copy made through their own encoding.
class FieldArchiver : public KeyedArchiver {
  public:
    void encodeBool(bool value, std::string_view key) override { put(key, value); }
    void encodeInt(std::int32_t value, std::string_view key) override { put(key, value); }
    void encodeFloat(float value, std::string_view key) override { put(key, value); }
    void encodeDouble(double value, std::string_view key) override { put(key, value); }
    void encodeBytes(std::span<const std::byte> bytes, std::string_view key) override {
        put(key, Bytes(bytes.begin(), bytes.end()));
    }
    void encodeString(std::string_view value, std::string_view key) override {
        put(key, std::string(value));
    }
    void encodeNumber(std::optional<double> value, std::string_view key) override {
        put(key, value ? Stored(*value) : Stored());
    }
    void encodeDoubles(std::span<const double> values, std::string_view key) override {
        put(key, Doubles(values.begin(), values.end()));
    }
    void encodeObject(const Archivable* object, std::string_view key) override {
        put(key, decoded(object));
    }
    void encodeObjects(std::span<const Archivable* const> objects, std::string_view key) override {
        Objects copies;
        for (const Archivable* object : objects) copies.push_back(decoded(object));
        put(key, copies);
    }

    Fields fields;

  private:
    void put(std::string_view key, Stored value) { fields[std::string(key)] = std::move(value); }

    static std::shared_ptr<const Archivable> decoded(const Archivable* object) {
        if (object == nullptr || object->archiveClassName() != "Label") return nullptr;
        FieldArchiver inner;
        object->encodeWithCoder(inner);
        return std::make_shared<Label>(std::get<std::string>(inner.fields["text"]));
    }
};

class FieldUnarchiver : public KeyedUnarchiver {
  public:
    explicit FieldUnarchiver(Fields fields) : fields_(std::move(fields)) {}

    bool containsValueForKey(std::string_view key) const override { return fields_.contains(key); }
    bool decodeBool(std::string_view key) const override { return get<bool>(key); }
    std::int32_t decodeInt(std::string_view key) const override { return get<std::int32_t>(key); }
    float decodeFloat(std::string_view key) const override { return get<float>(key); }
    double decodeDouble(std::string_view key) const override { return get<double>(key); }
    Bytes decodeBytes(std::string_view key) const override { return get<Bytes>(key); }
    std::string decodeString(std::string_view key) const override { return get<std::string>(key); }
    std::optional<double> decodeNumber(std::string_view key) const override {
        const auto field = fields_.find(key);
        if (field == fields_.end() || !std::holds_alternative<double>(field->second)) return {};
        return std::get<double>(field->second);
    }
    Doubles decodeDoubles(std::string_view key) const override { return get<Doubles>(key); }
    std::shared_ptr<const Archivable> decodeObject(std::string_view key) const override {
        return get<std::shared_ptr<const Archivable>>(key);
    }
    Objects decodeObjects(std::string_view key) const override { return get<Objects>(key); }

  private:
    template <typename T>
    T get(std::string_view key) const {
        const auto field = fields_.find(key);
        if (field == fields_.end() || !std::holds_alternative<T>(field->second)) return T();
        return std::get<T>(field->second);
    }

    Fields fields_;
};

std::string textOf(const std::shared_ptr<const Archivable>& object) {
    const auto* label = dynamic_cast<const Label*>(object.get());
    return label == nullptr ? "none" : label->text;
}

// What `write` stores, read back through the interface alone.
template <typename Write>
std::unique_ptr<KeyedUnarchiver> readingBack(Write write) {
    auto archiver = std::make_unique<FieldArchiver>();
    write(static_cast<KeyedArchiver&>(*archiver));
    return std::make_unique<FieldUnarchiver>(archiver->fields);
}

TEST(KeyedArchive, ReadsBackEachType) {
    const std::array bytes{std::byte{1}, std::byte{255}};
    const std::array doubles{1.5, -2.5};
    const auto archive = readingBack([&](KeyedArchiver& coder) {
        coder.encodeBool(true, "bool");
        coder.encodeInt(-7, "int");
        coder.encodeFloat(0.1f, "float");
        coder.encodeDouble(0.1, "double");
        coder.encodeBytes(bytes, "bytes");
        coder.encodeString("text", "string");
        coder.encodeNumber(2.0, "number");
        coder.encodeDoubles(doubles, "doubles");
    });
    EXPECT_TRUE(archive->decodeBool("bool"));
    EXPECT_EQ(archive->decodeInt("int"), -7);
    EXPECT_EQ(archive->decodeFloat("float"), 0.1f);
    EXPECT_EQ(archive->decodeDouble("double"), 0.1);
    EXPECT_EQ(archive->decodeBytes("bytes"), Bytes(bytes.begin(), bytes.end()));
    EXPECT_EQ(archive->decodeString("string"), "text");
    EXPECT_EQ(archive->decodeNumber("number"), 2.0);
    EXPECT_EQ(archive->decodeDoubles("doubles"), (Doubles{1.5, -2.5}));
}

TEST(KeyedArchive, ReadsBackObjectsThroughTheirOwnEncoding) {
    const Label one("one"), two("two");
    const std::array<const Archivable*, 2> both{&one, &two};
    const auto archive = readingBack([&](KeyedArchiver& coder) {
        coder.encodeObject(&one, "object");
        coder.encodeObject(nullptr, "null");
        coder.encodeObjects(both, "objects");
    });
    EXPECT_EQ(textOf(archive->decodeObject("object")), "one");
    EXPECT_EQ(archive->decodeObject("null"), nullptr);
    EXPECT_TRUE(archive->containsValueForKey("null"));
    const Objects objects = archive->decodeObjects("objects");
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(textOf(objects[1]), "two");
}

TEST(KeyedArchive, AnswersNothingForAnAbsentKeyOrAnotherType) {
    const auto archive =
        readingBack([](KeyedArchiver& coder) { coder.encodeNumber(std::nullopt, "number"); });
    EXPECT_FALSE(archive->containsValueForKey("absent"));
    EXPECT_FALSE(archive->decodeBool("absent"));
    EXPECT_EQ(archive->decodeInt("absent"), 0);
    EXPECT_EQ(archive->decodeString("number"), "");
    EXPECT_EQ(archive->decodeNumber("number"), std::nullopt);
    EXPECT_EQ(archive->decodeObject("absent"), nullptr);
}

TEST(UnkeyedArchive, ReadsArraysInTheOrderTheyWereWritten) {
    MemoryArchiver written;
    Archiver& coder = written;
    coder.encodeArray(std::array{1.0, 2.0});
    coder.encodeArray(std::array{3.0});
    MemoryUnarchiver reading(written.arrays);
    std::array<double, 2> two{};
    std::array<double, 1> one{};
    EXPECT_TRUE(reading.decodeArray(two));
    EXPECT_TRUE(reading.decodeArray(one));
    EXPECT_EQ(two, (std::array{1.0, 2.0}));
    EXPECT_EQ(one, std::array{3.0});
    EXPECT_FALSE(reading.decodeArray(one));
}

TEST(UnkeyedArchive, LeavesTheValuesWhenTheLengthDiffers) {
    MemoryUnarchiver reading({{1.0, 2.0, 3.0}});
    std::array<double, 2> two{8, 9};
    EXPECT_FALSE(reading.decodeArray(two));
    EXPECT_EQ(two, (std::array{8.0, 9.0}));
}

}  // namespace
}  // namespace mezalith::platform
