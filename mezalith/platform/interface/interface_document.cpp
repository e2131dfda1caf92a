// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/image_decoder.hpp>
#include <mezalith/platform/interface/element_reader.hpp>
#include <mezalith/platform/interface/interface_document.hpp>
#include <mezalith/platform/interface/view_builder.hpp>
#include <mezalith/platform/text_file.hpp>

#include <algorithm>
#include <span>
#include <utility>

namespace mezalith::platform {
namespace {

constexpr std::size_t kLongestImage = std::size_t{8} * 1024 * 1024;
constexpr ImageLimits kImageLimits{.pixels = 1'000'000};

/// Whether a name stays within the folder in which it is looked up.
bool staysWithin(const std::filesystem::path& name) {
    return !name.empty() && name.is_relative() &&
           std::ranges::find(name, std::filesystem::path("..")) == name.end();
}

std::shared_ptr<const Image> imageOfFile(const std::filesystem::path& file, std::string& error) {
    const auto bytes = textOfFile(file.string(), kLongestImage, &error);
    if (!bytes) return nullptr;
    DecodedImage decoded = decodeImage(std::as_bytes(std::span(*bytes)), kImageLimits);
    error = std::move(decoded.error);
    return decoded.image;
}

InterfaceDocument::ImageSource imagesIn(const std::filesystem::path& folder) {
    return [folder](const std::string& name, std::string& error) -> std::shared_ptr<const Image> {
        if (staysWithin(name)) return imageOfFile(folder / name, error);
        error = "images lie in the folder of the file or below";
        return nullptr;
    };
}

}  // namespace

InterfaceDocument::InterfaceDocument(detail::Element content)
    : content_(std::make_unique<const detail::Element>(std::move(content))) {}

InterfaceDocument::~InterfaceDocument() = default;

InterfaceDocument::Pointer InterfaceDocument::documentWithText(std::string_view text,
                                                               std::string* error,
                                                               const ImageSource& images) {
    std::string reason;
    auto content = detail::readInterface(text, images, reason);
    if (content) return Pointer(new InterfaceDocument(std::move(*content)));
    if (error != nullptr) *error = std::move(reason);
    return nullptr;
}

InterfaceDocument::Pointer InterfaceDocument::documentWithFile(const std::filesystem::path& file,
                                                               std::string* error) {
    const auto text = textOfFile(file.string(), detail::longestInterface, error);
    return text ? documentWithText(*text, error, imagesIn(file.parent_path())) : nullptr;
}

std::shared_ptr<View> InterfaceDocument::viewForObject(const std::shared_ptr<Object>& represented,
                                                       const ActionHandler& handler) const {
    const std::shared_ptr<View> view = detail::viewForElement(*content_, represented, handler);
    return view != nullptr ? view : std::make_shared<View>();
}

InterfaceFile::Loader InterfaceDocument::loader(Pointer document, ActionHandler handler) {
    return [document = std::move(document),
            handler = std::move(handler)](const InterfaceOwner& owner) -> std::shared_ptr<View> {
        if (document == nullptr) return nullptr;
        return document->viewForObject(owner.representedObject(), handler);
    };
}

}  // namespace mezalith::platform
