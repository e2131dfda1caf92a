// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/interface/elements.hpp>
#include <mezalith/platform/interface/interface_document.hpp>

#include <memory>

namespace mezalith::platform::detail {

/// The view of an element, at (0, 0); null for one that takes no room: a space, and a label or a
/// stack in which nothing is.
std::shared_ptr<View> viewForElement(const Element& element,
                                     const std::shared_ptr<Object>& represented,
                                     const InterfaceDocument::ActionHandler& handler);

}  // namespace mezalith::platform::detail
