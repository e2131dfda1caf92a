// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/format_predicate.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Reads any text as a predicate, by itself and with arguments. One that can be read is asked of an
// object and of nothing, and its canonical text reads back to one that answers the same.

namespace mezalith::platform {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// Answers something of every type, whatever the key.
class Anything final : public Object {
  public:
    KeyedValue valueForKey(std::string_view key) const override {
        switch (key.empty() ? 0 : static_cast<unsigned char>(key[0]) % 8) {
            case 0:
                return {};
            case 1:
                return key.size() % 2 == 0;
            case 2:
                return static_cast<std::int64_t>(key.size()) - 3;
            case 3:
                return 0.5 * static_cast<double>(key.size());
            case 4:
                return std::string(key);
            case 5:
                return std::string_view("Tromsø, Île-de-France");
            case 6:
                return &table_;
            default:
                return std::shared_ptr<const Object>(std::shared_ptr<void>(), this);
        }
    }

  private:
    Dictionary table_{
        {"a", true}, {"b", std::string("ÉTÉ")}, {"c", std::int64_t{-1}}, {"d", 1e300}};
};

void fuzz(std::string_view format, const std::vector<PredicateArgument>& arguments) {
    static const Anything kObject;
    PredicateError error;
    const auto made = FormatPredicate::predicateWithFormat(format, arguments, &error);
    require((made != nullptr) == error.expected.empty());
    if (made == nullptr) {
        require(error.line > 0 && error.column > 0 && !error.found.empty());
        return;
    }
    const std::string canonical = made->predicateFormat();
    const auto read = FormatPredicate::predicateWithFormat(canonical);
    require(read != nullptr && read->predicateFormat() == canonical);
    require(read->evaluateWithObject(&kObject) == made->evaluateWithObject(&kObject));
    require(read->evaluateWithObject(nullptr) == made->evaluateWithObject(nullptr));
}

/// As many as there are marks in the text, of the types and texts that it decides.
std::vector<PredicateArgument> argumentsFor(std::string_view format) {
    const auto count = static_cast<std::size_t>(std::ranges::count(format, '%'));
    const std::array<PredicateArgument, 4> choices{
        Value(static_cast<std::int64_t>(format.size()) - 50),
        Value(std::string(format.substr(0, 8))), Value(-0.25),
        std::vector<Value>{std::string("a.b"), std::int64_t{2}}};
    std::vector<PredicateArgument> arguments;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, 16); ++i) {
        arguments.push_back(choices[(i + format.size()) % choices.size()]);
    }
    return arguments;
}

}  // namespace
}  // namespace mezalith::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    mezalith::platform::fuzz(text, {});
    mezalith::platform::fuzz(text, mezalith::platform::argumentsFor(text));
    return 0;
}
