// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/projection/great_circle.hpp>
#include <mezalith/style/style.hpp>

#include <cstdio>

int main() {
    const auto port = mezalith::platform::CairoPort::pixelPort({20, 10});
    const mezalith::MzStyle style;
    if (port == nullptr || port->pixelWidth() != 20) return 1;
    using mezalith::platform::FormatPredicate;
    if (FormatPredicate::predicateWithFormat("kind MATCHES[c] 'É.*'") == nullptr) return 1;
    std::printf("%.0f m\n", mezalith::MzEarthDistance(10.75, 59.91, 2.35, 48.86));
}
