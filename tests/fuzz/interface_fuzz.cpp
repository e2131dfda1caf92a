// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/interface/interface_document.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

// Reads any text as an interface file, and as the content of one. What was read yields views that
// are drawn and clicked all over.

namespace mezalith::platform {
namespace {

const std::string kFrame = R"({"format":"mezalith interface","version":1,"content":)";

void require(bool holds) {
    if (!holds) std::abort();
}

/// Answers every key, "self" with itself.
struct Subject : Object, std::enable_shared_from_this<Subject> {
    Dictionary table{{"a", std::int64_t{-1234567}}, {"b", 1e300}, {"c", "\xff text"}};

    KeyedValue valueForKey(std::string_view key) const override {
        if (key == "self") return std::shared_ptr<const Object>(shared_from_this());
        if (key == "table") return &table;
        return platform::valueForKey(table, key);
    }
};

void use(View& view) {
    RecordingPort port;
    const GraphicsContext context(&port);
    view.display();
    for (int i = 0; i < 16; ++i) {
        const MzSize size = view.frame().size;
        View* const hit = view.hitTest({size.width * (i % 4) / 4, size.height * (i / 4) / 4});
        if (hit != nullptr) hit->mouseDown({});
    }
}

void fuzz(std::string_view text) {
    static const auto kSubject = std::make_shared<Subject>();
    std::string error;
    const auto document = InterfaceDocument::documentWithText(text, &error);
    require((document == nullptr) == !error.empty());
    require(error.find('\n') == std::string::npos);
    if (document == nullptr) return;
    std::size_t clicks = 0;
    const auto view = document->viewForObject(
        kSubject, [&](const std::string&, const std::shared_ptr<Object>& object) {
            require(object == kSubject);
            ++clicks;
        });
    require(view != nullptr);
    use(*view);
}

}  // namespace
}  // namespace mezalith::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    mezalith::platform::fuzz(text);
    mezalith::platform::fuzz(mezalith::platform::kFrame + std::string(text) + '}');
    return 0;
}
