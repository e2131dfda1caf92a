// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/json/json_archive.hpp>
#include <mezalith/platform/json/json_keyed_archive.hpp>
#include <mezalith/platform/shadow.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Reads any text as an archive, and as the root of one. What was read is written again, read again,
// and written the same.

namespace mezalith::platform {
namespace {

constexpr std::array<const char*, 8> kKeys{"name",     "rules",    "symbolizers", "strokeColor",
                                           "lineDash", "isDashed", "strokeWidth", "shadow"};

const std::string kFrame = R"({"format":"mezalith archive","version":1,"root":)";

void require(bool holds) {
    if (!holds) std::abort();
}

/// Keeps all that an archive says under the keys that it knows.
class Anything final : public Archivable {
  public:
    static std::shared_ptr<const Archivable> initWithCoder(const KeyedUnarchiver& coder) {
        auto object = std::make_shared<Anything>();
        for (const char* key : kKeys) object->read(coder, key);
        return object;
    }
    std::string_view archiveClassName() const override { return "MzStyle"; }
    void encodeWithCoder(KeyedArchiver& coder) const override {
        for (const auto& write : writes_) write(coder);
    }

  private:
    std::vector<std::function<void(KeyedArchiver&)>> writes_;

    void keep(std::function<void(KeyedArchiver&)> write) { writes_.push_back(std::move(write)); }

    void read(const KeyedUnarchiver& coder, const char* key) {
        if (!coder.containsValueForKey(key)) return;
        if (const auto number = coder.decodeNumber(key)) {
            require(coder.decodeDouble(key) == *number || *number != *number);
            keep([=](KeyedArchiver& to) { to.encodeNumber(number, key); });
        } else if (auto list = coder.decodeObjects(key); !list.empty()) {
            keep([=](KeyedArchiver& to) {
                std::vector<const Archivable*> members;
                for (const auto& member : list) members.push_back(member.get());
                to.encodeObjects(members, key);
            });
        } else if (auto numbers = coder.decodeDoubles(key); !numbers.empty()) {
            keep([=](KeyedArchiver& to) { to.encodeDoubles(numbers, key); });
        } else {
            readOthers(coder, key);
        }
    }

    void readOthers(const KeyedUnarchiver& coder, const char* key) {
        if (const auto object = coder.decodeObject(key)) {
            keep([=](KeyedArchiver& to) { to.encodeObject(object.get(), key); });
        } else if (auto bytes = coder.decodeBytes(key); !bytes.empty()) {
            keep([=](KeyedArchiver& to) { to.encodeBytes(bytes, key); });
        } else if (auto text = coder.decodeString(key); !text.empty()) {
            keep([=](KeyedArchiver& to) { to.encodeString(text, key); });
        } else {
            const bool yes = coder.decodeBool(key);
            const std::int32_t number = coder.decodeInt(key);
            const float fraction = coder.decodeFloat(key);
            require(number == 0 && fraction == 0);
            keep([=](KeyedArchiver& to) { to.encodeBool(yes, key); });
        }
    }
};

ArchiveClasses classes() {
    ArchiveClasses all = ArchiveClasses::platformClasses();
    for (const char* name : {"MzStyle", "MzRule", "MzLineSymbolizer", "MzPolygonSymbolizer"}) {
        all.add(name, Anything::initWithCoder);
    }
    return all;
}

void fuzzKeyed(std::string_view text) {
    static const ArchiveClasses kClasses = classes();
    const auto first = JsonKeyedUnarchiver::unarchivedObject(text, kClasses);
    require(first.error.empty() || first.object == nullptr);
    require(first.error.find('\n') == std::string::npos);
    const std::string written = JsonKeyedArchiver::archivedText(first.object.get());
    const auto second = JsonKeyedUnarchiver::unarchivedObject(written, kClasses);
    require(second.error.empty());
    require((second.object == nullptr) == (first.object == nullptr));
    require(JsonKeyedArchiver::archivedText(second.object.get()) == written);
}

void fuzzUnkeyed(std::string_view text) {
    std::string error;
    auto unarchiver = JsonUnarchiver::unarchiverWithText(text, &error);
    require(unarchiver.has_value() == error.empty());
    std::array<double, 6> values{};
    while (unarchiver && unarchiver->decodeArray(values)) {
        JsonArchiver archiver;
        archiver.encodeArray(values);
        require(JsonUnarchiver::unarchiverWithText(archiver.text()).has_value());
    }
}

}  // namespace
}  // namespace mezalith::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    mezalith::platform::fuzzKeyed(text);
    mezalith::platform::fuzzKeyed(mezalith::platform::kFrame + std::string(text) + '}');
    mezalith::platform::fuzzUnkeyed(text);
    return 0;
}
