// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/cbor_document.hpp>
#include <mezalith/platform/json/utf8.hpp>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

namespace mezalith::platform::detail {
namespace {

/// The major types.
enum : std::uint8_t { kUnsigned, kNegative, kBytes, kText, kList, kObject, kTag, kSimple };

/// What follows the major type: an argument up to 23, or how many bytes the argument has.
constexpr std::uint8_t kOneByte = 24;
constexpr std::uint8_t kEightBytes = 27;

/// Simple values; the last three are floating-point numbers of two, four and eight bytes.
enum : std::uint8_t { kFalse = 20, kTrue, kNull, kHalf = 25, kSingle, kDouble };

class Writer {
  public:
    std::vector<std::byte> bytes;

    void write(const ArchiveValue& value) {
        std::visit([this](const auto& content) { write(content); }, value.value);
    }

  private:
    void write(std::monostate) { writeFirst(kSimple, kNull); }
    void write(bool value) { writeFirst(kSimple, value ? kTrue : kFalse); }

    void write(std::int64_t value) {
        if (value < 0) {
            writeHead(kNegative, static_cast<std::uint64_t>(-(value + 1)));
        } else {
            writeHead(kUnsigned, static_cast<std::uint64_t>(value));
        }
    }

    void write(double value) {
        // The text form tells one NaN from another no more than this.
        const auto single =
            std::isnan(value) ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(value);
        if (std::isnan(value) || double{single} == value) {
            writeFirst(kSimple, kSingle);
            writeArgument(std::bit_cast<std::uint32_t>(single), 4);
        } else {
            writeFirst(kSimple, kDouble);
            writeArgument(std::bit_cast<std::uint64_t>(value), 8);
        }
    }

    void write(const std::string& text) {
        writeHead(kText, text.size());
        for (const char c : text) bytes.push_back(static_cast<std::byte>(c));
    }

    void write(const ArchiveBytes& content) {
        writeHead(kBytes, content.size());
        bytes.insert(bytes.end(), content.begin(), content.end());
    }

    void write(const ArchiveList& list) {
        writeHead(kList, list.size());
        for (const ArchiveValue& value : list) write(value);
    }

    void write(const ArchiveObject& object) {
        writeHead(kObject, object.size());
        for (const ArchiveMember& member : object) {
            write(member.key);
            write(member.value);
        }
    }

    void writeFirst(std::uint8_t major, std::uint8_t low) {
        bytes.push_back(static_cast<std::byte>(major << 5U | low));
    }

    void writeArgument(std::uint64_t value, unsigned count) {
        while (count-- > 0) bytes.push_back(static_cast<std::byte>(value >> 8U * count & 0xffU));
    }

    void writeHead(std::uint8_t major, std::uint64_t argument) {
        if (argument < kOneByte) return writeFirst(major, static_cast<std::uint8_t>(argument));
        std::uint8_t form = kOneByte;
        while (form < kEightBytes && argument >> (8U << (form - kOneByte)) != 0) ++form;
        writeFirst(major, form);
        writeArgument(argument, 1U << (form - kOneByte));
    }
};

double halfAsDouble(std::uint64_t bits) {
    const auto fraction = static_cast<double>(bits & 0x3ffU);
    const auto exponent = static_cast<int>(bits >> 10U & 0x1fU);
    double value = std::ldexp(fraction + 1024, exponent - 25);
    if (exponent == 0) value = std::ldexp(fraction, -24);
    if (exponent == 31) {
        value = fraction == 0 ? std::numeric_limits<double>::infinity()
                              : std::numeric_limits<double>::quiet_NaN();
    }
    return (bits & 0x8000U) != 0 ? -value : value;
}

class Reader {
  public:
    explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

    bool readAll() {
        if (!readValue()) return false;
        return at_ == bytes_.size() || builder_.fail("more behind the archive", at_);
    }
    ArchiveBuilder& builder() { return builder_; }

  private:
    struct Head {
        std::size_t offset = 0;
        std::uint8_t major = 0;
        std::uint8_t low = 0;
        std::uint64_t argument = 0;
    };

    std::span<const std::byte> bytes_;
    std::size_t at_ = 0;
    ArchiveBuilder builder_;

    std::size_t left() const { return bytes_.size() - at_; }
    bool endsEarly() {
        return builder_.fail("the archive ends here, within a value", bytes_.size());
    }

