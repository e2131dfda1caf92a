// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <map>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// Gives the identifiers of an SVG text numbers of its own. A writer that numbers its surfaces
/// through the whole program makes "surface38" of the first one in the third document; here each
/// name becomes its letters and the count of such names so far, from 0, wherever it stands:
///
///     id="surface38"    xlink:href="#surface38"    url(#surface38)
///
/// The text comes in pieces, cut anywhere. Names without a number stay as they are.
class MEZALITH_EXPORT SvgIdentifiers {
  public:
    /// The next piece of the text, as far as it can be told.
    std::string rewritten(std::string_view piece);
    /// What is left at the end of the text.
    std::string rest();

  private:
    std::string pending_;
    std::map<std::string, std::string, std::less<>> names_;
    std::map<std::string, int, std::less<>> counts_;

    std::string newName(std::string_view name);
};

}  // namespace mezalith::platform
