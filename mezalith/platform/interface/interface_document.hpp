// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/image.hpp>
#include <mezalith/platform/interface_file.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/platform/view.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace mezalith::platform {

namespace detail {
struct Element;
}

/// An interface file: a JSON text that says of what rows, columns, labels, images and buttons a
/// content view is made. Immutable; it yields any number of views. `docs/interface-files.md` tells
/// the format and its bounds.
class MEZALITH_EXPORT InterfaceDocument {
  public:
    /// Told of a button: the action that the file names, and the object that the view presents,
    /// null when there is none or it is gone.
    using ActionHandler =
        std::function<void(const std::string& action, const std::shared_ptr<Object>& represented)>;

    /// Yields the image that a file names, or null and why in `error`.
    using ImageSource =
        std::function<std::shared_ptr<const Image>(const std::string& name, std::string& error)>;

    using Pointer = std::shared_ptr<const InterfaceDocument>;

    /// Null for a text that is no interface file, with one line in `error` (unless that is null)
    /// that says where it is wrong and how: "line 3, column 7: a number from 0 to 1000 belongs
    /// here". Without a source there are no images.
    static Pointer documentWithText(std::string_view text, std::string* error,
                                    const ImageSource& images = {});
    /// The same for a file, also where it cannot be read. The line does not name the file. Images
    /// are files in its folder or below, of a million pixels at most.
    static Pointer documentWithFile(const std::filesystem::path& file, std::string* error);

    ~InterfaceDocument();
    InterfaceDocument(const InterfaceDocument&) = delete;
    InterfaceDocument& operator=(const InterfaceDocument&) = delete;

    /// A new view that presents `represented` as it is now, as large as its content; it does not
    /// own it. A label whose text comes out empty takes no room.
    std::shared_ptr<View> viewForObject(const std::shared_ptr<Object>& represented,
                                        const ActionHandler& handler = {}) const;

    /// A loader for the list of interface files. It keeps the document.
    static InterfaceFile::Loader loader(Pointer document, ActionHandler handler = {});

  private:
    explicit InterfaceDocument(detail::Element content);

    std::unique_ptr<const detail::Element> content_;
};

}  // namespace mezalith::platform
