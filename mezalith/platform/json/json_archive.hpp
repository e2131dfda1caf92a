// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// Unkeyed archives as JSON text, with numbers as in keyed archives:
///
///     {
///      "format": "mezalith archive",
///      "version": 1,
///      "arrays": [
///       [1, 0, 0, 1, 0.5, 0]
///      ]
///     }
class MEZALITH_EXPORT JsonArchiver final : public Archiver {
  public:
    void encodeArray(std::span<const double> values) override;
    /// The archive of all arrays so far.
    std::string text() const;

  private:
    std::vector<std::vector<double>> arrays_;
};

/// Reads such archives, as strictly as keyed ones.
class MEZALITH_EXPORT JsonUnarchiver final : public Unarchiver {
  public:
    /// None, and `error` one line with the reason, for text that is no such archive.
    static std::optional<JsonUnarchiver> unarchiverWithText(std::string_view text,
                                                            std::string* error = nullptr);

    bool decodeArray(std::span<double> values) override;

  private:
    explicit JsonUnarchiver(std::deque<std::vector<double>> arrays);

    std::deque<std::vector<double>> arrays_;
};

}  // namespace mezalith::platform
