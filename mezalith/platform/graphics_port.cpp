// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>

namespace mezalith::platform {
namespace {

thread_local GraphicsContext* innermost = nullptr;

}  // namespace

Layer::~Layer() = default;

GraphicsPort::~GraphicsPort() = default;

GraphicsContext* GraphicsContext::current() { return innermost; }

GraphicsContext::GraphicsContext(GraphicsPort* port) : port_(port), outer_(innermost) {
    innermost = this;
}

GraphicsContext::~GraphicsContext() { innermost = outer_; }

}  // namespace mezalith::platform