    bool readHead(Head& head) {
        if (left() == 0) return endsEarly();
        head.offset = at_;
        const auto first = std::to_integer<unsigned>(bytes_[at_++]);
        head.major = static_cast<std::uint8_t>(first >> 5U);
        head.low = static_cast<std::uint8_t>(first & 0x1fU);
        if (head.low > kEightBytes) {
            return builder_.fail("an indefinite length or reserved form", head.offset);
        }
        if (head.low < kOneByte) {
            head.argument = head.low;
            return true;
        }
        const std::size_t count = std::size_t{1} << (head.low - kOneByte);
        if (left() < count) return endsEarly();
        for (const std::byte byte : bytes_.subspan(at_, count)) {
            head.argument = head.argument << 8U | std::to_integer<std::uint64_t>(byte);
        }
        at_ += count;
        return true;
    }

    // No deeper than the builder lets it.
    // NOLINTNEXTLINE(misc-no-recursion)
    bool readValue() {
        Head head;
        if (!readHead(head)) return false;
        switch (head.major) {
            case kUnsigned:
            case kNegative:
                return addInteger(head);
            case kBytes:
                return readBytes(head);
            case kText: {
                std::string text;
                return readText(head, text) && builder_.add({std::move(text), head.offset});
            }
            case kList:
                return readList(head);
            case kObject:
                return readObject(head);
            case kTag:
                return builder_.fail("a tag, which archives do not have", head.offset);
            default:
                return addSimple(head);
        }
    }

    bool addInteger(const Head& head) {
        const bool isNegative = head.major == kNegative;
        if (!std::in_range<std::int64_t>(head.argument)) {
            const auto number = static_cast<double>(head.argument);
            return builder_.add({isNegative ? -1 - number : number, head.offset});
        }
        const auto number = static_cast<std::int64_t>(head.argument);
        return builder_.add({isNegative ? -1 - number : number, head.offset});
    }

    bool addSimple(const Head& head) {
        switch (head.low) {
            case kFalse:
            case kTrue:
                return builder_.add({head.low == kTrue, head.offset});
            case kNull:
                return builder_.add({{}, head.offset});
            case kHalf:
                return builder_.add({halfAsDouble(head.argument), head.offset});
            case kSingle:
                return builder_.add(
                    {double{std::bit_cast<float>(static_cast<std::uint32_t>(head.argument))},
                     head.offset});
            case kDouble:
                return builder_.add({std::bit_cast<double>(head.argument), head.offset});
            default:
                return builder_.fail("a simple value that archives do not have", head.offset);
        }
    }

    bool readBytes(const Head& head) {
        if (head.argument > left()) return endsEarly();
        const auto content = bytes_.subspan(at_, static_cast<std::size_t>(head.argument));
        at_ += content.size();
        return builder_.add({ArchiveBytes(content.begin(), content.end()), head.offset});
    }

    bool readText(const Head& head, std::string& text) {
        if (head.argument > left()) return endsEarly();
        for (const std::byte byte : bytes_.subspan(at_, static_cast<std::size_t>(head.argument))) {
            text += std::to_integer<char>(byte);
        }
        at_ += text.size();
        return isUTF8(text) || builder_.fail("text that is not UTF-8", head.offset);
    }

    bool readKey() {
        Head head;
        if (!readHead(head)) return false;
        if (head.major != kText) return builder_.fail("a key that is no text", head.offset);
        std::string key;
        return readText(head, key) && builder_.addKey(std::move(key), head.offset);
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    bool readList(const Head& head) {
        if (!builder_.open({ArchiveList(), head.offset})) return false;
        for (std::uint64_t i = 0; i < head.argument; ++i) {
            if (!readValue()) return false;
        }
        return builder_.close();
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    bool readObject(const Head& head) {
        if (!builder_.open({ArchiveObject(), head.offset})) return false;
        for (std::uint64_t i = 0; i < head.argument; ++i) {
            if (!readKey() || !readValue()) return false;
        }
        return builder_.close();
    }
};

}  // namespace

std::vector<std::byte> cborBytes(const ArchiveValue& value) {
    Writer writer;
    writer.write(value);
    return std::move(writer.bytes);
}

std::optional<ArchiveValue> cborTree(std::span<const std::byte> bytes, ArchiveError& error) {
    if (const auto tooLong = sizeError(bytes.size())) {
        error = *tooLong;
        return std::nullopt;
    }
    Reader reader(bytes);
    if (!reader.readAll()) {
        error = reader.builder().error();
        return std::nullopt;
    }
    return reader.builder().takeRoot();
}

std::string cborErrorText(const ArchiveError& error) {
    return "byte " + std::to_string(error.offset) + ": " + error.reason;
}

}  // namespace mezalith::platform::detail
