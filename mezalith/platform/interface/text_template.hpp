// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/object.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// A text with places that an object fills in: "{featureName}, {propertiesByName.country}". In
/// braces stands a key path, names joined by points, and behind a bar how its value is written:
/// "{population|grouped}" puts thin spaces between groups of three digits. "{{" and "}}" are braces
/// themselves.
class MEZALITH_EXPORT TextTemplate {
  public:
    /// The empty text.
    TextTemplate() = default;

    /// None, and what is wrong in `error`, for a brace without its other half, an empty name, a
    /// path of more than 16 and an unknown way of writing.
    static std::optional<TextTemplate> templateWithText(std::string_view text, std::string& error);

    /// The text for `object`. Numbers are the shortest text that reads back to the same number,
    /// truth values "yes" and "no"; nothing stands for a key that is not answered, for null, tables
    /// and objects. A text that has grown beyond `longestText` is not filled in further.
    std::string textForObject(const Object* object) const;

  private:
    /// A run of text, or a place to fill in.
    struct Piece {
        std::string text;
        std::vector<std::string> keyPath;  ///< empty for a run of text
        bool isGrouped = false;
    };
    class Reader;

    std::vector<Piece> pieces_;
};

}  // namespace mezalith::platform
