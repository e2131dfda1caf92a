// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry_block.hpp>

#include <stdexcept>
#include <string>

namespace mezalith::host {

/// Work that could not be done: `what` it was about (a file, a file and a position, a layer) and
/// why. The host and the tools throw it; the library below them never does.
class Failure : public std::runtime_error {
  public:
    /// Line ends and other control characters in either text become spaces, so that the message
    /// "what: why" is one line.
    Failure(std::string what, const std::string& why);
    /// "byte 9: expected this, found that".
    explicit Failure(const MzReadError& error);

    /// The same failure told about `what` as a whole: "what: " before the message there was.
    Failure within(const std::string& what) const;
};

/// `text` with every run of blanks and control characters made one space, and none at its ends.
std::string inOneLine(const std::string& text);

}  // namespace mezalith::host
