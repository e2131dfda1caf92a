// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/object.hpp>
#include <mezalith/platform/view.hpp>

#include <functional>
#include <memory>
#include <string_view>

namespace mezalith::platform {

/// For whom an interface file is loaded.
class MEZALITH_EXPORT InterfaceOwner {
  public:
    virtual ~InterfaceOwner();
    /// What the views are to present; null for none.
    virtual std::shared_ptr<Object> representedObject() const = 0;

  protected:
    InterfaceOwner() = default;
    InterfaceOwner(const InterfaceOwner&) = default;
    InterfaceOwner& operator=(const InterfaceOwner&) = default;
};

/// The interface files that a program offers, by name. A file yields fresh views each time it is
/// loaded. One list for the whole process, without locks.
class MEZALITH_EXPORT InterfaceFile {
  public:
    /// Makes the content view for an owner, or null when that fails. The owner need not outlive the
    /// call.
    using Loader = std::function<std::shared_ptr<View>(const InterfaceOwner& owner)>;

    /// Offers `loader` under `name`, in place of the one that was; an empty loader takes the name
    /// off the list.
    static void setLoader(std::string_view name, Loader loader);

    /// The content view of the file of that name, made for `owner`; null when there is no such file
    /// or its loader fails.
    static std::shared_ptr<View> load(std::string_view name, const InterfaceOwner& owner);
};

}  // namespace mezalith::platform
