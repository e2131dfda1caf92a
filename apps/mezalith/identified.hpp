// SPDX-License-Identifier: MIT
#pragma once

#include "host/feature.hpp"
#include <mezalith/style/style.hpp>

#include <string>

namespace mezalith::app {

/// A feature that was hit, on one line: `layer places id 7 name "Oslo" rule 0 "Cities" symbolizer 1
/// point attributes {"population":709037}`.
std::string identifiedText(const host::Feature& feature, const MzStyleHit& hit);

/// The same as one JSON object.
std::string identifiedJson(const host::Feature& feature, const MzStyleHit& hit);

}  // namespace mezalith::app
